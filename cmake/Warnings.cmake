# Warnings are errors in all our own code.
add_library(zupm_warnings INTERFACE)
target_compile_options(zupm_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnull-dereference -Wformat=2 -Wimplicit-fallthrough
    -Werror
    # The binary layout of the public interfaces is fixed, so they cannot have a virtual destructor.
    -Wno-non-virtual-dtor
    # When it optimises, GCC 12 reports overlapping copies in the standard library's own string insertion.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:Clang>:-Wthread-safety -Wno-gnu-zero-variadic-macro-arguments>)
