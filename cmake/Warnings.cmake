# Warnings are errors in all of our own code.
add_library(zupm_warnings INTERFACE)
target_compile_options(zupm_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough
    -Werror
    # The public GUID and interface types are fixed by their binary layout.
    -Wno-non-virtual-dtor
    # GCC 12 sees overlapping copies in the standard library's own string insertion when it optimises.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety -Wno-gnu-zero-variadic-macro-arguments>)
