# Window tests: one process that owns the windows it drives. Runs under Wine with a display (tools/under_wine).
add_executable(gui_tests ${GUI_TEST_SOURCES} $<TARGET_OBJECTS:zephyr_resources>)
zephyr_warnings(gui_tests)
zephyr_precompile(gui_tests <gtest/gtest.h> ${STANDARD_HEADERS} ${WINDOWS_HEADERS})
target_compile_definitions(gui_tests PRIVATE TEST_PICTURES="${TEST_PICTURES}")
add_dependencies(gui_tests test_data)
target_link_libraries(gui_tests zephyr_gtest zephyr_windows zephyr_core zephyr_resource_access oleacc oleaut32)
