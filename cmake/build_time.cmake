# What makes a build from nothing short. The static analysis (tools/analyse) looks at each source by itself, where one
# that lacks an include of the house is found out.
#
# Headers that most sources of a target include are parsed once for all of them.
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

# Several sources are compiled as one: most of the time goes into the headers that all of them include. Names that are
# private to a source must therefore be its own in the whole target. Compiled by themselves stay the forms of a seam,
# for the system's headers bring too many names along, and of programs that are made to be fast the sources given as
# ALONE: where the time is spent, what the compiler inlines should not depend on neighbours.
option(ZEPHYR_UNITY "Compile several sources as one" ON)
function(zephyr_compile_together target)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "ALONE")
  get_target_property(alone ${target} SOURCES)
  list(FILTER alone INCLUDE REGEX "_(posix|win32)(_tests)?\\.cpp$")
  if(NOT ZEPHYR_SANITIZE)
    list(APPEND alone ${ARG_ALONE})
  endif()
  set_source_files_properties(${alone} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  # GCC takes a source that is included for a header, in which a class must not rest on private ones.
  if(ZEPHYR_UNITY AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${ZEPHYR_UNITY} UNITY_BUILD_BATCH_SIZE 16)
endfunction()
