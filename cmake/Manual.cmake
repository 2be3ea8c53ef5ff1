# kelvo_manual(TARGET [COMPLETION FILE])
# Lets a program write its manual page and its completion for bash into share/ beside its folder,
# where man(1) and bash-completion find them for what is in PATH or run by its path. FILE holds shell
# functions for the names that only the program knows.
function(kelvo_manual target)
    cmake_parse_arguments(arg "" "COMPLETION" "" ${ARGN})
    set(share ${CMAKE_BINARY_DIR}/share)
    set(completion ${share}/bash-completion/completions/${target})
    file(MAKE_DIRECTORY ${share}/man/man1 ${share}/bash-completion/completions)
    if(arg_COMPLETION)
        cmake_path(ABSOLUTE_PATH arg_COMPLETION OUTPUT_VARIABLE own)
        set(append COMMAND cat ${own} >> ${completion})
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${own})
    endif()
    add_custom_command(TARGET ${target} POST_BUILD
        COMMAND ${target} --manual > ${share}/man/man1/${target}.1
        COMMAND ${target} --completion > ${completion}
        ${append}
        VERBATIM)
endfunction()
