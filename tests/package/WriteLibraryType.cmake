# Writes the type of the library to library_type.txt at the end of the project ornwhatsnew.
# LibraryType.cmake makes CMake include this file in the project.
function(write_library_type)
  get_target_property(type ornwhatsnew TYPE)
  file(WRITE ${CMAKE_BINARY_DIR}/library_type.txt ${type})
endfunction()
cmake_language(DEFER CALL write_library_type)
