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
