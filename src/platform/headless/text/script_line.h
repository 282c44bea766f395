// One line as the script processor lays it out: with tabs, marks, and characters that take no room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/headless/text/shaping.h"

namespace marklet::headless {

struct LineRules {
  bool rtl = false;
  bool tabs = false;   // reach to the next stop; else they are blanks
  bool marks = false;  // of "&"
};

class ScriptLine {
 public:
  static constexpr std::size_t kNoUnit = static_cast<std::size_t>(-1);

  ScriptLine() = default;
  // The text needn't outlive the line; the face must.
  ScriptLine(Face& face, std::u16string_view text, const LineRules& rules);

  const ShapedText& Text() const { return text_; }
  std::int64_t Width() const { return text_.width; }
  std::int64_t WidthOf(std::size_t first, std::size_t past) const;  // of code units, in the order of the text
  // Whether it was laid out by the shaping engine, where a letter's form depends on its neighbours.
  bool Shaped() const { return shaped_; }
  // Where the cluster before or after a code unit's begins; the line's start, or its length.
  std::size_t ClusterBefore(std::size_t unit) const;
  std::size_t ClusterAfter(std::size_t unit) const;
  std::size_t Marked() const { return marked_; }  // the last marked unit, or kNoUnit

  // Widens the line, as SSA_FIT does. `text` is the line's own.
  void Stretch(std::u16string_view text, std::int64_t width);

 private:
  static constexpr std::uint8_t kStart = 1, kGlued = 2;  // a cluster begins there, or what an "&" marks

  enum class Kind : std::uint8_t { kShown, kTab, kNothing };

  void Classify(std::u16string_view text, const LineRules& rules);
  void LayOutPlain(Face& face, std::u16string_view text);
  void LayOutShaped(Face& face, std::u16string_view text, bool rtl);
  void WidenTabs(Face& face);
  void FindClusters();
  std::vector<Piece*> GapsOf(std::u16string_view text, std::size_t end);

  std::vector<Kind> kinds_;           // by code unit
  std::vector<std::uint8_t> starts_;  // likewise
  ShapedRuns runs_;
  ShapedText text_;
  bool shaped_ = false;
  std::size_t marked_ = kNoUnit;
};

}  // namespace marklet::headless
