// What the Objective-C libraries and what they rest on keep for as long as the program runs is no leak.
extern "C" const char* __lsan_default_suppressions();   // NOLINT: the name that the sanitizer looks for
extern "C" const char* __lsan_default_suppressions() {  // NOLINT
  return "leak:libgnustep\nleak:libobjc\nleak:libfontconfig\n";
}
