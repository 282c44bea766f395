#include "look.h"

namespace designer {
namespace {

// The font of message boxes, in the size that it has on such a screen.
LOGFONTW MessageFont(int per_inch) {
  NONCLIENTMETRICSW metrics = {};
  metrics.cbSize = sizeof metrics;
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  LOGFONTW font = metrics.lfMessageFont;
  font.lfHeight = Scaled(static_cast<int>(font.lfHeight), per_inch, SystemPerInch());
  return font;
}

}  // namespace

int SystemPerInch() {
  const HDC screen = GetDC(nullptr);
  const int per_inch = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return per_inch;
}

Look::Look(int per_inch) : per_inch_(per_inch) {
  LOGFONTW description = MessageFont(per_inch);
  font_ = CreateFontIndirectW(&description);
  description.lfWeight = FW_BOLD;
  bold_ = CreateFontIndirectW(&description);
  const HDC screen = GetDC(nullptr);
  const HGDIOBJ old = SelectObject(screen, font_);
  TEXTMETRICW metrics = {};
  GetTextMetricsW(screen, &metrics);
  line_height_ = static_cast<int>(metrics.tmHeight);
  SelectObject(screen, old);
  ReleaseDC(nullptr, screen);
}

Look::~Look() {
  DeleteObject(font_);
  DeleteObject(bold_);
}

}  // namespace designer
