find_program(PROTOC protoc REQUIRED)
pkg_check_modules(protobuf_lite REQUIRED IMPORTED_TARGET protobuf-lite)

# kelvo_proto_library(NAME FILE.proto): what protoc makes of a file of this folder, for the lite
# runtime; included as "FILE.pb.h".
function(kelvo_proto_library name proto)
    get_filename_component(stem ${proto} NAME_WE)
    set(out ${CMAKE_CURRENT_BINARY_DIR}/${name}_proto)
    set(generated ${out}/${stem}.pb.cc ${out}/${stem}.pb.h)
    file(MAKE_DIRECTORY ${out})
    add_custom_command(OUTPUT ${generated}
        COMMAND ${PROTOC} --cpp_out=lite:${out} -I ${CMAKE_CURRENT_SOURCE_DIR} ${proto}
        DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${proto}
        WORKING_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}
        VERBATIM)
    add_library(${name} STATIC ${generated})
    # Generated code is not held to our warnings, hence no kelvo_options; the sanitizers see it.
    if(KELVO_SANITIZE)
        target_compile_options(${name} PRIVATE -fsanitize=${KELVO_SANITIZE})
    endif()
    target_include_directories(${name} SYSTEM PUBLIC ${out})
    target_link_libraries(${name} PUBLIC PkgConfig::protobuf_lite)
endfunction()
