# What `cmake --install` puts where a desktop looks for it. The program finds its helpers in its own folder.
include(GNUInstallDirs)
install(TARGETS ZEP OpenedMsg RUNTIME)
install(FILES data/vantrell-zep.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES data/vantrell-zep.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
if(IS_DIRECTORY ${CMAKE_SOURCE_DIR}/data/icons/hicolor)
  install(DIRECTORY data/icons/hicolor DESTINATION ${CMAKE_INSTALL_DATADIR}/icons)
endif()
