// Does nothing. Three programs are built from this file: with the C library only, with the C++
// runtime, and with the dependencies of the library.
int main() {}
