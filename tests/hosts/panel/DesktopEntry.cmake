# Checks the desktop entry for an installation folder whose path contains a space and all characters that
# orn_quote_desktop_argument escapes. VALIDATE is the program desktop-file-validate. TEMPLATE is the
# template of the desktop entry. MODULE is the file that defines orn_quote_desktop_argument. OUTPUT is the
# file to write.
cmake_minimum_required(VERSION 3.25)

include(${MODULE})
set(folder [[/opt/a b/50%/$c`d"e\f]])
orn_quote_desktop_argument(data_file "${folder}/herbarium/whatsnew.csv")
orn_quote_desktop_argument(host "${folder}/herbarium/host.json")
configure_file(${TEMPLATE} ${OUTPUT} @ONLY)
execute_process(COMMAND ${VALIDATE} ${OUTPUT} COMMAND_ERROR_IS_FATAL ANY)

set(quoted [[/opt/a b/50%%/\\$c\\`d\\"e\\\\f]])
set(expected "Exec=ornwhatsnew-panel \"${quoted}/herbarium/whatsnew.csv\"")
string(APPEND expected " --host \"${quoted}/herbarium/host.json\"")
file(STRINGS ${OUTPUT} actual REGEX "^Exec=")
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "The desktop entry contains\n${actual}\ninstead of\n${expected}")
endif()
