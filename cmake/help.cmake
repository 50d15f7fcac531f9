# The help beside the program: TELVAR.HLP for the help viewer, help/*.html for browsers, from the same source.
find_program(HALIBUT halibut)
if(NOT HALIBUT)
  message(FATAL_ERROR "The help is made by halibut (tools/install_packages windows)")
endif()
set(HELP_FOLDER ${CMAKE_SOURCE_DIR}/resources/help)
# In the order of the topics, behind the settings.
set(HELP_SOURCES settings.but main_window.but careful.but panes.but block_editors.but making.but tools.but)
list(TRANSFORM HELP_SOURCES PREPEND ${HELP_FOLDER}/)
set(HELP_STAMP ${CMAKE_CURRENT_BINARY_DIR}/help.stamp)
# The help notes its time: the commit's, so that the same sources give the same bytes.
execute_process(COMMAND git log -1 --format=%ct WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
                OUTPUT_VARIABLE HELP_TIME OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(NOT HELP_TIME)
  string(TIMESTAMP HELP_TIME %s)
endif()
# Made from nothing every time, so that no page outlives its topic.
add_custom_command(
  OUTPUT ${HELP_STAMP} ${CMAKE_CURRENT_BINARY_DIR}/TELVAR.HLP ${CMAKE_CURRENT_BINARY_DIR}/help/index.html
  COMMAND ${CMAKE_COMMAND} -E rm -rf ${CMAKE_CURRENT_BINARY_DIR}/help
  COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/help
  COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${HELP_TIME} ${HALIBUT} --winhelp=TELVAR.HLP ${HELP_SOURCES}
  COMMAND ${CMAKE_COMMAND} -E chdir help ${HALIBUT} --html ${HELP_SOURCES}
  COMMAND ${CMAKE_COMMAND} -E copy ${HELP_FOLDER}/help.css help
  COMMAND ${CMAKE_COMMAND} -E touch ${HELP_STAMP}
  DEPENDS ${HELP_SOURCES} ${HELP_FOLDER}/help.css
  WORKING_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}
  COMMENT "Making the help"
  VERBATIM)
add_custom_target(help_pages ALL DEPENDS ${HELP_STAMP})
