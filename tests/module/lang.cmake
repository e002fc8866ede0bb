# Translations: the language files against the code that asks for their keys,
# and the compiled files the build puts into build/bin/Lang/QuillPlayer.
quill_add_qtest(tst_Translations SOURCES "${CMAKE_CURRENT_LIST_DIR}/tst_Translations.cpp")
if(TARGET QuillTranslations)
  add_dependencies(tst_Translations QuillTranslations)
endif()
