// The font object of the control and of every caption.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/local_ref.h"
#include "platform/types.h"

namespace marklet {

// A handle that fonts share. It ends with the last of them.
class FontHandle : public LocalCounted {
 public:
  HFONT Get() const { return font_; }

 protected:
  explicit FontHandle(HFONT font) : font_(font) {}

 private:
  const HFONT font_;
};

// A font by its eight properties, with a handle to select. Shared by reference, as its users expect: whoever
// holds the same object sees every change; a copy is a font of its own. Handles come from a cache of this
// thread: setting a property and reading hFont again is cheap when that combination has been used before.
class StdFont {
 public:
  StdFont();  // Tahoma, 8.25 points, regular

  const std::u16string& Name() const;
  double Size() const { return size_ / kSizeUnits; }  // points
  bool Bold() const { return style_.weight > 550; }
  Long Weight() const { return style_.weight; }
  bool Italic() const { return style_.italic; }
  bool Underline() const { return style_.underline; }
  bool Strikethrough() const { return style_.strikethrough; }
  std::uint8_t Charset() const;

  void PutName(std::u16string_view name);
  // Held to a ten-thousandth of a point, as the platform's currency type does, and between 0 and 32767. The
  // height in pixels is that at the font's resolution, or else the screen's, now.
  void PutSize(double points);
  // The resolution of what the font is for, which its copies take over. 0 is the screen's.
  void PutPixelsPerInch(Long pixels_per_inch);
  void PutBold(bool bold);  // sets Weight to 700 or 400
  void PutWeight(Long weight);
  void PutItalic(bool italic);
  void PutUnderline(bool underline);
  void PutStrikethrough(bool strikethrough);
  void PutCharset(std::uint8_t charset);

  // The handle for the properties as they stand. Not the caller's to delete; valid while this object lives
  // and its properties stay, and selected in a context until it is selected out. Null only when the platform
  // can't make any font.
  HFONT hFont() const;
  // What it belongs to; null before the first hFont after a change.
  const FontHandle* Handle() const { return static_cast<const FontHandle*>(handle_.Get()); }
  // Another handle for the properties as they stand, one that was made elsewhere, and its height as a
  // LOGFONTW has it. This font and its copies have that handle until one of their properties becomes another
  // one, and the height until their size is set. One made elsewhere is made for the screen: a font for
  // another resolution goes on with its own.
  void PutHandle(LocalRef font_handle, Long height);

  // What tells the handles of a typeface apart.
  struct Style {
    Long height;  // as a LOGFONTW has it
    Long weight = 400;
    bool italic = false, underline = false, strikethrough = false;
    friend bool operator==(const Style&, const Style&) = default;
  };

 private:
  static constexpr double kSizeUnits = 10000;  // a point

  // The typeface: name, charset and the list of handles. Shared by the fonts of this thread that have it, so
  // that a copy of a font costs no allocation.
  LocalRef family_;
  Long size_ = 82500;  // in ten-thousandths of a point
  Long pixels_per_inch_ = 0;
  Style style_;
  // A FontHandle. Empty when a property has changed since the last look-up.
  mutable LocalRef handle_;
};

using FontRef = std::shared_ptr<StdFont>;

}  // namespace marklet
