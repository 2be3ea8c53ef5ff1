find_program(AIDL aidl REQUIRED)

# kelvo_aidl_library(NAME LANG cpp|ndk ROOT FOLDER SOURCES a/b/IFoo.aidl... LIBS TARGET...)
# A static library of what the aidl compiler makes of interfaces below ROOT.
function(kelvo_aidl_library name)
    cmake_parse_arguments(arg "" "LANG;ROOT" "SOURCES;LIBS" ${ARGN})
    set(out ${CMAKE_CURRENT_BINARY_DIR}/${name}_aidl)
    set(flags --lang=${arg_LANG} -I ${arg_ROOT} -h ${out} -o ${out})
    if(arg_LANG STREQUAL "ndk")
        list(APPEND flags --structured)
    endif()
    list(TRANSFORM arg_SOURCES PREPEND ${arg_ROOT}/ OUTPUT_VARIABLE inputs)
    set(generated "")
    foreach(source ${arg_SOURCES})
        string(REGEX REPLACE "\\.aidl$" ".cpp" result ${out}/${source})
        list(APPEND generated ${result})
        # One interface imports another: each result depends on all of them.
        # Old compiler, newer headers: these keep the plain macro for interfaces they know.
        add_custom_command(OUTPUT ${result}
            COMMAND ${AIDL} ${flags} ${arg_ROOT}/${source}
            COMMAND sed -i "s/^IMPLEMENT_META_INTERFACE/DO_NOT_DIRECTLY_USE_ME_&/" ${result}
            DEPENDS ${inputs}
            VERBATIM)
    endforeach()
    add_library(${name} STATIC ${generated})
    # Generated code is not held to our warnings, hence no kelvo_options; the sanitizers see it.
    if(KELVO_SANITIZE)
        target_compile_options(${name} PRIVATE -fsanitize=${KELVO_SANITIZE})
    endif()
    target_include_directories(${name} SYSTEM PUBLIC ${out})
    target_link_libraries(${name} PUBLIC ${arg_LIBS})
endfunction()
