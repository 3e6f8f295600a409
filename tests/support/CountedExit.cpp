// Linked into everything when coverage is measured, by cmake/Coverage.cmake. The names are the linker's and
// gcov's.

extern "C" {
[[noreturn]] void __real__Exit(int code);
void __gcov_dump();

[[noreturn]] void __wrap__Exit(int code) {
    __gcov_dump();
    __real__Exit(code);
}
}
