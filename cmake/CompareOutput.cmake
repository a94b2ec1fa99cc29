# Runs PROGRAM. Fails unless the program succeeds and prints exactly the content of the file EXPECTED.
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
file(READ ${EXPECTED} expected)
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "${PROGRAM} prints\n${output}\ninstead of the content of ${EXPECTED}:\n${expected}")
endif()
