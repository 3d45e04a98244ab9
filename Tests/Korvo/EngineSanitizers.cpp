// What the leak checker, where it is built in, is to overlook in these tests: it asks the
// program for this function.
//
// JavaScriptCore keeps memory of its own for ever, and its threads are still at work when
// a test program ends. What our own code allocates is checked all the same.

extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions() {
  return "leak:libjavascriptcoregtk\n";
}
