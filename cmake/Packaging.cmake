# What a Debian package carries, and the package itself (cpack -G DEB, or the
# "package" target): "tessarine" with the program, its desktop entry, icons,
# metadata, manual page, completion and systemd user units; and
# "tessarine-phone-emulator" with the emulated phone and the demo it serves.
include(GNUInstallDirs)

set(dist ${PROJECT_SOURCE_DIR}/dist)
set(icons ${PROJECT_SOURCE_DIR}/src/ui/resources/icons)

install(FILES ${dist}/org.tessarine.Tessarine.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications
        COMPONENT tessarine)
install(FILES ${dist}/metainfo/org.tessarine.Tessarine.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo
        COMPONENT tessarine)
foreach(size 16 32 48 64 128 256)
    install(FILES ${icons}/tessarine-${size}.png DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/${size}x${size}/apps
            RENAME tessarine.png COMPONENT tessarine)
endforeach()
install(FILES ${icons}/tessarine.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
        COMPONENT tessarine)
install(FILES ${dist}/completion/tessarine.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
        RENAME tessarine COMPONENT tessarine)
install(FILES ${dist}/completion/_tessarine DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
        COMPONENT tessarine)
# systemd looks for user units under the prefix's lib/, whatever the library folder.
install(FILES ${dist}/systemd/tessarine.service ${dist}/systemd/tessarine.timer DESTINATION lib/systemd/user
        COMPONENT tessarine)

# The emulated phone under a name of its own, with the demo of the README.
install(PROGRAMS $<TARGET_FILE:phone-emulator> DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME tessarine-phone-emulator
        COMPONENT emulator)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/demo/ DESTINATION ${CMAKE_INSTALL_DATADIR}/tessarine/demo COMPONENT emulator)

install(FILES ${dist}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessarine COMPONENT tessarine)
install(FILES ${dist}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tessarine-phone-emulator COMPONENT emulator)

# The manual pages, made from their scdoc sources and compressed as Debian wants them.
find_program(SCDOC scdoc)
find_program(GZIP gzip)
if(SCDOC AND GZIP)
    foreach(page tessarine.1 tessarine-phone-emulator.1)
        set(out ${CMAKE_CURRENT_BINARY_DIR}/man/${page})
        add_custom_command(OUTPUT ${out}.gz
            COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/man
            COMMAND ${SCDOC} < ${dist}/man/${page}.scd > ${out}
            COMMAND ${GZIP} -9nf ${out}
            DEPENDS ${dist}/man/${page}.scd
            VERBATIM)
        list(APPEND manual_pages ${out}.gz)
    endforeach()
    add_custom_target(manual_pages ALL DEPENDS ${manual_pages})
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/tessarine.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
            COMPONENT tessarine)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/man/tessarine-phone-emulator.1.gz
            DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT emulator)
else()
    message(STATUS "scdoc not found: no manual pages")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tessarine)
set(CPACK_PACKAGE_VENDOR "The Tessarine developers")
set(CPACK_PACKAGE_CONTACT "Tessarine developers <dev@tessarine.org>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "keep a phone's calendar and contacts in step with a PIM store")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL tessarine emulator)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE https://tessarine.org/)
set(CPACK_DEBIAN_TESSARINE_PACKAGE_NAME tessarine)
set(CPACK_DEBIAN_TESSARINE_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TESSARINE_PACKAGE_SUGGESTS "khal, khard, vdirsyncer, bluez")
set(CPACK_DEBIAN_EMULATOR_PACKAGE_NAME tessarine-phone-emulator)
set(CPACK_DEBIAN_EMULATOR_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_EMULATOR_PACKAGE_SUGGESTS tessarine)
set(CPACK_DEBIAN_TESSARINE_DESCRIPTION "keep a phone's calendar and contacts in step with a PIM store\nTessarine reads the calendar entries (vCalendar) and contacts (vCard) of a mobile\nphone over a serial, USB or Bluetooth line and pairs them with a folder of\niCalendar and vCard files that khal, khard and vdirsyncer share. It shows both\nsides in two grids, transfers changes either way and runs unattended from cron\nor a systemd timer.")
set(CPACK_DEBIAN_EMULATOR_DESCRIPTION "emulated phone for trying and testing tessarine\nServes a phone's AT-command and OBEX dialogue on a pseudo-terminal, with fault\ninjection, and ships the demo phone and store of tessarine.")
include(CPack)
