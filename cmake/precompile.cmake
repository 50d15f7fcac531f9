# Headers that most sources of a target include are parsed once for all of them. The presets native and win32 do
# without, and so does the static analysis (tools/tidy): there a source that lacks an include is found out.
option(ZEPHYR_PRECOMPILE "Precompiled headers" ON)
set(STANDARD_HEADERS <algorithm> <cstdint> <cstdio> <cstring> <functional> <memory> <optional> <span> <string>
                     <string_view> <vector>)
set(WINDOWS_HEADERS ${CMAKE_SOURCE_DIR}/src/platform/windows_api.h)
function(zephyr_precompile target)
  if(ZEPHYR_PRECOMPILE)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    # GCC 12 sees faults in the strings of its standard library once that is precompiled; elsewhere it does not, and
    # there these warnings stay.
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
      target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-restrict -Wno-stringop-overflow
                             -Wno-stringop-overread)
    endif()
  endif()
endfunction()
