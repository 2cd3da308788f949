// Exists for the precompiled headers of all tests.
int main() {}
