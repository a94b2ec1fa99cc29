# One switch for all targets: sanitizers only tell the truth when everything is built with them.
if(ORNWHATSNEW_SANITIZERS)
  string(REPLACE "," ";" sanitizers "${ORNWHATSNEW_SANITIZERS}")
  # Under the sanitizers g++ takes members of the standard library's regular expressions for
  # uninitialised; the release build keeps that warning.
  add_compile_options(-fsanitize=${ORNWHATSNEW_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all
                      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${ORNWHATSNEW_SANITIZERS})
  if("integer" IN_LIST sanitizers)
    add_compile_options(-fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/WrapsOnPurpose.txt)
  endif()
endif()
