#include "platform/headless/text/script_line.h"

#include <algorithm>
#include <numeric>

#include "platform/headless/text/utf.h"

namespace marklet::headless {
namespace {

constexpr char16_t kSoftHyphen = 0x00AD, kNoBreakSpace = 0x00A0, kWideBlank = 0x3000;

bool TakesNoRoom(char16_t c) { return c == u'\r' || c == u'\n' || c == u'\0' || c == kSoftHyphen; }

bool HangsAtTheEnd(char16_t c) { return c == u' ' || c == kWideBlank || TakesNoRoom(c); }

// Mean of the letters, as the platform reckons the average width of a font's characters.
Long AverageWidth(Face& face) {
  constexpr std::u16string_view kLetters = u"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
  Long sum = 0;
  face.ForEachGlyph(kLetters, [&sum](const Glyph& glyph, std::size_t) {
    sum += glyph.advance;
    return true;
  });
  return std::max<Long>(1, (sum + 26) / 52);
}

double NextStop(double position, double step) { return (std::floor(position / step) + 1) * step; }

}  // namespace

ScriptLine::ScriptLine(Face& face, std::u16string_view text, const LineRules& rules)
    : kinds_(text.size(), Kind::kShown), starts_(text.size()), shaped_(NeedsShaping({text, rules.rtl})) {
  Classify(text, rules);
  if (shaped_)
    LayOutShaped(face, text, rules.rtl);
  else
    LayOutPlain(face, text);
  if (rules.tabs) WidenTabs(face);
  FindClusters();
  text_ = Placed(runs_, text.size());
}

// A mark and the character that it marks stand or fall together, so that no line ends between them.
void ScriptLine::Classify(std::u16string_view text, const LineRules& rules) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (rules.tabs && text[i] == u'\t') kinds_[i] = Kind::kTab;
    if (TakesNoRoom(text[i])) kinds_[i] = Kind::kNothing;
    if (!rules.marks || text[i] != u'&' || i + 1 == text.size()) continue;
    kinds_[i++] = Kind::kNothing;
    if (TakesNoRoom(text[i])) kinds_[i] = Kind::kNothing;
    if (text[i] != u'&') marked_ = i;
    starts_[i] = kGlued;
  }
}

void ScriptLine::LayOutPlain(Face& face, std::u16string_view text) {
  runs_.pieces.reserve(text.size());
  std::size_t unit = 0;
  face.ForEachGlyph(text, [&](Glyph& glyph, std::size_t units) {
    if (kinds_[unit] == Kind::kShown) runs_.pieces.push_back({&glyph, unit, double(glyph.advance), 0, 0});
    if (kinds_[unit] == Kind::kTab) runs_.pieces.push_back({nullptr, unit, 0, 0, 0});
    unit += units;
    return true;
  });
  runs_.runs.push_back({0, runs_.pieces.size(), 0, false});
}

void ScriptLine::LayOutShaped(Face& face, std::u16string_view text, bool rtl) {
  EncodedText encoded;
  encoded.bytes.reserve(text.size() * 2);
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t unit = i;
    const char32_t c = NextCodePoint(text, i);
    if (kinds_[unit] == Kind::kNothing) continue;
    // A tab is an item of its own and starts the direction anew.
    AppendUtf8(encoded.bytes, kinds_[unit] == Kind::kTab ? c : ShapeableAs(c));
    encoded.units.resize(encoded.bytes.size(), unit);
  }
  runs_ = ShapeRuns(face, encoded, rtl);
}

// The room before a tab is that of the text before it, whatever direction that runs in.
void ScriptLine::WidenTabs(Face& face) {
  if (std::find(kinds_.begin(), kinds_.end(), Kind::kTab) == kinds_.end()) return;
  const double step = 8 * AverageWidth(face);
  double position = 0;
  for (const PieceRun& run : runs_.runs) {
    for (std::size_t i = run.first; i < run.past; ++i) {
      Piece& piece = runs_.pieces[i];
      if (kinds_[piece.unit] == Kind::kTab) {
        piece.glyph = nullptr;
        piece.advance = NextStop(position, step) - position;
      }
      position += piece.advance;
    }
  }
}

void ScriptLine::FindClusters() {
  const auto start_at = [this](std::size_t unit) {
    if (starts_[unit] != kGlued) starts_[unit] = kStart;
  };
  for (const Piece& piece : runs_.pieces) start_at(piece.unit);
  for (std::size_t i = 0; i < kinds_.size(); ++i)
    if (kinds_[i] == Kind::kNothing) start_at(i);
}

std::int64_t ScriptLine::WidthOf(std::size_t first, std::size_t past) const {
  const auto from = text_.unit_widths.begin();
  return std::accumulate(from + static_cast<std::ptrdiff_t>(first), from + static_cast<std::ptrdiff_t>(past),
                         std::int64_t{0});
}

std::size_t ScriptLine::ClusterBefore(std::size_t unit) const {
  while (unit > 0 && starts_[--unit] != kStart) {
  }
  return unit;
}

std::size_t ScriptLine::ClusterAfter(std::size_t unit) const {
  while (++unit < starts_.size() && starts_[unit] != kStart) {
  }
  return std::min(unit, starts_.size());
}

// What grows when the line is stretched, from left to right: its blanks or, where it has none, what stands in
// front of another cluster.
std::vector<Piece*> ScriptLine::GapsOf(std::u16string_view text, std::size_t end) {
  std::vector<Piece*> blanks, others;
  Piece* former = nullptr;
  for (const PieceRun& run : InVisualOrder(runs_.runs)) {
    for (std::size_t i = run.first; i < run.past; ++i) {
      Piece& piece = runs_.pieces[i];
      if (piece.unit >= end) continue;
      if (text[piece.unit] == u' ' || text[piece.unit] == kNoBreakSpace) blanks.push_back(&piece);
      if (former != nullptr && former->unit != piece.unit) others.push_back(former);
      former = run.joins ? nullptr : &piece;
    }
  }
  return blanks.empty() ? others : blanks;
}

void ScriptLine::Stretch(std::u16string_view text, std::int64_t width) {
  std::size_t end = text.size();
  while (end > 0 && HangsAtTheEnd(text[end - 1])) --end;
  for (Piece& piece : runs_.pieces)
    if (piece.unit >= end) piece.advance = 0;
  const std::int64_t missing = width - Placed(runs_, text.size()).width;
  const std::vector<Piece*> gaps = missing > 0 ? GapsOf(text, end) : std::vector<Piece*>();
  const auto count = static_cast<std::int64_t>(gaps.size());
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t share = missing * (i + 1) / count - missing * i / count;
    gaps[static_cast<std::size_t>(i)]->advance += static_cast<double>(share);
  }
  text_ = Placed(runs_, text.size());
}

}  // namespace marklet::headless
