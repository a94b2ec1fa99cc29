# Configures the Debian packages. './dev package' builds them with cpack and the install prefix /usr.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ornwhatsnew)
set(CPACK_PACKAGE_CONTACT "The developers of ornwhatsnew <ornwhatsnew@tarsa.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEB_COMPONENT_INSTALL ON)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ornwhatsnew)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION utils)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "What's New lists for applications and terminals
 A library that shows the users of an application what is new, and the
 program ornwhatsnew, which shows it in a terminal.")
# dpkg-shlibdeps finds the packages that the binaries depend on. The program depends on libornwhatsnew,
# which need not be installed on the build machine. Therefore, dpkg-shlibdeps needs the folder to which the
# build writes this library.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY "=")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ornwhatsnew-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "Development files of ornwhatsnew
 Headers, CMake package and pkg-config file of the library in the package
 ornwhatsnew.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
    "ornwhatsnew (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
if(NOT ORNWHATSNEW_SHARED)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libicu-dev")
endif()

if(TARGET ornwhatsnewqt AND ORNWHATSNEW_SHARED)
  set(version "(= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
  list(APPEND CPACK_COMPONENTS_ALL qt qtdevelopment)

  set(CPACK_DEBIAN_QT_PACKAGE_NAME ornwhatsnew-qt)
  set(CPACK_DEBIAN_QT_PACKAGE_SECTION libs)
  set(CPACK_COMPONENT_QT_DESCRIPTION "What's New panel for applications with Qt Widgets
 A library that adds a complete What's New to the Help menu of an
 application that uses Qt 6 Widgets, and the program ornwhatsnew-panel,
 which shows the panel for a data file.")
  set(CPACK_DEBIAN_QT_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_QT_PACKAGE_DEPENDS "ornwhatsnew ${version}")

  set(CPACK_DEBIAN_QTDEVELOPMENT_PACKAGE_NAME ornwhatsnew-qt-dev)
  set(CPACK_DEBIAN_QTDEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_COMPONENT_QTDEVELOPMENT_DESCRIPTION "Development files of ornwhatsnew-qt
 Headers, CMake package and pkg-config file of the library in the package
 ornwhatsnew-qt.")
  set(CPACK_DEBIAN_QTDEVELOPMENT_PACKAGE_DEPENDS
      "ornwhatsnew-qt ${version}, ornwhatsnew-dev ${version}, qt6-base-dev")
endif()

include(CPack)
