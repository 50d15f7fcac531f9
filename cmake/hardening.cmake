# What a hostile file finds harder to exploit, should it ever find a fault: canaries on the stack, checked copies into
# buffers of known size, addresses that change from run to run, and nothing writable that is called or executed.
# The sanitizers watch all of that more closely and do not mix with checked copies. tests/packages/check looks for each
# of these in the programs that are handed out.
if(NOT ZEPHYR_SANITIZE)
  add_compile_options(-fstack-protector-strong)
  if(WIN32)
    add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--nxcompat)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
      add_link_options(-Wl,--high-entropy-va)
    endif()
  else()
    # -fPIE is not CMake's property POSITION_INDEPENDENT_CODE: that compiles libraries with -fPIC, which is slower.
    add_compile_options(-fPIE)
    add_link_options(-pie -Wl,-z,relro,-z,now)
    # Checked copies work on optimised code only.
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE> $<$<NOT:$<CONFIG:Debug>>:-D_FORTIFY_SOURCE=3>)
  endif()
endif()
