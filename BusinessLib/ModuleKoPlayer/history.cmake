# Play history: the panel, its rows and its title bar.
list(APPEND MODULE_KOPLAYER_SOURCES
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtHistroyList.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtHistroyList.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtHistroyList.ui"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerListItem.h"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerListItem.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/CLS_WgtPlayerListItem.ui"
  "${CMAKE_CURRENT_LIST_DIR}/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.h"
  "${CMAKE_CURRENT_LIST_DIR}/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.cpp"
  "${CMAKE_CURRENT_LIST_DIR}/Player7WgtToolboxBar/CLS_WgtPlayer7ToolboxBar.ui")
