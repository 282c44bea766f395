// The hook by which every call of the seam passes an active recorder.
//
// A call that can be recorded begins with
//   if (Refused(Operation::kFillRect, dc, rect, brush)) return false;
// with its arguments in order; those that only carry results, pictures, icons, keys and themes are left out.
// Without a recorder this costs one test. A new operation needs a row in operations.cpp, or that doesn't
// compile.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/text.h"
#include "platform/types.h"
#include "platform/uniscribe.h"

namespace marklet::headless {

// In the order of the table in operations.cpp.
enum class Operation : std::uint8_t {
  // gdi.h
  kCreateCompatibleDC,
  kDeleteDC,
  kCreateDIBSection,
  kSelectObject,
  kDeleteObject,
  kPixelsOf,
  kBitBlt,
  kSetStretchBltMode,
  kStretchBlt,
  kAlphaBlend,
  kCreateSolidBrush,
  kFillRect,
  kCreatePen,
  kMoveToEx,
  kLineTo,
  kDrawFocusRect,
  kDrawEdge,
  kGetObjectA,
  // text.h
  kCreateFontIndirectW,
  kPixelsPerInch,
  kSetTextColor,
  kGetTextColor,
  kSetBkColor,
  kSetBkMode,
  kSetTextAlign,
  kGetTextExtentPoint32W,
  kGetTextExtentPoint32A,
  kGetCharABCWidthsA,
  kDrawTextW,
  kDrawTextA,
  kTextOutW,
  kExtTextOutW,
  // uniscribe.h
  kScriptIsComplex,
  kScriptStringAnalyse,
  kScriptStringFree,
  kScriptString_pcOutChars,
  kScriptString_pSize,
  kScriptString_pLogAttr,
  kScriptStringOut,
  // host_picture.h
  kLoadPicture,
  kRenderPicture,
  kPictureHandle,
  // icon.h
  kCreateIconIndirect,
  kDestroyIcon,
  kOleCreatePictureIndirect,
  // registry.h
  kRegOpenKeyExA,
  kRegQueryValueExA,
  kRegCloseKey,
  // theme.h
  kOpenThemeData,
  kGetCurrentThemeName,
  kCloseThemeData,
  // system.h
  kGetSysColor,
  kMessageBoxW,
  // locale.h
  kIsValidLocale,
  // non_client_metrics.h
  kSystemParametersInfoA,
  kCount,
};

class Recording;
extern constinit thread_local Recording* active_recording;  // null without a recorder

// One argument on its way into a recording.
struct Argument {
  enum class Kind : std::uint8_t { kContext, kNumber, kObject, kAnalysis, kRect, kText, kBytes, kFont };

  explicit Argument(HDC dc) : kind(Kind::kContext), handle(dc) {}
  explicit Argument(HGDIOBJ object) : kind(Kind::kObject), handle(object) {}
  explicit Argument(SCRIPT_STRING_ANALYSIS analysis) : kind(Kind::kAnalysis), handle(analysis) {}
  explicit Argument(bool value) : kind(Kind::kNumber), number(value) {}
  explicit Argument(std::uint8_t value) : kind(Kind::kNumber), number(value) {}
  explicit Argument(std::int32_t value) : kind(Kind::kNumber), number(value) {}
  explicit Argument(std::uint32_t value) : kind(Kind::kNumber), number(value) {}
  explicit Argument(const RECT& value) : kind(Kind::kRect), rect(&value) {}
  explicit Argument(const RECT* value) : kind(Kind::kRect), rect(value) {}  // may be null
  explicit Argument(std::u16string_view value) : kind(Kind::kText), text(value) {}
  explicit Argument(std::string_view value) : kind(Kind::kBytes), bytes(value) {}
  explicit Argument(const LOGFONTW& value) : kind(Kind::kFont), font(&value) {}

  Kind kind;
  union {
    const void* handle;
    std::int64_t number;
    const RECT* rect;
    std::u16string_view text;
    std::string_view bytes;
    const LOGFONTW* font;
  };
};

// Logs the call. True when it is to fail.
bool RecordCall(Operation operation, const Argument* arguments, std::size_t count);
// Notes what the call logged last has made.
void RecordResult(const void* made);

template <typename... Arguments>
bool Refused(Operation operation, const Arguments&... arguments) {
  if (active_recording == nullptr) [[likely]]
    return false;
  const Argument list[] = {Argument(arguments)...};
  return RecordCall(operation, list, sizeof...(arguments));
}

// For calls of which nothing can be written down.
inline bool Refused(Operation operation) {
  return active_recording != nullptr && RecordCall(operation, nullptr, 0);
}

// Passes on what a call made, so that a replay knows later uses of it from older objects.
inline HGDIOBJ Made(HGDIOBJ made) {
  if (active_recording != nullptr) [[unlikely]]
    RecordResult(made);
  return made;
}
inline HDC Made(HDC made) {
  if (active_recording != nullptr) [[unlikely]]
    RecordResult(made);
  return made;
}
inline SCRIPT_STRING_ANALYSIS Made(SCRIPT_STRING_ANALYSIS made) {
  if (active_recording != nullptr) [[unlikely]]
    RecordResult(made);
  return made;
}

}  // namespace marklet::headless
