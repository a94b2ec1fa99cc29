# Builds all targets with the sanitizers in ORNWHATSNEW_SANITIZERS. Sanitizers can report false positives if
# only some of a program's object files are instrumented.
if(ORNWHATSNEW_SANITIZERS)
  string(REPLACE "," ";" sanitizers "${ORNWHATSNEW_SANITIZERS}")
  # With sanitizers, g++ wrongly warns that members of std::regex may be uninitialised. Disable this
  # warning only in builds with sanitizers.
  add_compile_options(-fsanitize=${ORNWHATSNEW_SANITIZERS} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all
                      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  add_link_options(-fsanitize=${ORNWHATSNEW_SANITIZERS})
  if("fuzzer-no-link" IN_LIST sanitizers)
    # Recording the operands of each comparison would take a quarter of a fuzzer's time. Instead, the
    # files in fuzz/dictionaries contain the strings with which the library compares its input.
    add_compile_options(-fno-sanitize-coverage=trace-cmp)
  endif()
  if("integer" IN_LIST sanitizers)
    add_compile_options(-fsanitize-ignorelist=${CMAKE_CURRENT_LIST_DIR}/IntegerIgnoreList.txt)
  endif()
endif()
