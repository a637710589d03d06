// Spans that fall out of an intersection behind one that stayed are unlinked but not released, and that is kept as is.
// A leak checker would report them, so every native test program that fills outlines by lists links this. How many they
// are is checked exactly by the memory tests.

#if defined(__GNUC__)
// The checker looks the name up in the program, which hides its names otherwise.
#define VINDREL_SEEN_BY_THE_CHECKER __attribute__((visibility("default")))
#else
#define VINDREL_SEEN_BY_THE_CHECKER
#endif

// The name is the checker's choice.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" VINDREL_SEEN_BY_THE_CHECKER const char* __lsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
  return "leak:vindrel::spanAppend\nleak:vindrel::spanIntersect\n";
}
