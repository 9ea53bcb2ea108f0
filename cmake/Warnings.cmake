# The warnings that every target of this project is built with; errors where a preset of ours says so, not for others.
option(QSTDLIB_WERROR "Warnings are errors" OFF)
add_library(qstdlib_warnings INTERFACE)
target_compile_options(
    qstdlib_warnings
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wshadow
              $<$<COMPILE_LANGUAGE:CXX>:-Wdouble-promotion>
              $<$<BOOL:${QSTDLIB_WERROR}>:-Werror>)
