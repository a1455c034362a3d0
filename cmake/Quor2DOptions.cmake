# quor2d_options: how everything of this project is compiled. Never installed, never seen by users of the library.
add_library(quor2d_options INTERFACE)
target_compile_features(quor2d_options INTERFACE cxx_std_17)

if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    # The error bounds of the predicates hold for separately rounded products and sums.
    target_compile_options(quor2d_options INTERFACE -ffp-contract=off)
    target_compile_options(quor2d_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion
                                                    -Wcast-qual -Wnon-virtual-dtor -Woverloaded-virtual
                                                    -Wold-style-cast)
    if(QUOR2D_WERROR)
        target_compile_options(quor2d_options INTERFACE -Werror)
    endif()
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Lets the compiler inline exported functions inside the library, as Clang does anyway.
    target_compile_options(quor2d_options INTERFACE -fno-semantic-interposition)
endif()
