// The benchmark's empty program: shows what the C++ run-time costs before main does anything.
int main() { return 0; }
