# The warnings that every target of this project is built with; they are errors.
add_library(qstdlib_warnings INTERFACE)
target_compile_options(
    qstdlib_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              $<$<COMPILE_LANGUAGE:CXX>:-Wdouble-promotion>
              -Werror)
