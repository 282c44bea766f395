#include "platform/program.h"

#include <memory>
#include <string_view>

#include "platform/system.h"
#include "platform/win32/sdk.h"
// shellapi.h needs windows.h first.
#include <shellapi.h>

namespace marklet {
namespace {

struct LocalDeleter {
  void operator()(wchar_t** arguments) const { LocalFree(arguments); }
};

}  // namespace

// `argv` has lost what the system code page can't tell: the arguments are taken from the command line itself.
std::vector<std::string> ProgramArguments(int, char**) {
  int count = 0;
  const std::unique_ptr<wchar_t*, LocalDeleter> arguments(CommandLineToArgvW(GetCommandLineW(), &count));
  std::vector<std::string> result;
  for (int i = 1; arguments && i < count; ++i) {
    const std::wstring_view argument(arguments.get()[i]);
    const auto* units = reinterpret_cast<const char16_t*>(argument.data());
    result.push_back(WideCharToMultiByte(CP_UTF8, std::u16string_view(units, argument.size())));
  }
  return result;
}

std::optional<std::vector<std::string>> LogPlatformCalls(const std::function<void()>&) {
  return std::nullopt;
}

std::vector<char32_t> TakeMissingCharacters() { return {}; }

}  // namespace marklet
