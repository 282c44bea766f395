#include "platform/std_font.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "platform/gdi.h"
#include "platform/text.h"
#include "platform/unrecorded.h"

namespace marklet {
namespace {

struct Handle final : LocalCounted {
  explicit Handle(HFONT its_font) : font(its_font) {}
  ~Handle() override {
    const UnrecordedScope own_call;
    DeleteObject(font);
  }
  const HFONT font;
};

// The fonts of one name and charset: a short list, since a form has few sizes and styles of a typeface. Both
// this list and that of the families are cut when a caption runs through hundreds; what is in use stays.
class Family final : public LocalCounted {
 public:
  struct Style {
    Long height, weight;
    bool italic, underline, strikethrough;
    friend bool operator==(const Style&, const Style&) = default;
  };

  Family(std::u16string name, std::uint8_t charset) : name_(std::move(name)), charset_(charset) {}

  // Empty when the platform can't make the font.
  LocalRef Find(const Style& style) {
    std::size_t i = 0;
    while (i < fonts_.size() && fonts_[i].style != style) ++i;
    if (i == fonts_.size()) return Add(style);
    if (i == 0) return fonts_[0].handle;
    std::swap(fonts_[i], fonts_[i - 1]);  // what is asked for again moves to the front
    return fonts_[i - 1].handle;
  }

 private:
  static constexpr std::size_t kMostStyles = 64;

  struct Entry {
    Style style;
    LocalRef handle;
  };

  LocalRef Add(const Style& style) {
    const UnrecordedScope own_call;
    LOGFONTW record;
    record.lfHeight = style.height;
    record.lfWeight = style.weight;
    record.lfItalic = style.italic;
    record.lfUnderline = style.underline;
    record.lfStrikeOut = style.strikethrough;
    record.lfCharSet = charset_;
    record.lfFaceName = name_;
    const HFONT font = CreateFontIndirectW(record);
    if (font == nullptr) return {};
    if (fonts_.size() == kMostStyles) fonts_.pop_back();
    fonts_.push_back({style, LocalRef(new Handle(font))});
    return fonts_.back().handle;
  }

  const std::u16string name_;
  const std::uint8_t charset_;
  std::vector<Entry> fonts_;
};

constexpr double kLargestSize = 32767;
constexpr std::size_t kMostFamilies = 64;

// This thread's.
LocalRef FamilyOf(const std::u16string& name, std::uint8_t charset) {
  thread_local std::map<std::pair<std::u16string, std::uint8_t>, LocalRef> families;
  const std::pair key(name, charset);
  if (const auto found = families.find(key); found != families.end()) return found->second;
  if (families.size() == kMostFamilies) families.clear();
  return families[key] = LocalRef(new Family(name, charset));
}

// The em height of a size in points, negative as the record wants it; halves round up.
Long HeightOf(double points) {
  const UnrecordedScope own_call;
  const double pixels = std::floor(points * PixelsPerInch(nullptr) / 72.0 + 0.5);
  return -static_cast<Long>(std::clamp(pixels, 0.0, double{std::numeric_limits<Long>::max()}));
}

double HeldSize(double points) {
  if (std::isnan(points)) return 0;
  return std::nearbyint(std::clamp(points, 0.0, kLargestSize) * 10000.0) / 10000.0;
}

}  // namespace

StdFont::StdFont() : name_(u"Tahoma"), size_(8.25), weight_(400) {}

void StdFont::PutName(std::u16string name) {
  if (name == name_) return;
  name_ = std::move(name);
  family_ = {};
  handle_ = {};
}

void StdFont::PutSize(double points) {
  size_ = HeldSize(points);
  handle_ = {};
}

void StdFont::PutBold(bool bold) { PutWeight(bold ? 700 : 400); }

void StdFont::PutWeight(Long weight) {
  weight_ = weight;
  handle_ = {};
}

void StdFont::PutItalic(bool italic) {
  italic_ = italic;
  handle_ = {};
}

void StdFont::PutUnderline(bool underline) {
  underline_ = underline;
  handle_ = {};
}

void StdFont::PutStrikethrough(bool strikethrough) {
  strikethrough_ = strikethrough;
  handle_ = {};
}

void StdFont::PutCharset(std::uint8_t charset) {
  charset_ = charset;
  family_ = {};
  handle_ = {};
}

HFONT StdFont::hFont() const {
  if (handle_.Get() == nullptr) {
    if (family_.Get() == nullptr) family_ = FamilyOf(name_, charset_);
    auto& family = static_cast<Family&>(*family_.Get());
    handle_ = family.Find({HeightOf(size_), weight_, italic_, underline_, strikethrough_});
  }
  const auto* handle = static_cast<const Handle*>(handle_.Get());
  return handle != nullptr ? handle->font : nullptr;
}

}  // namespace marklet
