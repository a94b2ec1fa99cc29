# CMake includes this file in the project ornwhatsnew. At the end of the project, writes the type of its
# library to library_type.txt.
function(write_library_type)
  get_target_property(type ornwhatsnew TYPE)
  file(WRITE ${CMAKE_BINARY_DIR}/library_type.txt ${type})
endfunction()
cmake_language(DEFER CALL write_library_type)
