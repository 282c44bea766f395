// What each tag does. A token is a tag by its letters alone, however it was cut out of the caption.
#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "base/rounding.h"
#include "markup/caption_pen.h"
#include "markup/font_colour_tags.h"
#include "markup/saturate.h"
#include "markup/tags.h"
#include "markup/tokenizer.h"

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
  pen.RunStyle.VerticalAlignment = verticalBottom;
  pen.SubscriptDrop = pen.Measure(u"Ab").cy / 3;
}

void CloseSubscript(CaptionPen& pen) {
  if (!Restore(pen)) return;
  pen.SubscriptActive = false;
  pen.RunStyle.VerticalAlignment = verticalTop;
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
  constexpr TagName(std::u16string_view name, char16_t before) : TagName(name) {
    units_ |= std::uint64_t{before} << 16 * length_++;
  }
  friend constexpr bool operator==(const TagName&, const TagName&) = default;

 private:
  std::uint64_t units_ = 0;
  std::size_t length_;
};

constexpr TagRow kTags[] = {
    // First, since it stands in front of every caption.
    {u"<sub>", false, false, OpenSubscript, CloseSubscript,
     "Smaller, and a third of its height further down."},
    {u"<b>", true, false, ToggleBold, ToggleBold, "Bold, turned the other way round by both forms."},
    {u"<i>", true, false, OpenItalic, CloseItalic, "Italic, turned the other way round by both forms."},
    {u"<u>", true, false, ToggleUnderline, ToggleUnderline, "Underline, likewise."},
    {u"<s>", true, false, ToggleStrikethrough, ToggleStrikethrough, "Strikethrough, likewise."},
    {u"<p>", true, false, BreakParagraph, nullptr, "A new line, and a blank's height more."},
    {u"<.>", true, false, BreakLine, nullptr, "A new line."},
    {u"<a>", false, false, OpenLink, CloseLink, "Underlined and blue; nothing happens on a click."},
    {u"<f=NAME>", true, true, nullptr, CloseFont, "The typeface NAME."},
    {u"<sup>", false, false, OpenSuperscript, CloseSuperscript, "Smaller, at the top of the line."},
    {u"<c=RRGGBB>", true, true, nullptr, CloseColour, "The colour with these hexadecimal digits."},
    {u"<br>", true, false, nullptr, nullptr, "No tag: drawn as it stands."},
};

struct FixedTag {
  TagName name{u""};
  TagRow::Action obey = nullptr;
};

// The letters of a tag, up to where its value begins.
constexpr std::u16string_view NameOf(const TagRow& row) {
  return row.opener.substr(1, row.opener.find_first_of(u"=>") - 1);
}

// What must hold of a row. The compiler shows the line that one comes to.
consteval void Check(const TagRow& row) {
  const std::size_t letters = NameOf(row).size();
  if (!row.opener.starts_with(u'<') || !row.opener.ends_with(u'>')) throw "a tag stands between < and >";
  if (row.meaning.empty()) throw "a tag must have its line in the reference";
  if (row.takes_value) {
    if (letters != 1) throw "the name of a tag with a value has one letter";
    if (row.open != nullptr) throw "a tag with a value is opened by ObeyValueTag";
    if (row.close == nullptr) throw "a tag with a value must have a closer";
  } else if (row.open == nullptr) {
    if (row.close != nullptr) throw "what isn't opened can't be closed";
    if (!row.marks) throw "a tag that does nothing must at least make markup";
  } else if (letters != 1 && letters != 3) {
    throw "the tokenizer cuts names of one and of three letters";
  }
}

consteval bool AllHold() {
  for (const TagRow& row : kTags) Check(row);
  return true;
}
static_assert(AllHold());

constexpr std::size_t kActions = [] {
  std::size_t count = 0;
  for (const TagRow& row : kTags) count += std::size_t{row.open != nullptr} + (row.close != nullptr);
  return count;
}();

// What is looked through for each token: names as numbers, and nothing besides.
constexpr auto kFixedTags = [] {
  std::array<FixedTag, kActions> tags{};
  std::size_t count = 0;
  for (const TagRow& row : kTags) {
    if (row.open != nullptr) tags[count++] = {TagName(NameOf(row)), row.open};
    if (row.close != nullptr) tags[count++] = {TagName(NameOf(row), u'/'), row.close};
  }
  return tags;
}();

constexpr std::size_t kMarks = std::ranges::count_if(kTags, &TagRow::marks);

// Of a tag with a value two characters are enough: any word that holds them counts.
constexpr auto kMarkupOpeners = [] {
  std::array<std::u16string_view, kMarks> openers{};
  std::size_t count = 0;
  for (const TagRow& row : kTags)
    if (row.marks) openers[count++] = row.takes_value ? row.opener.substr(0, 2) : row.opener;
  return openers;
}();

// Of a token that ends in ">"; null when it is no tag of this kind.
const FixedTag* FindFixedTag(std::u16string_view token) {
  if (token.front() != u'<' || token.size() < 3 || token.size() > TagName::kLongest + 2) return nullptr;
  const TagName name(token.substr(1, token.size() - 2));
  const auto* tag = std::find_if(std::begin(kFixedTags), std::end(kFixedTags),
                                 [&name](const FixedTag& row) { return row.name == name; });
  return tag != std::end(kFixedTags) ? tag : nullptr;
}

}  // namespace

std::span<const TagRow> Tags() { return kTags; }

bool HasMarkup(std::u16string_view text) {
  for (std::size_t at = text.find(u'<'); at != text.npos; at = text.find(u'<', at + 1)) {
    for (const std::u16string_view opener : kMarkupOpeners) {
      if (text.substr(at, opener.size()) == opener) return true;
    }
  }
  return false;
}

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
