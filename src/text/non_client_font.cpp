#include "text/non_client_font.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <string_view>

#include "platform/system.h"
#include "platform/text.h"

namespace marklet {
namespace {

constexpr Long kHeaviestRegular = 400;
constexpr double kPointsPerInch = 72;

// In points.
double SizeOf(const LOGFONTA& record, HDC dc, double size_before) {
  if (record.lfHeight >= 1) return record.lfHeight;
  const Long pixels_per_inch = PixelsPerInch(dc);
  return pixels_per_inch == 0 ? size_before : std::abs(kPointsPerInch / pixels_per_inch * record.lfHeight);
}

}  // namespace

CNonClientFont::CNonClientFont() {
  records_.metrics.cbSize = sizeof(NONCLIENTMETRICSA);
  GetMetrics();
}

bool CNonClientFont::GetMetrics() {
  const bool metrics =
      SystemParametersInfoA(SPI_GETNONCLIENTMETRICS, sizeof(NONCLIENTMETRICSA), &records_.metrics, 0);
  const bool icon_title =
      SystemParametersInfoA(SPI_GETICONTITLELOGFONT, sizeof(LOGFONTA), &records_.icon_title, 0);
  return metrics && icon_title;
}

FontRef CNonClientFont::Font(HDC dc, Long which) const {
  if (which < 1 || which > 6) return nullptr;
  auto font = std::make_shared<StdFont>();
  MakeStdFont(LogFont(which).font, dc, *font);
  return font;
}

CNonClientFont::FontRecord CNonClientFont::LogFont(Long which) const {
  constexpr std::size_t kPlaces[] = {
      offsetof(Records, icon_title),
      offsetof(Records, metrics) + offsetof(NONCLIENTMETRICSA, lfCaptionFont),
      offsetof(Records, metrics) + offsetof(NONCLIENTMETRICSA, lfSmCaptionFont),
      offsetof(Records, metrics) + offsetof(NONCLIENTMETRICSA, lfMenuFont),
      offsetof(Records, metrics) + offsetof(NONCLIENTMETRICSA, lfStatusFont),
      offsetof(Records, metrics) + offsetof(NONCLIENTMETRICSA, lfMessageFont),
  };
  FontRecord record{};
  if (which < 1 || which > static_cast<Long>(std::size(kPlaces))) return record;
  std::memcpy(&record, reinterpret_cast<const char*>(&records_) + kPlaces[which - 1], sizeof record);
  return record;
}

void CNonClientFont::MakeStdFont(const LOGFONTA& record, HDC dc, StdFont& font) {
  // All 32 bytes, what follows the first NUL among them.
  font.PutName(MultiByteToWideChar(CP_ACP, std::string_view(record.lfFaceName, sizeof record.lfFaceName)));
  font.PutSize(SizeOf(record, dc, font.Size()));
  font.PutCharset(record.lfCharSet);
  font.PutItalic(record.lfItalic != 0);
  font.PutUnderline(record.lfUnderline != 0);
  font.PutStrikethrough(record.lfStrikeOut != 0);
  font.PutBold(record.lfWeight > kHeaviestRegular);
}

}  // namespace marklet
