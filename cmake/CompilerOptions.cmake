# Options of our own code; libraries are included as system headers and escape the warnings.
set(KELVO_SANITIZE "" CACHE STRING "value of -fsanitize= for everything that is built")

add_library(kelvo_options INTERFACE)
target_compile_options(kelvo_options INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Wformat=2 -Wnon-virtual-dtor
    -Woverloaded-virtual -Werror
    # Results must be the same on ARM64 and x86-64: no fused multiply-add.
    -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    target_compile_options(kelvo_options INTERFACE -Wthread-safety -Wthread-safety-beta)
else()
    # g++ 12 finds overlaps in std::string where there are none (its bug 105651).
    target_compile_options(kelvo_options INTERFACE -Wno-restrict)
endif()

if(KELVO_SANITIZE)
    set(sanitizers -fsanitize=${KELVO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_compile_options(kelvo_options INTERFACE ${sanitizers})
    target_link_options(kelvo_options INTERFACE ${sanitizers})
endif()
