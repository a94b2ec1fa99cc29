# All targets are built with the sanitizers, because mixed programs give false reports.
if(ORNWHATSNEW_SANITIZERS)
  string(REPLACE "," ";" sanitizers "${ORNWHATSNEW_SANITIZERS}")
  # With sanitizers g++ reports members of std::regex as uninitialised; the release build keeps that
  # warning.
  add_compile_options(-fsanitize=${ORNWHATSNEW_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all
                      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${ORNWHATSNEW_SANITIZERS})
  if("integer" IN_LIST sanitizers)
    add_compile_options(-fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/IntegerIgnoreList.txt)
  endif()
endif()
