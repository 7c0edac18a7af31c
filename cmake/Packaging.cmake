# What `cmake --install` puts in place and the Debian package made of it
# (scripts/package.sh): the program, the data-file tool, the help page, the
# desktop entry with its icons, the AppStream metainfo and the manual page.
include(GNUInstallDirs)
set(RESOURCES_DIR ${PROJECT_SOURCE_DIR}/resources)

install(TARGETS velmora velmora-data RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(FILES ${RESOURCES_DIR}/velmora-help.html DESTINATION ${CMAKE_INSTALL_DATADIR}/velmora)
install(FILES ${RESOURCES_DIR}/velmora.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${RESOURCES_DIR}/velmora.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        RENAME example.velmora.Velmora.metainfo.xml)
install(FILES ${RESOURCES_DIR}/velmora.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${RESOURCES_DIR}/velmora.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)

if(TARGET velmora-render-icon)
    set(icons)
    foreach(size 16 24 32 48 64 128 256)
        set(png ${CMAKE_BINARY_DIR}/icons/${size}/velmora.png)
        add_custom_command(OUTPUT ${png}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_BINARY_DIR}/icons/${size}
            COMMAND velmora-render-icon ${RESOURCES_DIR}/velmora.svg ${size} ${png}
            DEPENDS velmora-render-icon ${RESOURCES_DIR}/velmora.svg
            COMMENT "Drawing the ${size} px icon")
        list(APPEND icons ${png})
        install(FILES ${png} DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps)
    endforeach()
    add_custom_target(velmora-icons ALL DEPENDS ${icons})
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME velmora)
set(CPACK_PACKAGE_VENDOR "Velmora")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "household bookkeeping with a Russian interface")
set(CPACK_PACKAGE_CONTACT "Velmora developers <velmora@velmora.example>")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION misc)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The program loads Qt's Russian texts for the buttons of its boxes ("Да", "Нет", "Отмена").
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS qt6-translations-l10n)
set(CPACK_STRIP_FILES ON)
include(CPack)
