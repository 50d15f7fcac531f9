# Turns the palette resource files into a source with the same bytes.
set(BUILTIN_PALETTES ${CMAKE_BINARY_DIR}/builtin_palettes.cpp)
set(PALETTE_FILES ${CMAKE_SOURCE_DIR}/resources/palettes/palette216.bin
                  ${CMAKE_SOURCE_DIR}/resources/palettes/palette256g.bin)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PALETTE_FILES})

function(palette_bytes file out)
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes ${hex})
  set(${out} ${bytes} PARENT_SCOPE)
endfunction()

list(GET PALETTE_FILES 0 WEB_FILE)
list(GET PALETTE_FILES 1 GREY_FILE)
palette_bytes(${WEB_FILE} WEB_BYTES)
palette_bytes(${GREY_FILE} GREY_BYTES)
file(CONFIGURE OUTPUT ${BUILTIN_PALETTES} CONTENT
"#include <cstring>

#include \"imaging/palette_resources.h\"

namespace {
constexpr uint8_t kWeb[kPaletteResourceBytes] = {@WEB_BYTES@};
constexpr uint8_t kGrey[kPaletteResourceBytes] = {@GREY_BYTES@};
}  // namespace

const uint8_t* FindPaletteResource(const char* name) {
    if (strcmp(name, \"PALETTE216\") == 0) return kWeb;
    if (strcmp(name, \"PALETTE256G\") == 0) return kGrey;
    return nullptr;
}
" @ONLY)
