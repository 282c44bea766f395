// Captions in the tag language against a second interpreter, written as plainly as the rules can be said:
// both draw on a surface, and every pixel must be the same. It measures and draws through the platform, so
// that what it tests holds in any font and on every platform.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "base/rounding.h"
#include "markup/canvas.h"
#include "markup/font_colour_tags.h"
#include "markup/markup_caption.h"
#include "markup/naive_tokenizer.h"
#include "markup/played_system.h"
#include "text/shaping.h"

namespace marklet {
namespace {

class HandPlacer {
 public:
  HandPlacer(HDC dc, const RECT& rect, const CaptionStyle& style, COLORREF context_colour)
      : dc_(dc),
        rect_(rect),
        font_(CloneFont(style.Font)),
        colour_(style.ForeColor),
        context_(context_colour) {
    saved_name_ = font_->Name();
    y_ = rect.top;
    x_ = rect.left;
  }

  void Draw(const std::u16string& caption, bool shaping) {
    const auto tokens = naive::TokenizeMarkup(u"<sub></sub>" + caption, shaping);
    for (std::size_t i = 0; i < tokens.size(); ++i) Token(tokens, i);
  }

 private:
  SIZE Extent(std::u16string_view text) const {
    SIZE size;
    GetTextExtentPoint32W(dc_, text, size);
    return size;
  }
  void Select() { SelectObject(dc_, font_->hFont()); }
  void SetColour(COLORREF colour) { context_ = colour_ = colour; }

  void Token(const std::vector<std::u16string>& tokens, std::size_t i) {
    const std::u16string& token = tokens[i];
    static const std::map<std::u16string, std::function<void(HandPlacer&)>> kTags = {
        {u"<b>", &HandPlacer::Bold},        {u"</b>", &HandPlacer::Bold},
        {u"<i>", &HandPlacer::OpenItalic},  {u"</i>", &HandPlacer::CloseItalic},
        {u"<u>", &HandPlacer::Underline},   {u"</u>", &HandPlacer::Underline},
        {u"<s>", &HandPlacer::Strike},      {u"</s>", &HandPlacer::Strike},
        {u"<p>", &HandPlacer::Paragraph},   {u"<.>", &HandPlacer::Break},
        {u"<a>", &HandPlacer::OpenLink},    {u"</a>", &HandPlacer::CloseLink},
        {u"<sup>", &HandPlacer::Raise},     {u"<sub>", &HandPlacer::Lower},
        {u"</sup>", &HandPlacer::CloseSup}, {u"</sub>", &HandPlacer::CloseSub},
        {u"\t", &HandPlacer::Tab},          {u"</f>", &HandPlacer::CloseName},
        {u"</c>", &HandPlacer::CloseColour}};
    if (const auto tag = kTags.find(token); tag != kTags.end())
      tag->second(*this);
    else if (token.substr(0, 3) == u"<f=" && token.back() == u'>')
      OpenName(token.substr(3, token.size() - 4));
    else if (token.substr(0, 3) == u"<c=" && token.back() == u'>')
      OpenColour(token.substr(3, 6));
    else
      Text(tokens, i);
  }

  void Bold() {
    font_->PutBold(!font_->Bold());
    Select();
  }
  void OpenItalic() {
    font_->PutItalic(!font_->Italic());
    Select();
    italic_open_ = true;
  }
  void CloseItalic() {
    OpenItalic();
    italic_open_ = false;
  }
  void Underline() {
    font_->PutUnderline(!font_->Underline());
    Select();
  }
  void Strike() {
    font_->PutStrikethrough(!font_->Strikethrough());
    Select();
  }
  void Paragraph() {
    y_ += Extent(u" ").cy;
    Break();
  }
  void Break() {
    y_ += Extent(u"\u00C5y").cy;
    x_ = line_start_;
  }
  void OpenLink() {
    Underline();
    saved_colour_ = context_;
    SetColour(0xFF0000);
  }
  void CloseLink() {
    Underline();
    SetColour(saved_colour_);
  }
  void CloseColour() { SetColour(saved_colour_); }
  void OpenColour(const std::u16string& digits) {
    saved_colour_ = context_;
    SetColour(ParseColorTag(digits));
  }
  void OpenName(std::u16string_view name) {
    saved_name_ = font_->Name();
    font_->PutName(name);
    Select();
  }
  void CloseName() {
    font_->PutName(saved_name_);
    Select();
  }
  bool Shrink() {
    if (saved_size_ != 0) return false;
    const double size = font_->Size();
    saved_size_ = RoundHalfEven(size);
    font_->PutSize(size * (saved_size_ <= 9 ? 7 : saved_size_ > 12 ? 5 : 6) / 10);
    Select();
    return true;
  }
  void Raise() { Shrink(); }
  void Lower() {
    if (!Shrink()) return;
    lowered_ = bottom_ = true;
    drop_ = Extent(u"Ab").cy / 3;
  }
  bool Restore() {
    if (saved_size_ == 0) return false;
    font_->PutSize(saved_size_);
    Select();
    saved_size_ = 0;
    return true;
  }
  void CloseSup() { Restore(); }
  void CloseSub() {
    if (!Restore()) return;
    lowered_ = bottom_ = false;
    drop_ = 0;
  }
  void Tab() { x_ += Extent(u"WW").cx; }

