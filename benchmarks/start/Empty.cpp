// Does nothing. Linked without libraries, with the C++ runtime, or with all dependencies.
int main() {}
