// Does nothing; linked without anything, with the C++ runtime, or with all that ours stands on.
int main() {}
