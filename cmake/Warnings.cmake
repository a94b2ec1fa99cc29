# Enables compiler warnings for all targets that link orn_warnings. The target orn_warnings is not exported,
# so that hosts are compiled without these warnings.
add_library(orn_warnings INTERFACE)
target_compile_options(orn_warnings INTERFACE
  "$<$<CXX_COMPILER_ID:GNU,Clang,AppleClang>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;\
-Wsign-conversion;-Wold-style-cast;-Wcast-qual;-Wcast-align;-Wformat=2;-Wnon-virtual-dtor;\
-Woverloaded-virtual;-Wundef>"
  $<$<AND:$<BOOL:${ORNWHATSNEW_WARNINGS_AS_ERRORS}>,$<CXX_COMPILER_ID:GNU,Clang,AppleClang>>:-Werror>)
