// CMake builds the precompiled header of all test programs together with this file.
