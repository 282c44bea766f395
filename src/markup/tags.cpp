// What each tag does. A token is a tag by its letters alone, however it was cut out of the caption.
#include <algorithm>
#include <cstdint>
#include <iterator>

#include "base/rounding.h"
#include "markup/caption_pen.h"
#include "markup/font_colour_tags.h"
#include "markup/saturate.h"

namespace marklet {
namespace {

constexpr COLORREF kLinkColour = MakeRgb(0, 0, 255);

// The switches: opener and closer alike turn the property over.
void ToggleBold(CaptionPen& pen) {
  if (pen.RunFont) pen.RunFont->PutBold(!pen.RunFont->Bold());
  pen.SelectRunFont();
}

void ToggleItalic(CaptionPen& pen) {
  if (pen.RunFont) pen.RunFont->PutItalic(!pen.RunFont->Italic());
  pen.SelectRunFont();
}

void OpenItalic(CaptionPen& pen) {
  ToggleItalic(pen);
  pen.ItalicOpen = true;
}

void CloseItalic(CaptionPen& pen) {
  ToggleItalic(pen);
  pen.ItalicOpen = false;
}

void ToggleUnderline(CaptionPen& pen) {
  if (pen.RunFont) pen.RunFont->PutUnderline(!pen.RunFont->Underline());
  pen.SelectRunFont();
}

void ToggleStrikethrough(CaptionPen& pen) {
  if (pen.RunFont) pen.RunFont->PutStrikethrough(!pen.RunFont->Strikethrough());
  pen.SelectRunFont();
}

void BreakLine(CaptionPen& pen) {
  pen.PenY = SaturatingAdd(pen.PenY, pen.Measure(u"\u00C5y").cy);
  pen.PenX = pen.LineStart;
}

void BreakParagraph(CaptionPen& pen) {
  pen.PenY = SaturatingAdd(pen.PenY, pen.Measure(u" ").cy);
  BreakLine(pen);
}

void AdvanceTab(CaptionPen& pen) { pen.PenX = SaturatingAdd(pen.PenX, pen.Measure(u"WW").cx); }

void OpenLink(CaptionPen& pen) {
  ToggleUnderline(pen);
  pen.OpenColour(kLinkColour);
}

void CloseLink(CaptionPen& pen) {
  ToggleUnderline(pen);
  pen.CloseColour();
}

// Shrinks from the size as it stands, fractions and all. False when a level is open already.
bool Shrink(CaptionPen& pen) {
  if (pen.SavedSize != 0) return false;
  if (!pen.RunFont) return true;
  const double size = pen.RunFont->Size();
  pen.SavedSize = RoundHalfEven(size);
  const int tenths = pen.SavedSize <= 9 ? 7 : pen.SavedSize > 12 ? 5 : 6;
  pen.RunFont->PutSize(size * tenths / 10);
  pen.SelectRunFont();
  return true;
}

// Back to the size that was saved, which is a whole number. False when no level is open.
bool Restore(CaptionPen& pen) {
  if (pen.SavedSize == 0) return false;
  pen.RunFont->PutSize(pen.SavedSize);
  pen.SelectRunFont();
  pen.SavedSize = 0;
  return true;
}

// Raises nothing: small letters at the top of the line are the superscript.
void OpenSuperscript(CaptionPen& pen) { Shrink(pen); }

// Leaves the drop of a <sub> that it closes.
void CloseSuperscript(CaptionPen& pen) { Restore(pen); }

void OpenSubscript(CaptionPen& pen) {
  if (!Shrink(pen)) return;
  pen.SubscriptActive = true;
  pen.RunStyle.VerticalAlignment = 3;
  pen.SubscriptDrop = pen.Measure(u"Ab").cy / 3;
}

void CloseSubscript(CaptionPen& pen) {
  if (!Restore(pen)) return;
  pen.SubscriptActive = false;
  pen.RunStyle.VerticalAlignment = 0;
  pen.SubscriptDrop = 0;
}

void CloseFont(CaptionPen& pen) {
  if (pen.RunFont) pen.SetFontName(pen.SavedFontName.value_or(pen.RunStyle.Font->Name()));
}

void CloseColour(CaptionPen& pen) { pen.CloseColour(); }

// What stands between "<" and ">", held so that names are compared in one step.
class TagName {
 public:
  static constexpr std::size_t kLongest = 4;

  constexpr explicit TagName(std::u16string_view name) : length_(name.size()) {
    for (const char16_t unit : name) units_ = units_ << 16 | unit;
  }
  friend constexpr bool operator==(const TagName&, const TagName&) = default;

 private:
  std::uint64_t units_ = 0;
  std::size_t length_;
};

struct FixedTag {
  using Action = void (*)(CaptionPen&);
  constexpr FixedTag(std::u16string_view its_name, Action action) : name(its_name), obey(action) {}
  TagName name;
  Action obey;
};

constexpr FixedTag kFixedTags[] = {
    {u"sub", OpenSubscript},  // first, since these two stand in front of every caption
    {u"/sub", CloseSubscript},   {u"b", ToggleBold},          {u"/b", ToggleBold},
    {u"i", OpenItalic},          {u"/i", CloseItalic},        {u"u", ToggleUnderline},
    {u"/u", ToggleUnderline},    {u"s", ToggleStrikethrough}, {u"/s", ToggleStrikethrough},
    {u"p", BreakParagraph},      {u".", BreakLine},           {u"a", OpenLink},
    {u"/a", CloseLink},          {u"/f", CloseFont},          {u"sup", OpenSuperscript},
    {u"/sup", CloseSuperscript}, {u"/c", CloseColour},
};

// Of a token that ends in ">"; null when it is no tag of this kind.
const FixedTag* FindFixedTag(std::u16string_view token) {
  if (token.front() != u'<' || token.size() < 3 || token.size() > TagName::kLongest + 2) return nullptr;
  const TagName name(token.substr(1, token.size() - 2));
  const auto* tag = std::find_if(std::begin(kFixedTags), std::end(kFixedTags),
                                 [&name](const FixedTag& row) { return row.name == name; });
  return tag != std::end(kFixedTags) ? tag : nullptr;
}

}  // namespace

bool ObeyTag(CaptionPen& pen, std::u16string_view token) {
  if (token.back() != u'>') {  // nearly every token
    if (token != u"\t") return false;
    AdvanceTab(pen);
    return true;
  }
  if (const FixedTag* tag = FindFixedTag(token)) {
    tag->obey(pen);
    return true;
  }
  return ObeyValueTag(pen, token);
}

}  // namespace marklet
