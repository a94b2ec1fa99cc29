# What `cmake --install` puts where. Modules and the program add themselves where they are declared;
# here is what goes with them: the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(ORN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ornwhatsnew)

foreach(part Platform Library)
  install(EXPORT ornwhatsnew${part}Targets NAMESPACE ornwhatsnew:: DESTINATION ${ORN_CMAKE_DIR}
          COMPONENT development)
endforeach()

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ornwhatsnewConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfig.cmake INSTALL_DESTINATION ${ORN_CMAKE_DIR})
# Before 1.0 a minor version may ask hosts to change or to be rebuilt (as do the libraries' names).
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/ornwhatsnewConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfig.cmake
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfigVersion.cmake
  DESTINATION ${ORN_CMAKE_DIR} COMPONENT development)

# The pkg-config file finds its prefix from where it lies, so that an installed tree can be moved.
file(RELATIVE_PATH ORN_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
# Static libraries leave it to the consumer to link what they use inside. Of shared ones it is not
# even mentioned: pkg-config wants to see the files of all that is, linked or not.
set(ORN_PC_PRIVATE "")
if(NOT BUILD_SHARED_LIBS)
  set(ORN_PC_PRIVATE "Requires.private: icu-uc\nLibs.private: -lboost_thread -pthread\n")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/ornwhatsnew.pc.in
  ${PROJECT_BINARY_DIR}/package/ornwhatsnew.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/ornwhatsnew.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
