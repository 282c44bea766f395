#include "platform/headless/text/script_string.h"

#include <algorithm>

#include "platform/headless/pixels/device_context.h"
#include "platform/headless/text/line_painter.h"
#include "platform/headless/text/log_attributes.h"
#include "platform/shared/aligned_corner.h"
#include "platform/shared/saturated.h"
#include "platform/shared/script_window.h"

namespace marklet {
namespace {

using headless::Box;
using headless::Canvas;
using headless::ScriptLine;

}  // namespace

ScriptStringHandle::ScriptStringHandle(HDC dc, std::u16string_view text, std::uint32_t flags, Long width)
    : dc_(dc),
      face_(dc->SelectedFont().SharedFace()),
      underlined_(dc->SelectedFont().record.lfUnderline),
      struck_out_(dc->SelectedFont().record.lfStrikeOut),
      flags_(flags),
      width_(width) {
  if (Has(SSA_CLIP)) {
    FindFit(text);
  } else {
    text_ = text;
    line_ = LaidOut(text);
    drawn_ = text.size();
    out_chars_ = Saturated(static_cast<std::int64_t>(drawn_));
  }
  if (Has(SSA_FIT) && drawn_ == text_.size()) line_.Stretch(text_, width);
  size_ = {Saturated(line_.WidthOf(0, drawn_)), face_->Height()};
}

ScriptLine ScriptStringHandle::LaidOut(std::u16string_view text) const {
  return {*face_, text, {.rtl = Has(SSA_RTL), .tabs = Has(SSA_TAB), .marks = Has(SSA_HOTKEY)}};
}

void ScriptStringHandle::FindFit(std::u16string_view text) {
  ScriptWindow window(text, width_, face_->Height());
  line_ = LaidOut(window.Text());
  while (!window.Tells(line_.Width())) {
    window.Grow();
    line_ = LaidOut(window.Text());
  }
  text_ = window.Text();
  const bool fits = line_.Width() <= width_;
  const std::size_t fitting = fits ? text_.size() : FittingUnits();
  if (!fits) window.Ended(fitting);
  drawn_ = fitting == text_.size() ? fitting : line_.ClusterAfter(fitting);
  out_chars_ = static_cast<Long>(fitting);
}

// Whole clusters, those of no width after the last that fits among them.
std::size_t ScriptStringHandle::FittingUnits() const {
  std::size_t fitting = 0;
  std::int64_t width = 0;
  while (fitting < text_.size()) {
    const std::size_t next = line_.ClusterAfter(fitting);
    width += line_.WidthOf(fitting, next);
    if (width > width_) break;
    fitting = next;
  }
  while (fitting > 0 && !FitsWhenCut(fitting)) fitting = line_.ClusterBefore(fitting);
  return fitting;
}

// A letter in front of the cut may take a wider form than inside its word.
bool ScriptStringHandle::FitsWhenCut(std::size_t units) const {
  if (!line_.Shaped()) return true;
  const std::size_t blank = text_.find_last_of(u" \t", units - 1);
  const std::size_t word = blank == text_.npos ? 0 : blank + 1;
  if (word == units) return true;
  const ScriptLine cut = LaidOut(std::u16string_view(text_).substr(word, units - word));
  return line_.WidthOf(0, word) + cut.Width() <= width_;
}

const std::uint8_t* ScriptStringHandle::LogAttrs() {
  if (!Has(SSA_BREAK)) return nullptr;
  if (attributes_.empty())
    attributes_ = headless::LogAttributes(text_, static_cast<std::size_t>(out_chars_), Has(SSA_HOTKEY));
  return attributes_.data();
}

bool ScriptStringHandle::Draw(Long x, Long y, std::uint32_t options, const RECT* clip) {
  if (!Has(SSA_GLYPHS)) return false;
  const Box visible = headless::RoomFor(*dc_, options, clip);
  if (drawn_ < text_.size()) {
    text_.resize(drawn_);
    line_ = LaidOut(text_);
  }
  const LineCorner corner =
      AlignedCorner(dc_->text_align, x, y, {size_.cx, face_->Height(), face_->Ascent()});
  if (dc_->surface.bits != nullptr) DrawLine(visible, corner.x, corner.y);
  return true;
}

void ScriptStringHandle::DrawLine(const Box& clip, std::int64_t left, std::int64_t top) {
  const Canvas canvas(dc_->surface, clip, dc_->text_colour);
  if (!BeginLine(canvas, *dc_, {left, top, left + size_.cx, top + size_.cy})) return;
  const std::int64_t baseline = top + face_->Ascent();
  DrawPlaces(canvas, *face_, line_.Text(), left, baseline);
  if (underlined_) FillBar(canvas, face_->Underline(), left, baseline, size_.cx);
  if (struck_out_) FillBar(canvas, face_->StrikeOut(), left, baseline, size_.cx);
  if (line_.Marked() == ScriptLine::kNoUnit) return;
  const std::int64_t from = left + line_.Text().unit_lefts[line_.Marked()];
  const std::int64_t to = from + line_.Text().unit_widths[line_.Marked()] - 1;
  FillBox(canvas.surface, Intersect({from, baseline + 1, to, baseline + 2}, canvas.clip), canvas.colour);
}

}  // namespace marklet
