// Does nothing. The programs start_bare, start_runtime and start_third_party are built from this
// file. The programs differ in the libraries that they load.
int main() {}
