// CMake builds the precompiled header of all test programs when it compiles this file.
