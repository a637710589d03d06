// A shared library that is no effect.
extern "C" __attribute__((visibility("default"))) int notTheEntry() {
  return 0;
}
