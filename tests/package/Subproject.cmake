# Configures the application in PARENT alone, and then with the project SOURCE as a subdirectory. Fails if
# the project changes the type or the output folder of the application's own library. Also fails if the
# project adds a cache entry whose name does not begin with ORNWHATSNEW_, except the entries of dependencies
# and of CMake's modules. Repeats the configuration with the subdirectory, because cache entries of the
# first run may affect the second run. WORK is the folder for the builds. GENERATOR is the CMake generator,
# and COMPILER is the C++ compiler.
cmake_minimum_required(VERSION 3.25)

function(configure folder)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${PARENT} -B ${folder} -G ${GENERATOR}
            -DCMAKE_CXX_COMPILER=${COMPILER} -DSOURCE=${SOURCE} ${ARGN}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Sets RESULT to the names of the cache entries in FOLDER. Omits STATIC entries, because only CMake
# itself creates them.
function(read_cache_names folder result)
  file(STRINGS ${folder}/CMakeCache.txt lines REGEX "^[^#/].*:[A-Z]+=")
  list(FILTER lines EXCLUDE REGEX ":STATIC=")
  list(TRANSFORM lines REPLACE ":.*" "")
  set(${result} ${lines} PARENT_SCOPE)
endfunction()

# Configures the application twice with the subdirectory and the options. Compares its library and
# its cache entries with those of the application without the subdirectory. PACKAGES is a regular
# expression for the names of the packages for which the project searches with these options.
function(check_embedding name packages)
  set(folder ${WORK}/${name})
  configure(${folder} -DEMBED=ON ${ARGN})
  configure(${folder})
  file(READ ${WORK}/alone/kind.txt expected)
  file(READ ${folder}/kind.txt kind)
  if(NOT kind STREQUAL expected)
    message(FATAL_ERROR "${name}: the application's library is '${kind}' instead of '${expected}'")
  endif()

  read_cache_names(${WORK}/alone before)
  read_cache_names(${folder} added)
  list(REMOVE_ITEM added ${before})
  if(NOT "ORNWHATSNEW_INSTALL" IN_LIST added)
    message(FATAL_ERROR "${name}: no cache entry of this project was found")
  endif()
  # Omit the cache entries of this project, which begin with ORNWHATSNEW_. Also omit the entries that find
  # modules add, because every project that searches for the same packages has them.
  list(FILTER added EXCLUDE REGEX "^(ORNWHATSNEW|${packages})_")
  list(FILTER added EXCLUDE REGEX "^FIND_PACKAGE_MESSAGE_DETAILS_(${packages}|Threads|PkgConfig)$")
  list(REMOVE_ITEM added CMAKE_HAVE_LIBC_PTHREAD)
  if("-DORNWHATSNEW_INSTALL=ON" IN_LIST ARGN)
    # Omit the entries that GNUInstallDirs adds.
    list(FILTER added EXCLUDE REGEX "^CMAKE_INSTALL_[A-Z]+DIR(-ADVANCED)?$")
    list(REMOVE_ITEM added _GNUInstallDirs_LAST_CMAKE_INSTALL_PREFIX)
  endif()
  if(added)
    message(FATAL_ERROR "${name}: cache entries without a prefix were added: ${added}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
configure(${WORK}/alone -DEMBED=OFF)
check_embedding(default "ICU")
check_embedding(installed "ICU" -DORNWHATSNEW_INSTALL=ON)
check_embedding(everything
  "ICU|Boost|boost_[a-z]+|CLI11|GTest|PKG_CONFIG|nlohmann_json"
  -DORNWHATSNEW_BUILD_EXAMPLES=ON -DORNWHATSNEW_BUILD_HOSTS=ON -DORNWHATSNEW_BUILD_TESTS=ON)
