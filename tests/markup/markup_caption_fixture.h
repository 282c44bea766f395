// What the tests of captions share: a canvas whose runs are noted.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "markup/canvas.h"
#include "markup/drawn_runs.h"
#include "markup/markup_caption.h"
#include "markup/played_system.h"
#include "text/emit_text_run.h"

namespace marklet {

inline constexpr unsigned kRunFlags = 0x40020;  // single line, word ellipsis

// A face with outlines, whose letters hang over when they lean.
inline FontRef FontOf(double points, bool italic = false) {
  auto font = std::make_shared<StdFont>();
  font->PutSize(points);
  font->PutItalic(italic);
  return font;
}

class MarkupCaption : public testing::Test {
 protected:
  MarkupCaption() {
    style_.Font = FontOf(10);
    style_.ForeColor = MakeRgb(0x11, 0x22, 0x33);
    style_.SingleLine = true;
    style_.SurfaceDC = canvas_.dc();
    SelectObject(canvas_.dc(), style_.Font->hFont());
  }

  const std::vector<DrawnRun>& Draw(std::u16string_view caption) {
    Recorder recorder;
    return DrawRecorded(caption, recorder);
  }

  const std::vector<DrawnRun>& DrawRecorded(std::u16string_view caption, Recorder& recorder) {
    RECT rect = rect_;
    DrawMarkupCaption(canvas_.dc(), caption, rect, style_);
    lines_ = recorder.Lines();
    runs_ = DrawnRuns(recorder);
    return runs_;
  }

  // Of each run of a caption, as it is drawn.
  using Strings = std::vector<std::string>;
  Strings ColoursOf(std::u16string_view caption) { return OfEachRun(caption, &DrawnRun::colour); }
  Strings FontsOf(std::u16string_view caption) { return OfEachRun(caption, &DrawnRun::font); }
  Strings TextsOf(std::u16string_view caption) { return OfEachRun(caption, &DrawnRun::text); }
  Strings OfEachRun(std::u16string_view caption, std::string DrawnRun::*field) {
    Strings found;
    for (const DrawnRun& run : Draw(caption)) found.push_back(run.*field);
    return found;
  }

  std::vector<std::string> Lines(std::string_view start) const {
    std::vector<std::string> found;
    for (const std::string& line : lines_)
      if (line.starts_with(start)) found.push_back(line);
    return found;
  }

  SIZE Measure(std::u16string_view text, double points = 10) const {
    return canvas_.Measure(*FontOf(points), text);
  }
  Long Width(std::u16string_view text, double points = 10) const { return Measure(text, points).cx; }
  Long Height(std::u16string_view text, double points = 10) const { return Measure(text, points).cy; }

  // The pen height after <.> and <p>.
  Long LineStep(double points = 10) const { return Height(u"\u00C5y", points); }
  Long ParagraphStep() const { return Height(u" ") + LineStep(); }

  static std::string FontLine(const StdFont& font) {
    const auto pixels = std::lround(font.Size() * 96 / 72);
    std::string name(font.Name().begin(), font.Name().end());
    return "font(\"" + name + "\",-" + std::to_string(pixels) + "," + std::to_string(font.Weight()) + ",\"" +
           (font.Italic() ? "i" : "") + (font.Underline() ? "u" : "") + (font.Strikethrough() ? "k" : "") +
           "\")";
  }

  const PlayedSystem system_{generation::kVista};
  Canvas canvas_{400, 300};
  RECT rect_ = {0, 0, 400, 300};
  CaptionStyle style_;
  std::vector<std::string> lines_;
  std::vector<DrawnRun> runs_;
};

}  // namespace marklet
