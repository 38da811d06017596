# The address and undefined-behaviour sanitizers, when VANTRELL_SANITIZE asks for them.
if(VANTRELL_SANITIZE)
  # The check of function types is left out: clang 14 cannot assemble coroutines with it.
  target_compile_options(vantrell_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(vantrell_options INTERFACE -fsanitize=address,undefined)
endif()
