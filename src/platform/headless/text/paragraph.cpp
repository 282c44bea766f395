// DrawTextW: a text laid out in a rectangle.
#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "platform/headless/recorder/hook.h"
#include "platform/headless/text/line_cutter.h"
#include "platform/headless/text/line_painter.h"
#include "platform/system.h"
#include "platform/text.h"

namespace marklet {
namespace {

using headless::Box;
using headless::CutLine;
using headless::LineCutter;
using headless::Operation;
using headless::Refused;

constexpr std::uint32_t DT_NOPREFIX = 0x800;

Long Held(std::int64_t value) {
  return static_cast<Long>(
      std::clamp<std::int64_t>(value, std::numeric_limits<Long>::min(), std::numeric_limits<Long>::max()));
}

// A text without its prefix signs, and where the underlined characters are in it.
struct Unprefixed {
  std::u16string_view text;
  std::u16string own;  // holds the text when there was something to take out
  std::vector<std::size_t> marks;
};

Unprefixed TakeOutPrefixes(std::u16string_view text, std::uint32_t flags) {
  Unprefixed result;
  result.text = text;
  if ((flags & DT_NOPREFIX) != 0 || text.find(u'&') == std::u16string_view::npos) return result;
  result.own.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    // The last character marks nothing, and so shows.
    if (text[i] == u'&' && i + 1 < text.size() && text[++i] != u'&')
      result.marks.push_back(result.own.size());
    result.own += text[i];
  }
  result.text = result.own;
  return result;
}

// Lays the lines of one call out and draws them.
class TextBox {
 public:
  TextBox(HDC dc, std::u16string_view text, const RECT& rect, std::uint32_t flags)
      : dc_(*dc),
        font_(dc->SelectedFont()),
        rect_(headless::BoxOf(rect)),
        flags_(flags),
        height_(font_.RealFace().Height()),
        text_(TakeOutPrefixes(text, flags)),
        cutter_(font_, text_.text, flags, rect_.Width()) {}

  void Run();
  std::int64_t Height() const { return lines_ * height_; }
  std::int64_t WidestLine() const { return widest_; }

 private:
  bool Has(std::uint32_t flag) const { return (flags_ & flag) != 0; }
  bool EndsHere() const;
  std::int64_t LeftOf(const CutLine& line) const;
  std::int64_t TopOf() const;
  void Draw(const CutLine& line) const;
  void Underscore(const CutLine& line, std::int64_t x, const Box& clip) const;

  const DeviceContextHandle& dc_;
  headless::Font& font_;
  const Box rect_;
  const std::uint32_t flags_;
  const Long height_;
  const Unprefixed text_;
  LineCutter cutter_;
  std::int64_t y_ = 0;      // of the line that is being laid out
  std::int64_t lines_ = 0;  // laid out
  std::int64_t widest_ = 0;
};

void TextBox::Run() {
  y_ = TopOf();
  bool more = true;
  while (more) {
    const bool last = EndsHere();
    const CutLine line = cutter_.Next();
    widest_ = std::max(widest_, line.width);
    if (!Has(DT_CALCRECT)) Draw(line);
    y_ += height_;
    ++lines_;
    more = !last && !cutter_.Done();
  }
}

// Lines that begin below the clipped rectangle can't be seen and aren't laid out.
bool TextBox::EndsHere() const { return !Has(DT_NOCLIP | DT_CALCRECT) && y_ + height_ > rect_.bottom; }

std::int64_t TextBox::TopOf() const {
  if (!Has(DT_SINGLELINE)) return rect_.top;
  if (Has(DT_VCENTER)) return rect_.top + rect_.Height() / 2 - height_ / 2;
  return Has(DT_BOTTOM) ? rect_.bottom - height_ : rect_.top;
}

std::int64_t TextBox::LeftOf(const CutLine& line) const {
  if (Has(DT_CENTER)) return (rect_.left + rect_.right - line.width) / 2;
  return Has(DT_RIGHT) ? rect_.right - line.width : rect_.left;
}

void TextBox::Draw(const CutLine& line) const {
  const Box clip = Has(DT_NOCLIP) ? dc_.surface.Bounds() : rect_;
  const std::int64_t x = LeftOf(line);
  DrawLineInContext(dc_, clip, {line.text, Has(DT_RTLREADING)}, x, y_, line.width);
  if (!text_.marks.empty()) Underscore(line, x, clip);
}

// A line one pixel thick under the last marked character, as wide as that less one.
void TextBox::Underscore(const CutLine& line, std::int64_t x, const Box& clip) const {
  const auto behind = std::lower_bound(text_.marks.begin(), text_.marks.end(), line.start + line.kept);
  if (behind == text_.marks.begin() || *(behind - 1) < line.start) return;
  const std::size_t mark = *(behind - 1) - line.start;
  const headless::UnitSpan span = SpanOf(font_, {line.text, Has(DT_RTLREADING)}, mark);
  const std::int64_t top = y_ + font_.RealFace().Ascent() + 1;
  FillBox(dc_.surface, Intersect(clip, {x + span.left, top, x + span.right - 1, top + 1}), dc_.text_colour);
}

int DrawInRect(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (dc == nullptr || text.empty()) return 0;
  TextBox box(dc, text, rect, flags);
  box.Run();
  if ((flags & DT_CALCRECT) != 0) {
    rect.right = Held(rect.left + box.WidestLine());
    rect.bottom = Held(rect.top + box.Height());
  }
  return Held(box.Height());
}

}  // namespace

int DrawTextW(HDC dc, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (Refused(Operation::kDrawTextW, dc, text, rect, flags)) return 0;
  return DrawInRect(dc, text, rect, flags);
}

int DrawTextA(HDC dc, std::string_view text, RECT& rect, std::uint32_t flags) {
  if (Refused(Operation::kDrawTextA, dc, text, rect, flags)) return 0;
  return DrawInRect(dc, MultiByteToWideChar(CP_ACP, text), rect, flags);
}

}  // namespace marklet
