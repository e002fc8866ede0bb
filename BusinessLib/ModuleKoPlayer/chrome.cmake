# The player's chrome: control bar, sliders, top bar, speed combo box, tool
# button and the list item delegate.
list(APPEND MODULE_KOPLAYER_SOURCES
  "${CMAKE_CURRENT_LIST_DIR}/CLS_Player7ComboBox.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_Player7ComboBox.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_Player7ListItemDelegate.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_Player7ListItemDelegate.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_PlayerToolButton.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_PlayerToolButton.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerControlBar.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerControlBar.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerControlBar.ui"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerSlider.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerSlider.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerTopBar.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerTopBar.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerTopBar.ui")
