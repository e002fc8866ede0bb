# What `cmake --install` lays out and the Debian package holds. The build tree's
# bin folder is the source of the data: skins, palettes and compiled
# translations are assembled there by their own folders' rules.
install(TARGETS quillplayer sdvtool RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(TARGETS
    ModuleKoPlayer WgtMsgBox VideoPlayer_Rk QGLRender
    KoLog KoParam KoTaskPool KoAppManager KoColorManage
  LIBRARY DESTINATION "${QUILL_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${QUILL_INSTALL_LIBDIR}")
install(DIRECTORY "${QUILL_BIN_DIR}/resource" "${QUILL_BIN_DIR}/Lang"
  DESTINATION "${QUILL_INSTALL_DATADIR}")
