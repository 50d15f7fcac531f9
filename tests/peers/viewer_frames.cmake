# What the viewer shows of a file, for viewer_frames.py to compare with another program's frames.
add_executable(viewer_frames peers/viewer_frames.cpp $<TARGET_OBJECTS:zephyr_resources>)
zephyr_warnings(viewer_frames)
add_dependencies(viewer_frames test_data)
target_link_libraries(viewer_frames zephyr_windows zephyr_core zephyr_resource_access)
