// Plays another generation of the operating system for as long as the object lives.
#pragma once

#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "text/shaping.h"

namespace marklet {

struct SystemGeneration {
  const char* name;
  OSVERSIONINFOA version;
  bool has_script_library;
};

namespace generation {
inline constexpr SystemGeneration kWindows95 = {"Windows95", {4, 0, 1}, false};
inline constexpr SystemGeneration kNT4 = {"NT4", {4, 0, 2}, false};
inline constexpr SystemGeneration kWindows2000 = {"Windows2000", {5, 0, 2}, true};
inline constexpr SystemGeneration kXP = {"XP", {5, 1, 2}, true};
inline constexpr SystemGeneration kVista = {"Vista", {6, 0, 2}, true};
}  // namespace generation

class PlayedSystem {
 public:
  explicit PlayedSystem(const SystemGeneration& generation) : saved_(Configuration()) {
    Configuration().version = generation.version;
    Configuration().libraries["usp10.dll"] = generation.has_script_library;
    Forget();
  }
  ~PlayedSystem() {
    Configuration() = saved_;
    Forget();
  }
  PlayedSystem(const PlayedSystem&) = delete;
  PlayedSystem& operator=(const PlayedSystem&) = delete;

 private:
  static void Forget() {
    ForgetOsTests();
    ForgetUniscribe();
  }

  SystemConfiguration saved_;
};

}  // namespace marklet
