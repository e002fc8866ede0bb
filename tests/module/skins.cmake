# The installed skins: sheets, icons, and the looks that follow the widgets'
# properties.
find_package(Qt5 5.15 REQUIRED COMPONENTS Widgets Svg)
quill_add_qtest(tst_Skins
  SOURCES "${CMAKE_CURRENT_SOURCE_DIR}/tst_Skins.cpp"
  LIBRARIES Qt5::Widgets Qt5::Svg)
if(TARGET quill_resources)
  add_dependencies(tst_Skins quill_resources)
endif()
