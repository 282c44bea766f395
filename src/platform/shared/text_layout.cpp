#include "platform/shared/text_layout.h"

#include <algorithm>
#include <string>

#include "platform/shared/line_cutter.h"
#include "platform/shared/saturated.h"

namespace marklet {
namespace {

constexpr std::uint32_t DT_NOPREFIX = 0x800;

// A text without its "&" marks, and where the marked characters are in it.
struct Unmarked {
  std::u16string_view text;
  std::u16string own;  // holds the text when there was something to take out
  std::vector<std::size_t> marked;
};

Unmarked TakeMarksOut(std::u16string_view text, std::uint32_t flags) {
  Unmarked result;
  result.text = text;
  if ((flags & DT_NOPREFIX) != 0 || text.find(u'&') == std::u16string_view::npos) return result;
  result.own.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    // The last character marks nothing, and so shows.
    if (text[i] == u'&' && i + 1 < text.size() && text[++i] != u'&')
      result.marked.push_back(result.own.size());
    result.own += text[i];
  }
  result.text = result.own;
  return result;
}

// Lays the lines of one call out and draws them.
class TextBox {
 public:
  TextBox(LineDevice& device, std::u16string_view text, const RECT& rect, std::uint32_t flags)
      : device_(device),
        rect_(rect),
        flags_(flags),
        height_(device.LineHeight()),
        text_(TakeMarksOut(text, flags)),
        cutter_(device, text_.text, flags, std::int64_t{rect.right} - rect.left) {}

  void Run();
  std::int64_t Height() const { return lines_ * height_; }
  std::int64_t WidestLine() const { return widest_; }

 private:
  bool Has(std::uint32_t flag) const { return (flags_ & flag) != 0; }
  bool EndsHere() const;
  std::int64_t Left(std::int64_t width) const;
  std::int64_t Top() const;
  void Draw(const CutLine& line) const;
  void Underscore(const CutLine& line, std::int64_t x) const;

  LineDevice& device_;
  const RECT rect_;
  const std::uint32_t flags_;
  const Long height_;
  const Unmarked text_;
  LineCutter cutter_;
  std::int64_t y_ = 0;      // of the line that is being laid out
  std::int64_t lines_ = 0;  // laid out
  std::int64_t widest_ = 0;
};

void TextBox::Run() {
  y_ = Top();
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

// Lines that begin below the clipped rectangle can't be seen and aren't laid out; one that begins at its
// bottom still is, and counts in the height.
bool TextBox::EndsHere() const { return !Has(DT_NOCLIP | DT_CALCRECT) && y_ + height_ > rect_.bottom; }

std::int64_t TextBox::Top() const {
  const std::int64_t top = rect_.top, bottom = rect_.bottom;
  if (!Has(DT_SINGLELINE)) return top;
  if (Has(DT_VCENTER)) return top + (bottom - top) / 2 - height_ / 2;
  return Has(DT_BOTTOM) ? bottom - height_ : top;
}

std::int64_t TextBox::Left(std::int64_t width) const {
  const std::int64_t left = rect_.left, right = rect_.right;
  if (Has(DT_CENTER)) return (left + right - width) / 2;
  return Has(DT_RIGHT) ? right - width : left;
}

void TextBox::Draw(const CutLine& line) const {
  const std::int64_t x = Left(line.width);
  device_.DrawLine(line.text, x, y_, line.width);
  if (!text_.marked.empty()) Underscore(line, x);
}

// A line one pixel thick under the last marked character, as wide as that less one.
void TextBox::Underscore(const CutLine& line, std::int64_t x) const {
  const auto past = std::lower_bound(text_.marked.begin(), text_.marked.end(), line.start + line.kept);
  if (past == text_.marked.begin() || *(past - 1) < line.start) return;
  const LineStretch stretch = device_.StretchOf(line.text, *(past - 1) - line.start);
  device_.DrawBar(x + stretch.left, x + stretch.right - 1, y_ + device_.Ascent() + 1);
}

}  // namespace

int DrawTextOn(LineDevice& device, std::u16string_view text, RECT& rect, std::uint32_t flags) {
  if (text.empty()) return 0;
  TextBox box(device, text, rect, flags);
  box.Run();
  if ((flags & DT_CALCRECT) != 0) {
    rect.right = Saturated(rect.left + box.WidestLine());
    rect.bottom = Saturated(rect.top + box.Height());
  }
  return Saturated(box.Height());
}

}  // namespace marklet
