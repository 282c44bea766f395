#include "platform/system.h"

#include <algorithm>
#include <limits>

#include "platform/win32/handles.h"
#include "platform/win32/sdk_ole.h"

namespace marklet {
namespace {

using win32::Native;
using win32::Wrap;

constexpr std::size_t kMostUnits =
    std::numeric_limits<int>::max() / 4;  // what a length of the platform can say

// System colours are 0x80 and an index in the low byte.
bool IsSystemColour(OLE_COLOR colour) { return colour >> 24 == 0x80; }

}  // namespace

bool GetVersionExA(OSVERSIONINFOA& version) {
  if (Configuration().version) {
    version = *Configuration().version;
    return true;
  }
  ::OSVERSIONINFOA native{};
  native.dwOSVersionInfoSize = sizeof native;
  if (!::GetVersionExA(&native)) return false;
  version = {native.dwMajorVersion, native.dwMinorVersion, native.dwPlatformId};
  return true;
}

COLORREF GetSysColor(int index) {
  const auto& fixed = Configuration().system_colours;
  const auto found = fixed.find(index);
  return found != fixed.end() ? found->second : ::GetSysColor(index);
}

bool OleTranslateColor(OLE_COLOR colour, COLORREF& result) {
  ::COLORREF translated = 0;
  if (FAILED(::OleTranslateColor(colour, nullptr, &translated))) return false;
  result = IsSystemColour(colour) ? GetSysColor(static_cast<int>(colour & 0xFF)) : translated;
  return true;
}

HMODULE LoadLibraryA(std::string_view name) {
  const auto& fixed = Configuration().libraries;
  const auto found = fixed.find(name);
  if (found != fixed.end() && !found->second) return nullptr;
  const ::HMODULE library = ::LoadLibraryA(std::string(name).c_str());
  // A library that is only said to be there answers with a handle all the same.
  return Wrap(library || found == fixed.end() ? library : GetModuleHandleW(nullptr));
}

std::string WideCharToMultiByte(std::uint32_t code_page, std::u16string_view text) {
  if (text.empty() || text.size() > kMostUnits) return {};
  const int units = static_cast<int>(text.size());
  const auto convert = [&](char* bytes, int room) {
    return ::WideCharToMultiByte(code_page, 0, Native(text.data()), units, bytes, room, nullptr, nullptr);
  };
  std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  bytes.resize(static_cast<std::size_t>(convert(bytes.data(), static_cast<int>(bytes.size()))));
  return bytes;
}

std::u16string MultiByteToWideChar(std::uint32_t code_page, std::string_view bytes) {
  if (bytes.empty() || bytes.size() > kMostUnits) return {};
  const int count = static_cast<int>(bytes.size());
  const auto convert = [&](char16_t* text, int room) {
    return ::MultiByteToWideChar(code_page, 0, bytes.data(), count, reinterpret_cast<wchar_t*>(text), room);
  };
  std::u16string text(static_cast<std::size_t>(convert(nullptr, 0)), u'\0');
  text.resize(static_cast<std::size_t>(convert(text.data(), static_cast<int>(text.size()))));
  return text;
}

int MessageBoxW(std::u16string_view text, std::u16string_view title, std::uint32_t style) {
  if (Configuration().message_box) {
    Configuration().message_box(text, title);
    return IDOK;
  }
  const std::u16string shown(text), caption(title);
  return ::MessageBoxW(GetActiveWindow(), Native(shown.c_str()), Native(caption.c_str()), style);
}

int CompareStringOrdinal(std::u16string_view a, std::u16string_view b) {
  const auto units = [](std::u16string_view text) {
    return static_cast<int>(std::min(text.size(), kMostUnits));
  };
  if (a.empty() || b.empty()) return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
  return ::CompareStringOrdinal(Native(a.data()), units(a), Native(b.data()), units(b), TRUE) - CSTR_EQUAL;
}

bool DefWindowProcW_SetText(HWND window, std::u16string_view text) {
  const std::u16string terminated(text);
  return window &&
         ::DefWindowProcW(Native(window), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(terminated.c_str()));
}

bool DefWindowProcA_SetText(HWND window, std::string_view text) {
  const std::string terminated(text);
  return window &&
         ::DefWindowProcA(Native(window), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(terminated.c_str()));
}

}  // namespace marklet
