# vantrell_options carries what holds for everything that is built here. Warnings become errors in the presets
# (CMAKE_COMPILE_WARNING_AS_ERROR), so that a newer compiler's new warnings stop nobody who only wants the program.
add_library(vantrell_options INTERFACE)
target_compile_options(vantrell_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wunused-result)
