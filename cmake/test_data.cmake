# The GIF files that tests and fuzzers read: tests/data/recipes.py writes them, once for each build tree and again when
# a recipe changes. TEST_DATA is their folder; the target test_data makes them, peer_data those of other programs.
set(TEST_DATA ${CMAKE_BINARY_DIR}/test-data)
set(PEER_DATA ${CMAKE_BINARY_DIR}/peer-data)
set(RECIPES ${CMAKE_SOURCE_DIR}/tests/data/recipes.py)
add_custom_command(OUTPUT ${TEST_DATA}.stamp DEPENDS ${RECIPES} VERBATIM
  COMMAND python3 ${RECIPES} ${TEST_DATA} COMMAND ${CMAKE_COMMAND} -E touch ${TEST_DATA}.stamp)
add_custom_command(OUTPUT ${PEER_DATA}.stamp DEPENDS ${RECIPES} VERBATIM
  COMMAND python3 ${RECIPES} --programs ${PEER_DATA} COMMAND ${CMAKE_COMMAND} -E touch ${PEER_DATA}.stamp)
# Pictures of other kinds, beside what reading them must give.
set(TEST_PICTURES ${CMAKE_BINARY_DIR}/test-pictures)
set(PICTURE_RECIPES ${CMAKE_SOURCE_DIR}/tests/data/pictures.py)
add_custom_command(OUTPUT ${TEST_PICTURES}.stamp DEPENDS ${PICTURE_RECIPES} VERBATIM
  COMMAND python3 ${PICTURE_RECIPES} ${TEST_PICTURES} COMMAND ${CMAKE_COMMAND} -E touch ${TEST_PICTURES}.stamp)
add_custom_target(test_data DEPENDS ${TEST_DATA}.stamp ${TEST_PICTURES}.stamp)
add_custom_target(peer_data DEPENDS ${PEER_DATA}.stamp)
