// CMake builds the precompiled header of all GoogleTest programs when it compiles this file.
