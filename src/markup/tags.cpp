// What each tag does. A token is a tag by its letters alone, however it was cut out of the caption.
#include <array>
#include <utility>

#include "markup/caption_pen.h"
#include "markup/font_colour_tags.h"
#include "markup/saturate.h"
#include "platform/rounding.h"

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

// The run's colour is what the context made of the one it was given.
void SetColour(CaptionPen& pen, COLORREF colour) {
  SetTextColor(pen.dc, colour);
  pen.RunStyle.ForeColor = GetTextColor(pen.dc);
}

// Saves what the context holds, which before the first run is the paint code's colour and not ForeColor.
void OpenColour(CaptionPen& pen, COLORREF colour) {
  pen.SavedColor = GetTextColor(pen.dc);
  SetColour(pen, colour);
}

void CloseColour(CaptionPen& pen) { SetColour(pen, pen.SavedColor); }

void OpenLink(CaptionPen& pen) {
  ToggleUnderline(pen);
  OpenColour(pen, kLinkColour);
}

void CloseLink(CaptionPen& pen) {
  ToggleUnderline(pen);
  CloseColour(pen);
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

void SetFontName(CaptionPen& pen, std::u16string_view name) {
  pen.RunFont->PutName(name);
  pen.SelectRunFont();
}

void CloseFont(CaptionPen& pen) {
  if (pen.RunFont) SetFontName(pen, pen.SavedFontName.value_or(pen.RunStyle.Font->Name()));
}

// The token without each "<f=", found from left to right, and then without each ">".
std::u16string FontNameOf(std::u16string_view token) {
  constexpr std::u16string_view kOpener = u"<f=";
  std::u16string name;
  for (std::size_t at = 0; at < token.size();) {
    const bool opener = token.substr(at, kOpener.size()) == kOpener;
    if (!opener && token[at] != u'>') name += token[at];
    at += opener ? kOpener.size() : 1;
  }
  return name;
}

void OpenFont(CaptionPen& pen, std::u16string_view token) {
  if (!pen.RunFont) return;
  pen.SavedFontName = pen.RunFont->Name();
  SetFontName(pen, FontNameOf(token));
}

struct FixedTag {
  std::u16string_view token;
  void (*obey)(CaptionPen&);

  // Tags of a length differ in the last letter before the ">", which is looked at first.
  bool Spells(std::u16string_view text) const {
    return text.size() == token.size() && text[text.size() - 2] == token[token.size() - 2] && text == token;
  }
};

constexpr FixedTag kFixedTags[] = {
    {u"<sub>", OpenSubscript},  // first, since these two stand in front of every caption
    {u"</sub>", CloseSubscript},   {u"<b>", ToggleBold},          {u"</b>", ToggleBold},
    {u"<i>", OpenItalic},          {u"</i>", CloseItalic},        {u"<u>", ToggleUnderline},
    {u"</u>", ToggleUnderline},    {u"<s>", ToggleStrikethrough}, {u"</s>", ToggleStrikethrough},
    {u"<p>", BreakParagraph},      {u"<.>", BreakLine},           {u"<a>", OpenLink},
    {u"</a>", CloseLink},          {u"</f>", CloseFont},          {u"<sup>", OpenSuperscript},
    {u"</sup>", CloseSuperscript}, {u"</c>", CloseColour},
};

// A colour tag as the very last thing in a caption is text to the tokenizer, and is drawn as that.
bool EndsCaptionAsText(const CaptionPen& pen, std::u16string_view token) {
  return pen.index + 1 == pen.tokens.size() && token.size() == std::u16string_view(u"<c=RRGGBB>").size();
}

// Of a token that ends in ">". A word may be such a tag as well when it happens to have the shape.
bool ObeyValueTag(CaptionPen& pen, std::u16string_view token) {
  if (token.find(u"<f=") != token.npos) {
    OpenFont(pen, token);
    return true;
  }
  if (!token.starts_with(u"<c=") || EndsCaptionAsText(pen, token)) return false;
  OpenColour(pen, ParseColorTag(token.substr(3, 6)));
  return true;
}

}  // namespace

bool ObeyTag(CaptionPen& pen, std::u16string_view token) {
  if (token.back() != u'>') {  // nearly every token
    if (token != u"\t") return false;
    AdvanceTab(pen);
    return true;
  }
  for (const FixedTag& tag : kFixedTags) {
    if (tag.Spells(token)) {
      tag.obey(pen);
      return true;
    }
  }
  return ObeyValueTag(pen, token);
}

}  // namespace marklet
