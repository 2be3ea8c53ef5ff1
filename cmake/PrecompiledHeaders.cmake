# Headers of others that most files of a target parse. The files include what they need all the
# same: the clang and release presets build without, and clang-tidy reads them so.
set(KELVO_STD_HEADERS
    <algorithm> <array> <atomic> <cstdint> <cstring> <functional> <limits> <map> <memory>
    <optional> <string> <string_view> <utility> <vector>)
set(KELVO_BINDER_HEADERS
    ${KELVO_STD_HEADERS} <binder/Binder.h> <binder/IPCThreadState.h> <binder/IServiceManager.h>
    <binder/Parcel.h>)

# kelvo_precompile(TARGET HEADERS...)
function(kelvo_precompile target)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # Lets compiler caches see through the precompiled header.
        target_compile_options(${target} PRIVATE -fpch-preprocess)
    endif()
    target_precompile_headers(${target} PRIVATE ${ARGN})
endfunction()

# kelvo_skip_precompiled(SOURCES...): those that set a macro before they include anything.
function(kelvo_skip_precompiled)
    set_source_files_properties(${ARGN} PROPERTIES
        SKIP_PRECOMPILE_HEADERS ON
        COMPILE_OPTIONS "${KELVO_TAKEN_FOR_GRANTED}")
endfunction()

# kelvo_command_line(TARGET [SOURCES...]): these files, or all of the target's, read the command line.
# CLI11 is inline functions throughout, which take most of a program's build to optimise and run once.
function(kelvo_command_line target)
    set(fast_build "$<$<NOT:$<CONFIG:Release>>:-O0>")
    target_link_libraries(${target} PUBLIC CLI11::CLI11)
    if(NOT target STREQUAL "command_line")
        target_link_libraries(${target} PUBLIC command_line)
    endif()
    if(ARGN)
        set_source_files_properties(${ARGN} TARGET_DIRECTORY ${target} PROPERTIES
            COMPILE_OPTIONS ${fast_build})
    else()
        target_compile_options(${target} PRIVATE ${fast_build})
    endif()
endfunction()
