# One target carries warnings and sanitizers for everything that is built here.
add_library(vantrell_warnings INTERFACE)
target_compile_options(vantrell_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wold-style-cast -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wunused-result)
if(VANTRELL_SANITIZE)
  # The check of function types is left out: clang 14 cannot assemble coroutines with it.
  target_compile_options(vantrell_warnings INTERFACE
    -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vantrell_warnings INTERFACE -fsanitize=address,undefined)
endif()
