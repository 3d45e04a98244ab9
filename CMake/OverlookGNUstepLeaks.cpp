// Read by the sanitizers' run time, in builds that have one; of no effect in others. GNUstep and
// the Objective-C run time keep some memory to the end of the process, which the leak checker would
// take for leaks of ours.
extern "C" const char *__asan_default_options();

extern "C" __attribute__((visibility("default"))) const char *__asan_default_options() {
  return "detect_leaks=0";
}
