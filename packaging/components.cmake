# Read by CPack before each generator runs. Debian's packages begin at the root of the system and tell licence and
# changes in their own way.
if(CPACK_GENERATOR STREQUAL "DEB")
  list(REMOVE_ITEM CPACK_COMPONENTS_ALL tarball)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
else()
  list(REMOVE_ITEM CPACK_COMPONENTS_ALL debian)
endif()
