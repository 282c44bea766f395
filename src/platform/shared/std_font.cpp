#include "platform/shared/std_font.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "platform/gdi.h"
#include "platform/shared/unrecorded.h"
#include "platform/text.h"

namespace marklet {
namespace {

class OwnHandle final : public FontHandle {
 public:
  explicit OwnHandle(HFONT font) : FontHandle(font) {}
  ~OwnHandle() override {
    const UnrecordedScope own_call;
    DeleteObject(Get());
  }
};

// The fonts of one name and charset: a short list, since a form has few sizes and styles of a typeface. Both
// this list and that of the families are cut when a caption runs through hundreds; what is in use stays.
class Family final : public LocalCounted {
 public:
  using Style = StdFont::Style;

  Family(std::u16string name, std::uint8_t charset) : name_(std::move(name)), charset_(charset) {}

  const std::u16string& Name() const { return name_; }
  std::uint8_t Charset() const { return charset_; }

  // Empty when the platform can't make the font.
  LocalRef Find(const Style& style) {
    std::size_t i = 0;
    while (i < fonts_.size() && fonts_[i].style != style) ++i;
    if (i == fonts_.size()) return Add(style);
    if (i < kNearFront) return fonts_[i].handle;
    std::swap(fonts_[i], fonts_[i - 1]);  // what is asked for again moves to the front
    return fonts_[i - 1].handle;
  }

 private:
  static constexpr std::size_t kMostStyles = 64;
  static constexpr std::size_t kNearFront = 6;  // as many as one caption has, as a rule

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
    fonts_.push_back({style, LocalRef(new OwnHandle(font))});
    return fonts_.back().handle;
  }

  const std::u16string name_;
  const std::uint8_t charset_;
  std::vector<Entry> fonts_;
};

constexpr double kLargestSize = 32767;
constexpr std::size_t kMostFamilies = 64;

// Orders families by what they are made from, so that looking for one needs no copy of the name.
struct ByTypeface {
  using is_transparent = void;
  using Typeface = std::pair<std::u16string_view, std::uint8_t>;
  bool operator()(const Typeface& a, const Typeface& b) const { return a < b; }
};

// This thread's.
LocalRef FamilyOf(std::u16string_view name, std::uint8_t charset) {
  thread_local std::map<std::pair<std::u16string, std::uint8_t>, LocalRef, ByTypeface> families;
  const ByTypeface::Typeface typeface(name, charset);
  if (const auto found = families.find(typeface); found != families.end()) return found->second;
  if (families.size() == kMostFamilies) families.clear();
  std::u16string own_name(name);
  LocalRef family(new Family(own_name, charset));
  families.emplace(std::pair(std::move(own_name), charset), family);
  return family;
}

Family& In(const LocalRef& family) { return static_cast<Family&>(*family.Get()); }

// The em height of a size in ten-thousandths of a point, negative as the record wants it; halves round up. A
// resolution of 0 is the screen's.
Long HeightOf(Long size, Long pixels_per_inch) {
  constexpr std::int64_t kUnitsPerInch = 720000;
  const UnrecordedScope own_call;
  const Long resolution = pixels_per_inch > 0 ? pixels_per_inch : PixelsPerInch(nullptr);
  const std::int64_t pixels = (2 * std::int64_t{size} * resolution + kUnitsPerInch) / (2 * kUnitsPerInch);
  return -static_cast<Long>(std::clamp<std::int64_t>(pixels, 0, std::numeric_limits<Long>::max()));
}

}  // namespace

StdFont::StdFont() : family_(FamilyOf(u"Tahoma", 0)), style_{HeightOf(size_, pixels_per_inch_)} {}

const std::u16string& StdFont::Name() const { return In(family_).Name(); }

std::uint8_t StdFont::Charset() const { return In(family_).Charset(); }

void StdFont::PutName(std::u16string_view name) {
  if (name == Name()) return;
  family_ = FamilyOf(name, Charset());
  handle_ = {};
}

void StdFont::PutSize(double points) {
  const double held = std::isnan(points) ? 0 : std::clamp(points, 0.0, kLargestSize);
  size_ = static_cast<Long>(std::lrint(held * kSizeUnits));
  style_.height = HeightOf(size_, pixels_per_inch_);
  handle_ = {};
}

void StdFont::PutPixelsPerInch(Long pixels_per_inch) {
  if (pixels_per_inch == pixels_per_inch_) return;
  pixels_per_inch_ = pixels_per_inch;
  style_.height = HeightOf(size_, pixels_per_inch_);
  handle_ = {};
}

void StdFont::PutBold(bool bold) { PutWeight(bold ? 700 : 400); }

void StdFont::PutWeight(Long weight) {
  if (weight == style_.weight) return;
  style_.weight = weight;
  handle_ = {};
}

void StdFont::PutItalic(bool italic) {
  if (italic == style_.italic) return;
  style_.italic = italic;
  handle_ = {};
}

void StdFont::PutUnderline(bool underline) {
  if (underline == style_.underline) return;
  style_.underline = underline;
  handle_ = {};
}

void StdFont::PutStrikethrough(bool strikethrough) {
  if (strikethrough == style_.strikethrough) return;
  style_.strikethrough = strikethrough;
  handle_ = {};
}

void StdFont::PutCharset(std::uint8_t charset) {
  if (charset == Charset()) return;
  family_ = FamilyOf(Name(), charset);
  handle_ = {};
}

HFONT StdFont::hFont() const {
  if (handle_.Get() == nullptr) {
    handle_ = In(family_).Find(style_);
  }
  return Handle() != nullptr ? Handle()->Get() : nullptr;
}

void StdFont::PutHandle(LocalRef font_handle, Long height) {
  if (pixels_per_inch_ != 0) return;
  style_.height = height;
  handle_ = std::move(font_handle);
}

}  // namespace marklet
