# What `cmake --install` puts where a desktop looks for it. The program finds its helpers in its own folder.
include(GNUInstallDirs)
install(TARGETS ZEP OpenedMsg RUNTIME)
install(FILES data/vantrell-zep.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES data/vantrell-zep.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)

set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
foreach(size ${VANTRELL_ICON_SIZES})
  install(FILES data/icons/vantrell-zep-${size}.png
    DESTINATION ${icons}/${size}x${size}/apps RENAME vantrell-zep.png)
endforeach()
install(FILES data/icons/vantrell-zep.svg DESTINATION ${icons}/scalable/apps)
