# Translations: the language files against the code that asks for their keys,
# and the compiled files the build puts into build/bin/Lang/QuillPlayer.
quill_add_qtest(tst_Translations SOURCES "${CMAKE_CURRENT_LIST_DIR}/tst_Translations.cpp"
                "${CMAKE_CURRENT_LIST_DIR}/TranslationSources.cpp")
if(TARGET QuillTranslations)
  add_dependencies(tst_Translations QuillTranslations)
endif()

# The real widgets under every language: nothing they show is a bare key.
if(TARGET ModuleKoPlayerCore AND TARGET WgtMsgBoxCore)
  quill_add_qtest(tst_TranslatedWidgets
    SOURCES "${CMAKE_CURRENT_LIST_DIR}/tst_TranslatedWidgets.cpp"
    LIBRARIES ModuleKoPlayerCore WgtMsgBoxCore)
  foreach(_dep QuillTranslations KoLog KoParam KoTaskPool KoColorManage)
    if(TARGET ${_dep})
      add_dependencies(tst_TranslatedWidgets ${_dep})
    endif()
  endforeach()
endif()
