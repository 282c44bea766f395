#include "platform/program.h"

#include "platform/headless/recorder/recorder.h"
#include "platform/headless/text/missing_characters.h"

namespace marklet {

std::vector<std::string> ProgramArguments(int argc, char** argv) {
  return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::optional<std::vector<std::string>> LogPlatformCalls(const std::function<void()>& paint) {
  const Recorder recorder;
  paint();
  return recorder.Lines();
}

std::vector<char32_t> TakeMissingCharacters() { return headless::TakeMissing(); }

}  // namespace marklet
