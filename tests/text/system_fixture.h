// Plays through the generations of the operating system on any machine.
#pragma once

#include <gtest/gtest.h>

#include <ostream>

#include "platform/locale.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "text/manual_text.h"
#include "text/shaping.h"

namespace marklet {

struct Generation {
  const char* name;
  OSVERSIONINFOA version;
  friend std::ostream& operator<<(std::ostream& out, const Generation& g) { return out << g.name; }
};

constexpr OSVERSIONINFOA kWindows95{4, 0, 1};
constexpr OSVERSIONINFOA kWindows98{4, 10, 1};
constexpr OSVERSIONINFOA kNt351{3, 51, 2};
constexpr OSVERSIONINFOA kNt4{4, 0, 2};
constexpr OSVERSIONINFOA kWindows2000{5, 0, 2};
constexpr OSVERSIONINFOA kXp{5, 1, 2};
constexpr OSVERSIONINFOA kServer2003{5, 2, 2};
constexpr OSVERSIONINFOA kVista{6, 0, 2};
constexpr OSVERSIONINFOA kWindows7{6, 1, 2};
constexpr OSVERSIONINFOA kWindows10{10, 0, 2};

// Everything that is cached or configured is as in a new thread at the start of each test, and left so.
class SystemTest : public testing::Test {
 protected:
  SystemTest() { Restore(); }
  ~SystemTest() override { Restore(); }

  void Play(const OSVERSIONINFOA& version) {
    ForgetOsTests();
    ForgetUniscribe();
    Configuration().version = version;
  }
  void Play(const OSVERSIONINFOA& version, bool has_script_processor) {
    Play(version);
    Configuration().libraries["usp10.dll"] = has_script_processor;
  }

 private:
  static void Restore() {
    Configuration() = {};
    ConfiguredLocales().reset();
    ForgetOsTests();
    ForgetUniscribe();
    ForgetArabicLocale();
  }
};

}  // namespace marklet
