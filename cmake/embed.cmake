# vantrell_embed(TARGET FILE SYMBOL): makes the bytes of FILE available to TARGET as
# `const unsigned char SYMBOL[]` and `SYMBOL_size`, declared in the generated header SYMBOL.h.
function(vantrell_embed target file symbol)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "(..)" "0x\\1," bytes "${hex}")
  set(folder ${CMAKE_BINARY_DIR}/embedded)
  file(CONFIGURE OUTPUT ${folder}/${symbol}.h CONTENT
"#pragma once
#include <cstddef>
extern const unsigned char ${symbol}[];
extern const std::size_t ${symbol}_size;
")
  file(CONFIGURE OUTPUT ${folder}/${symbol}.cpp CONTENT
"#include \"${symbol}.h\"
const unsigned char ${symbol}[] = {${bytes}};
const std::size_t ${symbol}_size = sizeof(${symbol});
")
  target_sources(${target} PRIVATE ${folder}/${symbol}.cpp)
  target_include_directories(${target} PRIVATE ${folder})
endfunction()
