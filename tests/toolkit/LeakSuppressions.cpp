// Pango looks for fonts on a thread of its own, which still holds them when the process ends.

#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\nleak:libpangoft2-1.0.so\n";
}
#endif
