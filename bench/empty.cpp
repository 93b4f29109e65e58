// The benchmark's empty program: what a program of this C++ run-time costs before it does anything.
int main() { return 0; }
