// What the sanitizers are told, so that the tests run the same from a script, from ctest and by hand. A build
// without sanitizers asks nobody.

// NOLINTBEGIN(bugprone-reserved-identifier): the names are those that the sanitizers look for.
extern "C" const char* __asan_default_options() { return "strict_string_checks=1:detect_leaks=1"; }
extern "C" const char* __ubsan_default_options() { return "print_stacktrace=1"; }
extern "C" const char* __lsan_default_options() {
  return "suppressions=" MARKLET_TESTS "/lsan.supp:print_suppressions=0";
}
// NOLINTEND(bugprone-reserved-identifier)
