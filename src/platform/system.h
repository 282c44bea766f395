// Questions to the system: its version, its colours, its code pages, its libraries.
//
// Each answer can be fixed in advance with SystemConfiguration, so that every generation of the operating
// system can be played through on any machine.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

struct OSVERSIONINFOA {
  std::uint32_t dwMajorVersion = 0;
  std::uint32_t dwMinorVersion = 0;
  std::uint32_t dwPlatformId = 0;  // 1 is the 95/98 family, 2 the NT family
  friend bool operator==(const OSVERSIONINFOA&, const OSVERSIONINFOA&) = default;
};

// Answers that stand in for the system's own on this thread; what is not set is asked of the platform.
struct SystemConfiguration {
  std::optional<OSVERSIONINFOA> version;
  std::map<std::string, bool, std::less<>> libraries;  // by name: whether LoadLibraryA finds it
  std::map<int, COLORREF> system_colours;              // by index
  std::optional<Long> pixels_per_inch;                 // of the screen and of memory contexts
  // Takes the messages that a box on the screen would show.
  std::function<void(std::u16string_view text, std::u16string_view title)> message_box;
};
SystemConfiguration& Configuration();

// False when the system doesn't tell.
bool GetVersionExA(OSVERSIONINFOA& version);

// A system colour by index; 0 for an index that doesn't exist.
COLORREF GetSysColor(int index);
// An OLE colour as RGB. False, and `result` as it was, for a value that is neither an RGB value nor a system
// colour.
bool OleTranslateColor(OLE_COLOR colour, COLORREF& result);

// A library by name, loaded until the program ends; null when there is none. A real handle is above 32.
HMODULE LoadLibraryA(std::string_view name);

// Text to bytes in a code page by its number, what can't be told replaced. A lone surrogate becomes the bytes
// of U+FFFD in UTF-8. Empty for an empty text, an unknown page or on failure. The text may hold NULs.
std::string WideCharToMultiByte(std::uint32_t code_page, std::u16string_view text);
// Bytes to text; invalid UTF-8 becomes U+FFFD. Empty for no bytes or on failure.
std::u16string MultiByteToWideChar(std::uint32_t code_page, std::string_view bytes);

// Below, at or above 0 as `a` stands in front of `b`, equals it but for the case of letters, or stands after
// it. Letters of every script have their case, by the platform's own table, one letter for one.
int CompareStringOrdinal(std::u16string_view a, std::u16string_view b);

// Gives a window its text through the default window procedure, past any subclass (WM_SETTEXT). The second
// takes the text as bytes for systems without Unicode windows. False for a null window.
bool DefWindowProcW_SetText(HWND window, std::u16string_view text);
bool DefWindowProcA_SetText(HWND window, std::string_view text);

// Shows a text in a modal box in front of the active window and returns the number of the button that was
// pressed (OK is 1). 0 without a box, as where there is no screen. Messages run on meanwhile, so that the
// program may be entered again.
int MessageBoxW(std::u16string_view text, std::u16string_view title, std::uint32_t style);

}  // namespace marklet
