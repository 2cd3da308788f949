# Manual pages, and completion for shells: what helps people at a command line.
set(completionSource ${PROJECT_SOURCE_DIR}/packaging/completion)
if(WIN32)
    install(FILES ${completionSource}/zupolicy-completion.ps1 DESTINATION ${CMAKE_INSTALL_BINDIR})
    return()
endif()

install(FILES ${completionSource}/zupolicy.bash
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME zupolicy)
install(FILES ${completionSource}/_zupolicy DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
install(FILES ${completionSource}/zupolicy.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)

# The tool prints the pages of its commands, so it must run here.
if(NOT CMAKE_CROSSCOMPILING)
    set(pages ${PROJECT_BINARY_DIR}/man)
    set(templates ${PROJECT_SOURCE_DIR}/packaging/man)
    file(GLOB pageTemplates CONFIGURE_DEPENDS ${templates}/*.in)
    add_custom_command(OUTPUT ${pages}.made
        COMMAND ${CMAKE_COMMAND} -E env "LD_LIBRARY_PATH=$<TARGET_FILE_DIR:zucomrt>"
                ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:zupolicy> -DVERSION=${PROJECT_VERSION} -DTEMPLATES=${templates}
                -DPAGES=${pages} -P ${PROJECT_SOURCE_DIR}/cmake/make-man-pages.cmake
        COMMAND ${CMAKE_COMMAND} -E touch ${pages}.made
        DEPENDS zupolicy ${pageTemplates} ${PROJECT_SOURCE_DIR}/cmake/make-man-pages.cmake
        COMMENT "Making the manual pages"
        VERBATIM)
    add_custom_target(man_pages ALL DEPENDS ${pages}.made)
    install(DIRECTORY ${pages}/ DESTINATION ${CMAKE_INSTALL_MANDIR})
endif()