  void Text(const std::vector<std::u16string>& tokens, std::size_t i) {
    const std::u16string& token = tokens[i];
    const bool overhangs = token.size() > 2 &&
                           GetCharABCWidthsA(dc_, static_cast<unsigned>(token.front()), overhang_) &&
                           GetCharABCWidthsA(dc_, static_cast<unsigned>(token.back()), overhang_);
    const SIZE size = Extent(token);
    const bool fits = x_ + size.cx < rect_.right - rect_.left;
    if (!fits && token.find(u'\t') != token.npos) {  // the platform counts it as complex
      Split(token, size);
    } else {
      if (!fits) NewLine(size.cy);
      DrawRun(token, size.cy);
      x_ += size.cx;
    }
    if (overhangs && i + 2 < tokens.size() && tokens[i + 1] == u"<i>") x_ += overhang_.abcC;
    if (i + 2 >= tokens.size() && italic_open_) x_ += overhang_.abcC;
  }
  void NewLine(Long height) {
    x_ = line_start_ = rect_.left;
    y_ += height;
  }
  void Split(std::u16string_view rest, SIZE size) {
    do {
      const Long fitting = FitCharacters(dc_, rest, x_, rect_.right, y_, y_ + size.cy + 2);
      const std::u16string_view piece = rest.substr(0, static_cast<std::size_t>(std::max(fitting, 1)));
      if (piece.empty()) break;
      const Long height = Extent(piece).cy;
      DrawRun(piece, height);
      rest.remove_prefix(piece.size());
      y_ += height;
      size = Extent(rest);
      x_ = line_start_;
    } while (x_ + size.cx > rect_.right - rect_.left);
    NewLine(size.cy);
    DrawRun(rest, size.cy);
    x_ += size.cx;
  }
  void DrawRun(std::u16string_view token, Long height) {
    const Long top = y_ + (lowered_ ? drop_ : 0);
    RECT place = {x_, top, rect_.right, top + height + 3};
    SetBkMode(dc_, 0);
    SetTextColor(dc_, colour_);
    context_ = colour_;
    if (token.empty()) return;
    DrawTextW(dc_, token, place, DT_SINGLELINE | DT_WORD_ELLIPSIS | (bottom_ ? DT_BOTTOM : 0));
  }

  HDC dc_;
  RECT rect_;
  FontRef font_;
  COLORREF colour_, context_, saved_colour_ = 0;
  std::u16string saved_name_;
  Long x_, y_, line_start_ = 0, saved_size_ = 0, drop_ = 0;
  bool italic_open_ = false, lowered_ = false, bottom_ = false;
  ABC overhang_;
};

constexpr const char16_t* kPieces[] = {u"<b>",
                                       u"</b>",
                                       u"<i>",
                                       u"</i>",
                                       u"<u>",
                                       u"</u>",
                                       u"<s>",
                                       u"</s>",
                                       u"<p>",
                                       u"<.>",
                                       u"<a>",
                                       u"</a>",
                                       u"<sup>",
                                       u"</sup>",
                                       u"<sub>",
                                       u"</sub>",
                                       u"Tab\t",
                                       u"</f>",
                                       u"</c>",
                                       u"Total",
                                       u"a",
                                       u"of",
                                       u"immovable",
                                       u"Words-and",
                                       u"&x",
                                       u"12.50",
                                       u"<br>",
                                       u" ",
                                       u" ",
                                       u" ",
                                       u" ",
                                       u"<c=FF8000>",
                                       u"<c=00c0ff>",
                                       u"<f=DejaVu Serif>",
                                       u"<f=DejaVu Sans Mono>",
                                       u"WWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWWW"};

std::u16string RandomCaption(std::mt19937& random) {
  std::u16string caption;
  for (auto i = 4 + random() % 24; i != 0; --i) caption += kPieces[random() % std::size(kPieces)];
  return caption + u"</b>";  // a colour tag at the very end would be text
}

std::string Printable(const std::u16string& text) {
  std::string result;
  for (const char16_t unit : text) result += unit == u'\t' ? '~' : static_cast<char>(unit);
  return result;
}

class SlowHandPlacedCaption : public testing::Test {
 protected:
  static constexpr COLORREF kInk = 0x203040, kFormer = 0x0000C0;

  void ExpectTheSame(const std::u16string& caption, const RECT& rect, double points) {
    SCOPED_TRACE("\"" + Printable(caption) + "\" at " + std::to_string(points) + " points from " +
                 std::to_string(rect.left) + " to " + std::to_string(rect.right));
    CaptionStyle style;
    style.ForeColor = kInk;
    style.Font = std::make_shared<StdFont>();
    style.Font->PutName(u"DejaVu Sans");
    style.Font->PutSize(points);
    style.SurfaceDC = canvas_.dc();

    Prepare(style);
    HandPlacer(canvas_.dc(), rect, style, kFormer).Draw(caption, /*shaping=*/true);
    const auto expected = canvas_.Pixels();
    Prepare(style);
    RECT given = rect;
    DrawMarkupCaption(canvas_.dc(), caption, given, style);
    EXPECT_TRUE(canvas_.Pixels() == expected);
  }

  std::mt19937 random_{7};

 private:
  void Prepare(const CaptionStyle& style) {
    canvas_.Fill(0xE0);
    SelectObject(canvas_.dc(), style.Font->hFont());
    SetTextColor(canvas_.dc(), kFormer);
  }

  const PlayedSystem system_{generation::kVista};
  Canvas canvas_{260, 160};
};

TEST_F(SlowHandPlacedCaption, LooksTheSameInAnyRectangleAndSize) {
  constexpr double kSizes[] = {8.25, 6.5, 9.75, 12, 13, 18};
  for (int i = 0; i < 400 && !HasFailure(); ++i) {
    const std::u16string caption = RandomCaption(random_);
    if (!naive::HasMarkup(caption)) continue;
    const auto up_to = [this](unsigned most) { return static_cast<Long>(random_() % most); };
    const RECT rect = {up_to(40), up_to(20), 120 + up_to(140), 100 + up_to(60)};
    ExpectTheSame(caption, rect, kSizes[random_() % std::size(kSizes)]);
  }
}

}  // namespace
}  // namespace marklet
