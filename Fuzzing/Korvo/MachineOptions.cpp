// For the sanitizers and for libFuzzer: the JavaScript machine handles segmentation faults of its
// own making, and keeps memory of its own for ever.
extern "C" const char *__asan_default_options();

extern "C" __attribute__((visibility("default"))) const char *__asan_default_options() {
  return "detect_leaks=0:handle_segv=0:allow_user_segv_handler=1";
}
