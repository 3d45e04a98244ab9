// Read by the sanitizers' run time, in builds that have one; of no effect in others. GNUstep
// keeps a few objects for ever, which the leak checker would take for leaks of ours, and the
// JavaScript machine handles segmentation faults of its own making.
extern "C" const char *__asan_default_options();

extern "C" __attribute__((visibility("default"))) const char *__asan_default_options() {
  return "detect_leaks=0:handle_segv=0";
}
