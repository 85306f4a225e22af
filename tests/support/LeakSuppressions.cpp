// What the Objective-C libraries keep for as long as the program runs is no leak.
extern "C" const char* __lsan_default_suppressions();  // NOLINT: the name that the sanitizer looks for
extern "C" const char* __lsan_default_suppressions() { return "leak:libgnustep\nleak:libobjc\n"; }  // NOLINT
