# Installs the command, its manual page, and its completion for the shells.
install(TARGETS vanlayout RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
install(FILES ${PROJECT_SOURCE_DIR}/docs/vanlayout.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)

set(completions ${PROJECT_BINARY_DIR}/tools/vanlayout/completion)
install(FILES ${completions}/bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME vanlayout COMPONENT tool)
install(FILES ${completions}/fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d
    RENAME vanlayout.fish COMPONENT tool)
install(FILES ${completions}/zsh DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
    RENAME _vanlayout COMPONENT tool)

# The command has a path to the libraries that is relative to its directory. In /usr and /usr/local the system finds the
# libraries, after ldconfig, and the path, which would be searched first, is removed. This happens at the installation,
# because the prefix is not known before.
if(CMAKE_EXECUTABLE_FORMAT STREQUAL ELF)
    install(CODE "
        if(CMAKE_INSTALL_PREFIX MATCHES \"^/(usr(/local)?)?/*$\")
            file(RPATH_REMOVE FILE \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/vanlayout\")
        endif()" COMPONENT tool)
endif()

# Desktop integration: CSPro dictionaries and data files open as a codebook in the browser.
set(desktop ${PROJECT_SOURCE_DIR}/desktop)
install(FILES ${desktop}/org.vanlayout.vanlayout.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT tool)
install(FILES ${desktop}/org.vanlayout.vanlayout.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT tool)
install(FILES ${desktop}/org.vanlayout.vanlayout.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps
    COMPONENT tool)
install(FILES ${desktop}/vanlayout-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages RENAME vanlayout.xml
    COMPONENT tool)
