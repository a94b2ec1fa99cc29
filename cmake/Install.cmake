# Defines the install rules for the libraries, the CMake package, the pkg-config files and the documents.
# The CMakeLists.txt files in hosts/ and examples/ define the other install rules.
include(CMakePackageConfigHelpers)

set(ORN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/ornwhatsnew)

install(TARGETS ornwhatsnew EXPORT ornwhatsnewTargets
  LIBRARY NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
  FILE_SET HEADERS COMPONENT development)
install(EXPORT ornwhatsnewTargets NAMESPACE ornwhatsnew:: DESTINATION ${ORN_CMAKE_DIR}
        COMPONENT development)

# The pkg-config file computes its prefix from its own location, so an installed tree can be moved.
file(RELATIVE_PATH ORN_PC_PREFIX /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
# A program that links the static library must also link the library's dependencies. The pkg-config file
# of the shared library does not list them, because pkg-config fails if a listed package is missing.
set(ORN_PC_CFLAGS "")
set(ORN_PC_PRIVATE "")
set(ORN_PC_QT_PRIVATE "")
if(NOT ORNWHATSNEW_SHARED)
  set(ORN_PC_CFLAGS " -DORNWHATSNEW_STATIC")
  set(ORN_PC_PRIVATE "Requires.private: icu-uc\nLibs.private: -pthread\n")
  set(ORN_PC_QT_PRIVATE "Requires.private: Qt6PrintSupport\n")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/ornwhatsnew.pc.in
  ${PROJECT_BINARY_DIR}/package/ornwhatsnew.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/ornwhatsnew.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ornwhatsnewConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfig.cmake INSTALL_DESTINATION ${ORN_CMAKE_DIR})
# Before version 1.0, hosts may have to be changed or rebuilt for a new minor version.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/ornwhatsnewConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfig.cmake
  ${PROJECT_BINARY_DIR}/package/ornwhatsnewConfigVersion.cmake
  DESTINATION ${ORN_CMAKE_DIR} COMPONENT development)

# A host that does not use the Qt companion does not need Qt. The companion therefore has its own export set
# and its own install components.
if(TARGET ornwhatsnewqt)
  install(TARGETS ornwhatsnewqt EXPORT ornwhatsnewQtTargets
    LIBRARY COMPONENT qt NAMELINK_COMPONENT qtdevelopment
    ARCHIVE COMPONENT qtdevelopment
    FILE_SET HEADERS COMPONENT qtdevelopment)
  install(EXPORT ornwhatsnewQtTargets NAMESPACE ornwhatsnew:: DESTINATION ${ORN_CMAKE_DIR}
          COMPONENT qtdevelopment)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/ornwhatsnewqt.pc.in
    ${PROJECT_BINARY_DIR}/package/ornwhatsnewqt.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/package/ornwhatsnewqt.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT qtdevelopment)
endif()

# The installed documents have the same relative paths as in the repository, so that the links between them
# work. The documents refer to the examples and the headers, and the examples refer to the documents.
# Therefore, the documentation folder contains symbolic links to the examples and the headers, and the data
# folder contains one to the documents. Debian requires a documentation folder for each package. For the
# other packages, this folder is a symbolic link to the folder of ornwhatsnew.
set(ORN_DOC_DIR ${CMAKE_INSTALL_DATADIR}/doc/ornwhatsnew)
install(FILES README.md CHANGELOG.md ARCHITECTURE.md CONTRIBUTING.md SECURITY.md
        DESTINATION ${ORN_DOC_DIR})
install(DIRECTORY docs DESTINATION ${ORN_DOC_DIR}
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN api EXCLUDE)

# orn_install_link(LINK TARGET COMPONENT)
# Installs LINK, a symbolic link to TARGET. Resolves relative paths against the installation prefix.
function(orn_install_link link target component)
  cmake_path(GET link PARENT_PATH folder)
  cmake_path(GET link FILENAME name)
  # Convert both paths to absolute paths, because users can set installation folders to absolute paths.
  cmake_path(ABSOLUTE_PATH folder BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} OUTPUT_VARIABLE base)
  cmake_path(ABSOLUTE_PATH target BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX})
  cmake_path(RELATIVE_PATH target BASE_DIRECTORY ${base})
  set(staging ${PROJECT_BINARY_DIR}/package/${folder})
  file(MAKE_DIRECTORY ${staging})
  file(CREATE_LINK ${target} ${staging}/${name} SYMBOLIC)
  install(FILES ${staging}/${name} DESTINATION ${folder} COMPONENT ${component})
endfunction()

orn_install_link(${ORN_DATA_DIR}/docs ${ORN_DOC_DIR}/docs runtime)
if(ORNWHATSNEW_BUILD_EXAMPLES)
  orn_install_link(${ORN_DOC_DIR}/examples ${ORN_EXAMPLES_DIR} runtime)
endif()
foreach(module orncore ornappsupport ornui ornwhatsnew)
  orn_install_link(${ORN_DOC_DIR}/${module} ${CMAKE_INSTALL_INCLUDEDIR}/${module} development)
endforeach()
orn_install_link(${CMAKE_INSTALL_DATADIR}/doc/ornwhatsnew-dev ${ORN_DOC_DIR} development)
if(TARGET ornwhatsnewqt)
  orn_install_link(${CMAKE_INSTALL_DATADIR}/doc/ornwhatsnew-qt ${ORN_DOC_DIR} qt)
  orn_install_link(${CMAKE_INSTALL_DATADIR}/doc/ornwhatsnew-qt-dev ${ORN_DOC_DIR} qtdevelopment)
endif()

# The man page ornwhatsnew(5) is generated from the manual for authors of data files. It is optional,
# because only the build of packages should require lowdown.
if(ORNWHATSNEW_MAN_PAGES)
  find_program(ORNWHATSNEW_LOWDOWN lowdown REQUIRED)
  mark_as_advanced(ORNWHATSNEW_LOWDOWN)
  set(page ${PROJECT_BINARY_DIR}/package/ornwhatsnew.5)
  add_custom_command(OUTPUT ${page}
    COMMAND ${PROJECT_SOURCE_DIR}/tools/man_page.sh ${ORNWHATSNEW_LOWDOWN}
            ${PROJECT_SOURCE_DIR}/docs/data-file.md ${PROJECT_VERSION} ${page}
    DEPENDS ${PROJECT_SOURCE_DIR}/docs/data-file.md ${PROJECT_SOURCE_DIR}/tools/man_page.sh
    VERBATIM)
  add_custom_target(ornwhatsnew_man_page ALL DEPENDS ${page})
  install(FILES ${page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man5)
endif()
