// CNonClientFont: the measures of window frames, and the fonts of captions, menus, status bars, message boxes
// and icon titles. The control's paint doesn't use it.
#pragma once

#include "platform/non_client_metrics.h"
#include "platform/shared/std_font.h"
#include "platform/types.h"

namespace marklet {

class CNonClientFont {
 public:
  CNonClientFont();  // reads the metrics

  // Reads both records again. False when either can't be read, which stays as it was.
  bool GetMetrics();

  // 1 icon title, 2 caption, 3 small caption, 4 menu, 5 status, 6 message; null for any other.
  FontRef Font(HDC dc, Long which) const;

  // A font record and the four bytes that follow it where it is stored.
  struct FontRecord {
    LOGFONTA font;
    std::uint8_t following[4];
  };
  static_assert(sizeof(FontRecord) == 64);
  // The record that Font reads; all zero for any other number.
  FontRecord LogFont(Long which) const;

  // Sets name, size, charset, italic, underline, strikethrough and bold from a record. Heights above 0 are
  // taken for points; others are pixels at the resolution of `dc`.
  static void MakeStdFont(const LOGFONTA& record, HDC dc, StdFont& font);

  // In pixels.
  Long CaptionHeight() const { return records_.metrics.iCaptionHeight; }
  Long CaptionWIdth() const { return records_.metrics.iCaptionWidth; }
  Long MenuHeight() const { return records_.metrics.iMenuHeight; }
  Long MenuWidth() const { return records_.metrics.iMenuWidth; }
  Long ScrollHeight() const { return records_.metrics.iScrollHeight; }
  Long ScrollWidth() const { return records_.metrics.iScrollWidth; }
  Long SMCaptionHeight() const { return records_.metrics.iSmCaptionHeight; }
  Long SMCaptionWIdth() const { return records_.metrics.iSmCaptionWidth; }
  Long BorderWidth() const { return records_.metrics.iBorderWidth; }

 private:
  // In this order, so that each font record has bytes after it.
  struct Records {
    NONCLIENTMETRICSA metrics;
    LOGFONTA icon_title;
    std::uint8_t end[4];
  };
  Records records_{};
};

}  // namespace marklet
