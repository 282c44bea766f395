#include "platform/std_font.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

#include "platform/gdi.h"
#include "platform/text.h"
#include "platform/unrecorded.h"

namespace marklet {
namespace {

constexpr double kLargestSize = 32767;

using RecordKey = std::tuple<Long, Long, bool, bool, bool, std::uint8_t, std::u16string>;

RecordKey KeyOf(const LOGFONTW& record) {
  return {record.lfHeight,    record.lfWeight,  record.lfItalic,  record.lfUnderline,
          record.lfStrikeOut, record.lfCharSet, record.lfFaceName};
}

// The fonts of one thread, made once for each record and kept until the thread ends.
class HandleCache {
 public:
  HandleCache() = default;
  HandleCache(const HandleCache&) = delete;
  HandleCache& operator=(const HandleCache&) = delete;
  ~HandleCache() {
    const UnrecordedScope own_calls;
    for (const auto& [key, handle] : handles_) DeleteObject(handle);
  }

  HFONT Find(const LOGFONTW& record) {
    const auto [place, fresh] = handles_.try_emplace(KeyOf(record), nullptr);
    if (place->second == nullptr) place->second = CreateFontIndirectW(record);
    return place->second;
  }

 private:
  std::map<RecordKey, HFONT> handles_;
};

HandleCache& Cache() {
  thread_local HandleCache cache;
  return cache;
}

// The em height of a size in points, negative as the record wants it; halves round up.
Long HeightOf(double points) {
  const double pixels = points * PixelsPerInch(nullptr) / 72.0;
  return -static_cast<Long>(std::floor(pixels + 0.5));
}

double HeldSize(double points) {
  if (std::isnan(points)) return 0;
  return std::nearbyint(std::clamp(points, 0.0, kLargestSize) * 10000.0) / 10000.0;
}

}  // namespace

StdFont::StdFont() : name_(u"Tahoma"), size_(8.25), weight_(400) {}

void StdFont::PutName(std::u16string name) {
  name_ = std::move(name);
  handle_ = nullptr;
}

void StdFont::PutSize(double points) {
  size_ = HeldSize(points);
  handle_ = nullptr;
}

void StdFont::PutBold(bool bold) { PutWeight(bold ? 700 : 400); }

void StdFont::PutWeight(Long weight) {
  weight_ = weight;
  handle_ = nullptr;
}

void StdFont::PutItalic(bool italic) {
  italic_ = italic;
  handle_ = nullptr;
}

void StdFont::PutUnderline(bool underline) {
  underline_ = underline;
  handle_ = nullptr;
}

void StdFont::PutStrikethrough(bool strikethrough) {
  strikethrough_ = strikethrough;
  handle_ = nullptr;
}

void StdFont::PutCharset(std::uint8_t charset) {
  charset_ = charset;
  handle_ = nullptr;
}

HFONT StdFont::hFont() const {
  if (handle_ != nullptr) return handle_;
  const UnrecordedScope own_calls;
  LOGFONTW record;
  record.lfHeight = HeightOf(size_);
  record.lfWeight = weight_;
  record.lfItalic = italic_;
  record.lfUnderline = underline_;
  record.lfStrikeOut = strikethrough_;
  record.lfCharSet = charset_;
  record.lfFaceName = name_;
  handle_ = Cache().Find(record);
  return handle_;
}

}  // namespace marklet
