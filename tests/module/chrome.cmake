# Tests of the player's chrome. They start the parameter, colour and logging
# services themselves, so those libraries must be built first.
set(_chrome_services KoParam KoColorManage KoLog)

foreach(_test tst_chromecontrols tst_controlbar tst_topbar)
  quill_add_qtest(${_test}
    SOURCES "${CMAKE_CURRENT_LIST_DIR}/${_test}.cpp" "${CMAKE_CURRENT_LIST_DIR}/ChromeTestSupport.h"
    LIBRARIES ModuleKoPlayerCore ${CMAKE_DL_LIBS}
    TIMEOUT 60)
  target_include_directories(${_test} PRIVATE "${PROJECT_SOURCE_DIR}/tests/msgbox")
  foreach(_service IN LISTS _chrome_services)
    if(TARGET ${_service})
      add_dependencies(${_test} ${_service})
    endif()
  endforeach()
endforeach()
