// The measures and fonts of window frames, in the records of the platform's byte calls, field by field and
// byte by byte.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/types.h"

namespace marklet {

struct LOGFONTA {
  Long lfHeight, lfWidth, lfEscapement, lfOrientation, lfWeight;
  std::uint8_t lfItalic, lfUnderline, lfStrikeOut, lfCharSet;
  std::uint8_t lfOutPrecision, lfClipPrecision, lfQuality, lfPitchAndFamily;
  char lfFaceName[32];  // in the system code page; ends at its first NUL
};
static_assert(sizeof(LOGFONTA) == 60);

struct NONCLIENTMETRICSA {
  std::uint32_t cbSize;  // of this record, set by who asks
  Long iBorderWidth, iScrollWidth, iScrollHeight, iCaptionWidth, iCaptionHeight;  // pixels
  LOGFONTA lfCaptionFont;
  Long iSmCaptionWidth, iSmCaptionHeight;
  LOGFONTA lfSmCaptionFont;
  Long iMenuWidth, iMenuHeight;
  LOGFONTA lfMenuFont, lfStatusFont, lfMessageFont;
};
static_assert(sizeof(NONCLIENTMETRICSA) == 340);

// Answers that stand in for the system's own on this thread. The headless platform has no others.
struct NonClientConfiguration {
  std::optional<NONCLIENTMETRICSA> metrics;
  std::optional<LOGFONTA> icon_title;
};
NonClientConfiguration& ConfiguredNonClient();

constexpr std::uint32_t SPI_GETICONTITLELOGFONT = 31;  // fills a LOGFONTA
constexpr std::uint32_t SPI_GETNONCLIENTMETRICS = 41;  // fills a NONCLIENTMETRICSA whose cbSize is set

// One of the two records above, into `record` of `size` bytes. False, and the record as it was, when the
// system doesn't tell, for any other action and for a wrong size.
bool SystemParametersInfoA(std::uint32_t action, std::uint32_t size, void* record, std::uint32_t flags);

}  // namespace marklet
