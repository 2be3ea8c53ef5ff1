# Android's interfaces and the three libraries, all from Debian packages.
find_package(Threads REQUIRED)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
find_package(PkgConfig REQUIRED)
find_package(CLI11 REQUIRED)
pkg_check_modules(jsoncpp REQUIRED IMPORTED_TARGET jsoncpp)

find_path(ANDROID_INCLUDE_DIR utils/Looper.h PATH_SUFFIXES android REQUIRED)
set(android_library_dir /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/android)

# Headers alone: the binder headers are real AOSP headers for which platform/ gives the libraries.
add_library(android_headers INTERFACE)
target_include_directories(android_headers SYSTEM INTERFACE ${ANDROID_INCLUDE_DIR})
# They take these standard headers for granted. A precompiled header has them already, and must be
# the first thing that is included.
set(KELVO_TAKEN_FOR_GRANTED --include=limits --include=memory)
string(CONCAT precompiled
    "$<AND:$<NOT:$<BOOL:$<TARGET_PROPERTY:DISABLE_PRECOMPILE_HEADERS>>>,"
    "$<OR:$<BOOL:$<TARGET_PROPERTY:PRECOMPILE_HEADERS>>,"
    "$<BOOL:$<TARGET_PROPERTY:PRECOMPILE_HEADERS_REUSE_FROM>>>>")
target_compile_options(android_headers INTERFACE
    "$<$<NOT:${precompiled}>:${KELVO_TAKEN_FOR_GRANTED}>")

# libutils, liblog and libbase live in a private folder that the loader does not search.
add_library(android_libs INTERFACE)
foreach(name utils log base)
    find_library(ANDROID_LIB_${name} ${name} PATHS ${android_library_dir} NO_DEFAULT_PATH REQUIRED)
    target_link_libraries(android_libs INTERFACE ${ANDROID_LIB_${name}})
endforeach()
# Debian's libcutils gives atrace; its properties come from platform/libcutils.
find_library(ANDROID_LIB_cutils cutils PATHS ${android_library_dir} NO_DEFAULT_PATH REQUIRED)
target_link_libraries(android_libs INTERFACE ${ANDROID_LIB_cutils} android_headers Threads::Threads)
list(APPEND CMAKE_BUILD_RPATH ${android_library_dir})
list(APPEND CMAKE_INSTALL_RPATH ${android_library_dir})
target_link_options(android_libs INTERFACE -Wl,-rpath-link,${android_library_dir})
