# Configures the project SOURCE as the top-level project and as a subdirectory of the application in PARENT.
# Fails unless the library has the documented type for different values of BUILD_SHARED_LIBS and
# ORNWHATSNEW_SHARED. WORK is the folder for the builds. GENERATOR is the CMake generator, and COMPILER is
# the C++ compiler.
cmake_minimum_required(VERSION 3.25)

# expect(FOLDER TYPE SOURCE option...)
# Configures the project SOURCE in FOLDER with the options. The values of BUILD_SHARED_LIBS and
# ORNWHATSNEW_SHARED from earlier calls have no effect. Fails unless the library has the type TYPE.
function(expect folder type source)
  execute_process(
    COMMAND ${CMAKE_COMMAND} -S ${source} -B ${WORK}/${folder} -G ${GENERATOR}
            -DCMAKE_CXX_COMPILER=${COMPILER} -DSOURCE=${SOURCE} -DEMBED=ON
            -DORNWHATSNEW_BUILD_EXAMPLES=OFF -DORNWHATSNEW_BUILD_HOSTS=OFF
            -DORNWHATSNEW_BUILD_TESTS=OFF
            -DCMAKE_PROJECT_ornwhatsnew_INCLUDE=${CMAKE_CURRENT_LIST_DIR}/WriteLibraryType.cmake
            -UBUILD_SHARED_LIBS -UORNWHATSNEW_SHARED ${ARGN}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(READ ${WORK}/${folder}/library_type.txt actual)
  if(NOT actual STREQUAL type)
    message(FATAL_ERROR "${folder} with the options '${ARGN}': the type is ${actual} instead of ${type}")
  endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
foreach(folder top_level subproject)
  set(source ${SOURCE})
  set(default SHARED_LIBRARY)
  if(folder STREQUAL subproject)
    set(source ${PARENT})
    set(default STATIC_LIBRARY)
  endif()
  expect(${folder} ${default} ${source})
  # The type of the library must follow each change of BUILD_SHARED_LIBS.
  expect(${folder} SHARED_LIBRARY ${source} -DBUILD_SHARED_LIBS=ON)
  expect(${folder} STATIC_LIBRARY ${source} -DBUILD_SHARED_LIBS=OFF)
  expect(${folder} ${default} ${source})
  # ORNWHATSNEW_SHARED must have precedence over BUILD_SHARED_LIBS.
  expect(${folder} STATIC_LIBRARY ${source} -DBUILD_SHARED_LIBS=ON -DORNWHATSNEW_SHARED=OFF)
  expect(${folder} SHARED_LIBRARY ${source} -DBUILD_SHARED_LIBS=OFF -DORNWHATSNEW_SHARED=ON)
endforeach()
