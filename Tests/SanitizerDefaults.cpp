// What every test program tells the sanitizers, when it is built with one.

extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __tsan_default_suppressions();

// The font library keeps a part of its parsed configuration to the end of the process.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig\n";
}

// The toolkit's libraries are not instrumented: how their own threads wait for each other cannot be seen, so that what
// they hand over looks unguarded. This passes over memory that they themselves allocate, free or copy, and nothing
// else.
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so\n"
         "called_from_lib:libQt6Gui.so\n"
         "called_from_lib:libQt6Widgets.so\n";
}
