find_program(AIDL aidl REQUIRED)
set(KELVO_MARK_VINTF ${CMAKE_CURRENT_LIST_DIR}/MarkVintf.sed)

# kelvo_aidl_library(NAME LANG cpp|ndk ROOT FOLDER SOURCES a/b/IFoo.aidl... LIBS TARGET...)
# A static library of what the aidl compiler makes of interfaces below ROOT.
#
# The compiler is older than @VintfStability: it reads copies without the annotation, and what newer
# ones write for it, the mark on each binder that is made, is put into its results.
function(kelvo_aidl_library name)
    cmake_parse_arguments(arg "" "LANG;ROOT" "SOURCES;LIBS" ${ARGN})
    set(out ${CMAKE_CURRENT_BINARY_DIR}/${name}_aidl)
    set(plain ${CMAKE_CURRENT_BINARY_DIR}/${name}_plain)
    set(flags --lang=${arg_LANG} -I ${plain} -h ${out} -o ${out})
    if(arg_LANG STREQUAL "ndk")
        list(APPEND flags --structured)
    endif()
    list(TRANSFORM arg_SOURCES PREPEND ${plain}/ OUTPUT_VARIABLE inputs)
    set(generated "")
    foreach(source ${arg_SOURCES})
        cmake_path(GET source PARENT_PATH folder)
        file(MAKE_DIRECTORY ${plain}/${folder})
        add_custom_command(OUTPUT ${plain}/${source}
            COMMAND sed "/^@VintfStability$/d" ${arg_ROOT}/${source} > ${plain}/${source}
            DEPENDS ${arg_ROOT}/${source}
            VERBATIM)
        # Old compiler, newer headers: these keep the plain macro for interfaces they know.
        set(edits -e "s/^IMPLEMENT_META_INTERFACE/DO_NOT_DIRECTLY_USE_ME_&/")
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${arg_ROOT}/${source})
        file(STRINGS ${arg_ROOT}/${source} annotation REGEX "^@VintfStability$")
        if(annotation)
            list(APPEND edits -f ${KELVO_MARK_VINTF})
        endif()
        string(REGEX REPLACE "\\.aidl$" ".cpp" result ${out}/${source})
        list(APPEND generated ${result})
        # One interface imports another: each result depends on all of them.
        add_custom_command(OUTPUT ${result}
            COMMAND ${AIDL} ${flags} ${plain}/${source}
            COMMAND sed -i ${edits} ${result}
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
