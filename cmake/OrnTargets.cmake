# Defines functions that declare the library, its modules, programs and test programs.

# Before version 1.0, a minor version may change the binary interface, so the soname contains the minor
# version.
set(ORN_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(ORN_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
endif()

# orn_add_library()
# Declares the library ornwhatsnew, to which orn_add_module adds sources. The base directory of its header
# set is the root of the repository, so include paths equal the paths in the repository.
function(orn_add_library)
  set(type STATIC)
  if(ORNWHATSNEW_SHARED)
    set(type SHARED)
  endif()
  add_library(ornwhatsnew ${type})
  add_library(ornwhatsnew::ornwhatsnew ALIAS ornwhatsnew)
  target_sources(ornwhatsnew PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR})
  target_compile_features(ornwhatsnew PUBLIC cxx_std_20)
  target_compile_definitions(ornwhatsnew PRIVATE ORNWHATSNEW_BUILDING)
  set_target_properties(ornwhatsnew PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${ORN_SOVERSION})
  target_link_libraries(ornwhatsnew PRIVATE $<BUILD_INTERFACE:orn_warnings>)
  if(ORNWHATSNEW_SHARED)
    orn_set_shared_library_options()
  else()
    target_compile_definitions(ornwhatsnew PUBLIC ORNWHATSNEW_STATIC)
  endif()
endfunction()

# orn_set_shared_library_options()
# Sets compiler and linker options for the shared library. Omits options that the compiler or the linker
# does not support.
function(orn_set_shared_library_options)
  # With -fno-semantic-interposition and -Bsymbolic-functions, the library calls its own exported
  # functions directly. Otherwise, the loader would have to look up each of these functions in the
  # dynamic symbol table.
  target_compile_options(ornwhatsnew PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
  orn_link_option_if_supported(LINKER:-Bsymbolic-functions ORNWHATSNEW_HAS_BSYMBOLIC_FUNCTIONS)
  orn_link_option_if_supported(LINKER:--as-needed ORNWHATSNEW_HAS_AS_NEEDED)
  set(map ${PROJECT_SOURCE_DIR}/cmake/Exports.map)
  orn_link_option_if_supported(LINKER:--version-script=${map} ORNWHATSNEW_HAS_VERSION_SCRIPT)
  set_property(TARGET ornwhatsnew APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

# orn_link_option_if_supported(OPTION VARIABLE)
# If the linker supports OPTION, links the library with this option. Stores in the cache variable VARIABLE
# whether the linker supports OPTION.
function(orn_link_option_if_supported option variable)
  include(CheckLinkerFlag)
  check_linker_flag(CXX ${option} ${variable})
  if(${variable})
    target_link_options(ornwhatsnew PRIVATE ${option})
  endif()
endfunction()

# orn_add_module(NAME HEADERS header... SOURCES source... [PRIVATE library...])
# Adds the sources and public headers of the module in the current folder to the library.
function(orn_add_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES;PRIVATE")
  list(TRANSFORM arg_HEADERS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(ornwhatsnew
    PRIVATE ${arg_SOURCES}
    PUBLIC FILE_SET HEADERS FILES ${arg_HEADERS})
  target_link_libraries(ornwhatsnew PRIVATE ${arg_PRIVATE})
endfunction()

# orn_add_internal_library(NAME SOURCES source... [PUBLIC library...] [PRIVATE library...])
# Declares a static library for this project's programs and tests. It is not installed.
function(orn_add_internal_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_features(${name} PUBLIC cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} orn_warnings)
endfunction()

# orn_add_program(NAME SOURCES source... [PRIVATE library...])
# Declares a program. The installed program finds the shared library relative to its own folder.
function(orn_add_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PRIVATE")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_features(${name} PRIVATE cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF)
  if(ORNWHATSNEW_INSTALL)
    set_target_properties(${name} PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  endif()
  target_link_libraries(${name} PRIVATE ${arg_PRIVATE} orn_warnings)
endfunction()

# orn_add_tests(NAME SOURCES source... [PRIVATE library...])
# Declares a GoogleTest program. Each of its tests is a separate CTest test. The build runs the program
# to get the list of its tests. With AddressSanitizer, starting a process takes longer than most tests. In
# such builds, a CTest test is a shard of the program instead, which runs a quarter of its tests;
# 'ctest -R' then cannot select a single test.
function(orn_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PRIVATE")
  orn_add_program(${name} SOURCES ${arg_SOURCES} PRIVATE ${arg_PRIVATE} GTest::gmock_main)
  orn_speed_up_test_compilation(${name})
  target_precompile_headers(${name} REUSE_FROM test_precompiled)
  if(ORNWHATSNEW_SANITIZERS MATCHES address)
    foreach(shard RANGE 3)
      add_test(NAME ${name}.shard${shard} COMMAND ${name})
      set_tests_properties(${name}.shard${shard} PROPERTIES
        ENVIRONMENT "GTEST_TOTAL_SHARDS=4;GTEST_SHARD_INDEX=${shard}" TIMEOUT 600)
    endforeach()
  else()
    # Omit the values of parameters from the names of the tests, because many values contain addresses, which
    # differ between builds.
    gtest_discover_tests(${name} TEST_PREFIX "${name}." NO_PRETTY_VALUES DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 120)
  endif()
endfunction()

# orn_speed_up_test_compilation(NAME)
# Compiles the target NAME without optimisation in every configuration, to save compile time. Call this
# function for all test programs and for their precompiled header, which needs the same options. Also call
# it for libraries in which the tests spend little time.
function(orn_speed_up_test_compilation name)
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-O0>)
endfunction()
