// The tests draw with the fonts of tests/fonts.conf, whatever the machine has.
#include <cstdlib>

namespace {

const int pinned = setenv("FONTCONFIG_FILE", MARKLET_TESTS "/fonts.conf", 1);

}  // namespace
