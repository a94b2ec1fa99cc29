# Writes the type of the library to library_type.txt. The call is deferred to the end of the project's
# CMakeLists.txt, because the library target does not exist before then. LibraryType.cmake makes the
# command project(ornwhatsnew) include this file.
function(write_library_type)
  get_target_property(type ornwhatsnew TYPE)
  file(WRITE ${CMAKE_BINARY_DIR}/library_type.txt ${type})
endfunction()
cmake_language(DEFER CALL write_library_type)
