// Between the seam's types and the platform's. The records have the same layout, so that they are copied bit
// by bit; handles are the platform's own under another type.
#pragma once

#include <bit>
#include <cstddef>
#include <string_view>

#include "platform/types.h"
#include "platform/win32/sdk.h"

namespace marklet::win32 {

static_assert(sizeof(RECT) == sizeof(::RECT) && offsetof(RECT, bottom) == offsetof(::RECT, bottom));
static_assert(sizeof(SIZE) == sizeof(::SIZE) && offsetof(SIZE, cy) == offsetof(::SIZE, cy));
static_assert(sizeof(ABC) == sizeof(::ABC) && offsetof(ABC, abcC) == offsetof(::ABC, abcC));
static_assert(sizeof(char16_t) == sizeof(wchar_t));

inline ::HDC Native(HDC dc) { return reinterpret_cast<::HDC>(dc); }
inline ::HWND Native(HWND window) { return reinterpret_cast<::HWND>(window); }
inline ::HMODULE Native(HMODULE library) { return reinterpret_cast<::HMODULE>(library); }
inline ::HGDIOBJ Native(HGDIOBJ object) { return object; }
// The same where the platform wants to know the kind: NativeAs<::HBRUSH>(brush).
template <typename Handle>
Handle NativeAs(HGDIOBJ object) {
  return static_cast<Handle>(Native(object));
}
inline ::RECT Native(const RECT& rect) { return std::bit_cast<::RECT>(rect); }
inline ::SIZE Native(const SIZE& size) { return std::bit_cast<::SIZE>(size); }
inline const wchar_t* Native(const char16_t* text) { return reinterpret_cast<const wchar_t*>(text); }

inline HDC Wrap(::HDC dc) { return reinterpret_cast<HDC>(dc); }
inline HWND Wrap(::HWND window) { return reinterpret_cast<HWND>(window); }
inline HMODULE Wrap(::HMODULE library) { return reinterpret_cast<HMODULE>(library); }
inline HGDIOBJ Wrap(::HGDIOBJ object) { return static_cast<HGDIOBJ>(object); }
inline RECT Wrap(const ::RECT& rect) { return std::bit_cast<RECT>(rect); }
inline SIZE Wrap(const ::SIZE& size) { return std::bit_cast<SIZE>(size); }
inline ABC Wrap(const ::ABC& widths) { return std::bit_cast<ABC>(widths); }
inline const char16_t* Wrap(const wchar_t* text) { return reinterpret_cast<const char16_t*>(text); }

}  // namespace marklet::win32
