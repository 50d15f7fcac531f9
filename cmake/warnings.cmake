# Our own sources compile without a warning, at a high level.
function(zephyr_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wformat=2 -Wundef -Wnon-virtual-dtor -Wold-style-cast -Wcast-qual -Woverloaded-virtual -Werror)
endfunction()
