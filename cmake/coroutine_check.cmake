# Some compilers build ordinary coroutines wrongly and say nothing, so the compiler is tried out first.
function(vantrell_require_working_coroutines)
  if(VANTRELL_COROUTINES_WORK STREQUAL "${CMAKE_CXX_COMPILER} ${CMAKE_CXX_COMPILER_VERSION}")
    return()
  endif()
  try_run(ran compiled ${CMAKE_BINARY_DIR}/coroutine_check ${CMAKE_CURRENT_SOURCE_DIR}/cmake/coroutine_check.cpp
    CMAKE_FLAGS -DCMAKE_CXX_FLAGS=-O2
    CXX_STANDARD 20 CXX_STANDARD_REQUIRED ON
    COMPILE_OUTPUT_VARIABLE words RUN_OUTPUT_VARIABLE failed)
  if(NOT compiled OR NOT ran EQUAL 0)
    message(STATUS "${words}${failed}")
    message(FATAL_ERROR
      "This compiler (${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}) does not build coroutines correctly. "
      "Install clang 14 or later (on Debian: apt-get install clang) and configure with "
      "-DCMAKE_CXX_COMPILER=clang++, or use the presets, which do.")
  endif()
  set(VANTRELL_COROUTINES_WORK "${CMAKE_CXX_COMPILER} ${CMAKE_CXX_COMPILER_VERSION}" CACHE INTERNAL "")
endfunction()
