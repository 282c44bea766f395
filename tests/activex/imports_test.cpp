// What the server needs of the system: libraries that every Windows has, and of these only functions that the
// oldest supported one exports. A single missing function keeps the whole file from loading there.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

#include "activex/server.h"
#include "activex/windows7_exports.h"

namespace ocx_test {
namespace {

constexpr unsigned kBits = sizeof(void*) * 8;

struct Import {
  std::string library;   // in small letters
  std::string function;  // empty for one by its number
};

// The import directory of a loaded image.
std::vector<Import> ImportsOf(HMODULE module) {
  const auto* base = reinterpret_cast<const BYTE*>(module);
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
  const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* entry = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
  std::vector<Import> imports;
  for (; entry->Name; ++entry) {
    std::string library = reinterpret_cast<const char*>(base + entry->Name);
    std::transform(library.begin(), library.end(), library.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto* thunk = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + entry->OriginalFirstThunk);
    for (; thunk->u1.AddressOfData; ++thunk) {
      Import import{library, {}};
      if (!IMAGE_SNAP_BY_ORDINAL(thunk->u1.Ordinal))
        import.function = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + thunk->u1.AddressOfData)->Name;
      imports.push_back(import);
    }
  }
  return imports;
}

bool WindowsSevenHas(const Import& import) {
  const std::string name = " " + import.function + " ";
  return std::any_of(std::begin(kExportsOfWindows7), std::end(kExportsOfWindows7), [&](const auto& row) {
    return row.library == import.library && (row.bits == 0 || row.bits == kBits) &&
           row.names.find(name) != std::string_view::npos;
  });
}

TEST(ServerImports, AreOnTheOldestSupportedWindows) {
  const std::vector<Import> imports = ImportsOf(Server::Get().Module());
  EXPECT_GE(imports.size(), 200u);
  for (const Import& import : imports) {
    ASSERT_FALSE(import.function.empty()) << import.library << " by number";
    EXPECT_TRUE(WindowsSevenHas(import))
        << import.library << " " << import.function
        << ": if its documentation names Windows 7 or older for this library, add it to windows7_exports.h; "
           "if not, "
           "ask for it with SystemFunction (platform/win32/system_function.h) and do without where it is "
           "missing.";
  }
}

TEST(ServerImports, KnowWhatNewerSystemsAdded) {
  EXPECT_FALSE(WindowsSevenHas({"gdi32.dll", "ScriptIsComplex"})) << "in usp10.dll there";
  EXPECT_FALSE(WindowsSevenHas({"user32.dll", "GetDpiForWindow"}));
  EXPECT_FALSE(WindowsSevenHas({"kernel32.dll", "GetSystemTimePreciseAsFileTime"}));
  EXPECT_EQ(kBits == 64, WindowsSevenHas({"user32.dll", "GetWindowLongPtrW"}));
}

// It would load with the control. Its start takes several times as long as the rest of the way to the first
// picture.
TEST(ServerImports, LeaveTheLibraryOfCommonControlsToWhoNeedsIt) {
  for (const Import& import : ImportsOf(Server::Get().Module()))
    EXPECT_NE(import.library, "comctl32.dll") << import.function << " stands in common_controls.h";
}

}  // namespace
}  // namespace ocx_test
