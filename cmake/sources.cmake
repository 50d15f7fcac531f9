# Sets `out` in the caller to the files that match the patterns. A pattern without any file is an error: a folder that
# has moved must not take its programs or tests away in silence.
function(zephyr_find_sources out)
  set(found)
  foreach(pattern ${ARGN})
    file(GLOB files CONFIGURE_DEPENDS ${pattern})
    if(NOT files)
      message(FATAL_ERROR "No file matches ${pattern} in ${CMAKE_CURRENT_SOURCE_DIR}")
    endif()
    list(APPEND found ${files})
  endforeach()
  set(${out} ${found} PARENT_SCOPE)
endfunction()
