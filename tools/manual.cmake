# add_manual(PROGRAM "what it does"): the manual page of a program, from what its --help and --version say. Where there is
# no help2man there are no pages; a program with a sanitizer may not run while others are built.
find_program(HELP2MAN help2man)

function(add_manual program what)
    if(NOT HELP2MAN OR NXL_SANITIZE OR NOT TARGET ${program})
        return()
    endif()
    set(page ${CMAKE_CURRENT_BINARY_DIR}/${program}.1)
    add_custom_command(OUTPUT ${page}
        COMMAND ${HELP2MAN} --no-info --name=${what} --source=nxl --output=${page} $<TARGET_FILE:${program}>
        DEPENDS ${program} VERBATIM)
    add_custom_target(${program}-manual ALL DEPENDS ${page})
    add_dependencies(manuals ${program}-manual)
    install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools OPTIONAL)
endfunction()
