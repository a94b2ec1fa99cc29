# How a module, a program and a test program of this project are declared: once, here.

# Before 1.0 a minor version may change the binary interface, so that it must not be loaded in place
# of another.
set(ORN_SOVERSION ${PROJECT_VERSION_MAJOR})
if(PROJECT_VERSION_MAJOR EQUAL 0)
  set(ORN_SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
endif()

# orn_add_module(NAME HEADERS header... SOURCES source... [PUBLIC library...] [PRIVATE library...])
# Declares a library with C++20, hidden visibility, our warnings and one header set, based at the
# repository root, so that the path included is the path on disk. It is installed as part of the
# package's component "library" where its name is the project's, else of "platform".
function(orn_add_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "HEADERS;SOURCES;PUBLIC;PRIVATE")
  add_library(${name} ${arg_SOURCES})
  add_library(ornwhatsnew::${name} ALIAS ${name})
  target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}
                 FILES ${arg_HEADERS})
  target_compile_features(${name} PUBLIC cxx_std_20)
  set_target_properties(${name} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION}
    SOVERSION ${ORN_SOVERSION}
    INSTALL_RPATH "$ORIGIN")
  # A module calls its own exported functions directly, not by way of the host's symbol table.
  target_link_options(${name} PRIVATE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,SHARED_LIBRARY>:LINKER:-Bsymbolic-functions>)
  target_compile_options(${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-fno-semantic-interposition>)
  orn_export_own_names(${name})
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE}
                        $<BUILD_INTERFACE:orn_warnings>)
  if(ORNWHATSNEW_INSTALL)
    set(component Platform)
    if(name STREQUAL PROJECT_NAME)
      set(component Library)
    endif()
    install(TARGETS ${name} EXPORT ornwhatsnew${component}Targets
      LIBRARY NAMELINK_COMPONENT development
      ARCHIVE COMPONENT development
      FILE_SET HEADERS COMPONENT development)
  endif()
endfunction()

# orn_export_own_names(NAME): lets the linker export only what is of the namespace NAME.
function(orn_export_own_names name)
  if(NOT BUILD_SHARED_LIBS OR NOT UNIX OR APPLE)
    return()
  endif()
  string(LENGTH ${name} length)
  set(mangled ${length}${name})
  set(map ${CMAKE_CURRENT_BINARY_DIR}/${name}.map)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/Exports.map.in ${map} @ONLY)
  target_link_options(${name} PRIVATE LINKER:--version-script=${map})
  set_property(TARGET ${name} APPEND PROPERTY LINK_DEPENDS ${map})
endfunction()

# orn_add_internal_library(NAME SOURCES source... [PUBLIC library...] [PRIVATE library...])
# A static library that only our own programs and tests link; it is not installed.
function(orn_add_internal_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR})
  target_compile_features(${name} PUBLIC cxx_std_20)
  set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} orn_warnings)
endfunction()

# orn_add_program(NAME SOURCES source... [PRIVATE library...])
function(orn_add_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PRIVATE")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  target_compile_features(${name} PRIVATE cxx_std_20)
  set_target_properties(${name} PROPERTIES
    CXX_EXTENSIONS OFF
    INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  target_link_libraries(${name} PRIVATE ${arg_PRIVATE} orn_warnings)
endfunction()

# orn_add_tests(NAME SOURCES source... [PRIVATE library...])
# A GoogleTest program; each of its tests is a CTest test of its own, found after the build.
function(orn_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PRIVATE")
  orn_add_program(${name} SOURCES ${arg_SOURCES} PRIVATE ${arg_PRIVATE} GTest::gmock_main)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
