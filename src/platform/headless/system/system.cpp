#include "platform/system.h"

#include <algorithm>
#include <array>

#include "base/ascii.h"
#include "platform/headless/recorder/hook.h"
#include "platform/headless/system/window.h"

namespace marklet {
namespace {

using headless::Operation;
using headless::Refused;

// The classic desktop, by index from 0. Indices without a colour of their own (25) are black.
constexpr std::array<COLORREF, 31> kClassicColours = {
    MakeRgb(212, 208, 200),  // 0 scroll bar
    MakeRgb(58, 110, 165),   // 1 desktop
    MakeRgb(10, 36, 106),    // 2 active caption
    MakeRgb(128, 128, 128),  // 3 inactive caption
    MakeRgb(212, 208, 200),  // 4 menu
    MakeRgb(255, 255, 255),  // 5 window
    MakeRgb(0, 0, 0),        // 6 window frame
    MakeRgb(0, 0, 0),        // 7 menu text
    MakeRgb(0, 0, 0),        // 8 window text
    MakeRgb(255, 255, 255),  // 9 caption text
    MakeRgb(212, 208, 200),  // 10 active border
    MakeRgb(212, 208, 200),  // 11 inactive border
    MakeRgb(128, 128, 128),  // 12 application workspace
    MakeRgb(10, 36, 106),    // 13 highlight
    MakeRgb(255, 255, 255),  // 14 highlight text
    MakeRgb(212, 208, 200),  // 15 button face
    MakeRgb(128, 128, 128),  // 16 button shadow
    MakeRgb(128, 128, 128),  // 17 grey text
    MakeRgb(0, 0, 0),        // 18 button text
    MakeRgb(212, 208, 200),  // 19 inactive caption text
    MakeRgb(255, 255, 255),  // 20 button highlight
    MakeRgb(64, 64, 64),     // 21 dark shadow
    MakeRgb(212, 208, 200),  // 22 light
    MakeRgb(0, 0, 0),        // 23 tooltip text
    MakeRgb(255, 255, 225),  // 24 tooltip
    MakeRgb(0, 0, 0),        // 25
    MakeRgb(0, 0, 128),      // 26 hot light
    MakeRgb(166, 202, 240),  // 27 second colour of the active caption
    MakeRgb(192, 192, 192),  // 28 second colour of the inactive caption
    MakeRgb(10, 36, 106),    // 29 menu highlight
    MakeRgb(212, 208, 200),  // 30 menu bar
};

COLORREF SystemColour(int index) {
  const auto& configured = Configuration().system_colours;
  if (!configured.empty())
    if (const auto found = configured.find(index); found != configured.end()) return found->second;
  if (index < 0 || index >= static_cast<int>(kClassicColours.size())) return 0;
  return kClassicColours[static_cast<std::size_t>(index)];
}

bool LibraryExists(std::string_view name) {
  const auto& configured = Configuration().libraries;
  if (const auto found = configured.find(name); found != configured.end()) return found->second;
  return SameWithoutCase(name, "usp10.dll");
}

}  // namespace

bool GetVersionExA(OSVERSIONINFOA& version) {
  version = Configuration().version.value_or(OSVERSIONINFOA{10, 0, 2});
  return true;
}

COLORREF GetSysColor(int index) {
  if (Refused(Operation::kGetSysColor, index)) return 0;
  return SystemColour(index);
}

// By the high byte: RGB values pass as they are, those that carry a palette marker (1, 2) among them.
bool OleTranslateColor(OLE_COLOR colour, COLORREF& result) {
  const std::uint32_t kind = colour >> 24, index = colour & 0xFF;
  const bool system = kind == 0x80;
  if (system ? index >= kClassicColours.size() : kind > 2) return false;
  result = system ? SystemColour(static_cast<int>(index)) : colour;
  return true;
}

HMODULE LoadLibraryA(std::string_view name) {
  static const char loaded[64] = {};  // any address will do for a handle
  return LibraryExists(name) ? reinterpret_cast<HMODULE>(const_cast<char*>(loaded)) : nullptr;
}

int MessageBoxW(std::u16string_view text, std::u16string_view title, std::uint32_t style) {
  if (Refused(Operation::kMessageBoxW, text, title, style) || !Configuration().message_box) return 0;
  Configuration().message_box(text, title);
  return 1;
}

bool DefWindowProcW_SetText(HWND window, std::u16string_view text) {
  if (window == nullptr) return false;
  window->text = text.substr(0, text.find(u'\0'));  // the platform takes texts up to their first NUL
  return true;
}

bool DefWindowProcA_SetText(HWND window, std::string_view text) {
  return DefWindowProcW_SetText(window, MultiByteToWideChar(CP_ACP, text));
}

}  // namespace marklet
