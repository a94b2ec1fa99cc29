// Contains no code. The CMake target of this file builds the precompiled header that all GoogleTest
// programs use.
