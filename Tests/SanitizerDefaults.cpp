// What every test program tells the leak checker, when it is built with one.

extern "C" const char* __lsan_default_suppressions();

// The font library keeps a part of its parsed configuration to the end of the process.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}
