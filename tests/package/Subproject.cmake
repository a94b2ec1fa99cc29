# Configures the application in PARENT alone, and then with the project SOURCE as a subdirectory. Fails
# if the project changes the type or the output folder of the application's own library, or adds a cache
# entry whose name does not begin with ORNWHATSNEW_ or the prefix of a dependency. Repeats the
# configuration with the subdirectory, because cache entries of the first run may affect the second run.
# WORK is the folder for the builds. GENERATOR and COMPILER are the generator and the compiler of the
# application.
cmake_minimum_required(VERSION 3.25)

function(configure folder)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${PARENT} -B ${folder} -G ${GENERATOR}
            -DCMAKE_CXX_COMPILER=${COMPILER} -DSOURCE=${SOURCE} ${ARGN}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Sets RESULT to the names of the cache entries in FOLDER that a user can set.
function(read_cache_names folder result)
  file(STRINGS ${folder}/CMakeCache.txt lines REGEX "^[^#/].*:[A-Z]+=")
  list(FILTER lines EXCLUDE REGEX ":(INTERNAL|STATIC)=")
  list(TRANSFORM lines REPLACE ":.*" "")
  set(${result} ${lines} PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE ${WORK})
configure(${WORK}/alone -DEMBED=OFF)
configure(${WORK}/embedding -DEMBED=ON)
configure(${WORK}/embedding)

file(READ ${WORK}/alone/kind.txt expected)
file(READ ${WORK}/embedding/kind.txt kind)
if(NOT kind STREQUAL expected)
  message(FATAL_ERROR "the application's library is '${kind}' instead of '${expected}'")
endif()

read_cache_names(${WORK}/alone before)
read_cache_names(${WORK}/embedding added)
list(REMOVE_ITEM added ${before})
if(NOT "ORNWHATSNEW_INSTALL" IN_LIST added)
  message(FATAL_ERROR "no cache entry of this project was found")
endif()
# The find module of ICU adds entries with the prefix ICU_.
list(FILTER added EXCLUDE REGEX "^(ORNWHATSNEW|ICU)_")
if(added)
  message(FATAL_ERROR "cache entries without the prefix ORNWHATSNEW_ were added: ${added}")
endif()
