#include "render/sheet.h"

#include <algorithm>
#include <memory>

#include "control/properties.h"
#include "render/files.h"
#include "render/property_text.h"
#include "render/render_error.h"
#include "render/sheet_reader.h"

namespace marklet {
namespace {

// Lengths in 96ths of an inch.
constexpr Long kTitleGap = 4, kHeadingGap = 6, kHeadingSpace = 10, kRule = 1;
constexpr const char* kTitleColour = "#5A6570";
constexpr const char* kHeadingColour = "#1F2A36";
constexpr const char* kRuleColour = "#C9D1D9";

PropertyTexts WordsOn(const std::string& background, const std::string& words, const char* colour,
                      const char* points, const char* bold) {
  return {{"BackColor", background}, {"ForeColor", colour}, {"FontSize", points},
          {"FontBold", bold},        {"Caption", words},    {"AutoSize", "true"}};
}

COLORREF ParseBackground(const std::string& text) {
  const Value colour = ParseValue(*FindProperty("BackColor"), text);
  return static_cast<COLORREF>(std::get<Long>(colour)) & 0xFFFFFF;
}

// The sheet's pixels, as far down as its controls reach yet.
class Canvas {
 public:
  Canvas(Long width, COLORREF background) : background_(background) {
    if (width < 1) throw RenderError("the sheet has no width");
    picture_.width = width;
    Resize(1);
  }

  // The upper left corner lies on the canvas; what is wider than that is cut off.
  void Draw(const CDib24& surface, Long x, Long y) {
    const Picture drawn = PictureOf(surface);
    if (std::int64_t{y} + drawn.height > picture_.height) Resize(std::int64_t{y} + drawn.height);
    const auto bytes = static_cast<std::ptrdiff_t>(std::min(drawn.width, picture_.width - x)) * 3;
    for (Long row = 0; row < drawn.height; ++row)
      std::copy_n(
          drawn.Row(row).begin(), bytes,
          picture_.rgb.begin() + std::ptrdiff_t{y + row} * picture_.width * 3 + std::ptrdiff_t{x} * 3);
  }
  // New rows show the background.
  void Resize(std::int64_t height) {
    if (height > kMostSheetPixels / picture_.width)
      throw RenderError("the sheet is too large to draw: it has more than " +
                        std::to_string(kMostSheetPixels) + " pixels");
    const auto row = static_cast<std::size_t>(picture_.width) * 3;
    std::size_t at = picture_.rgb.size();
    picture_.rgb.resize(static_cast<std::size_t>(height) * row);
    for (; at < picture_.rgb.size(); at += 3)
      for (unsigned channel = 0; channel < 3; ++channel)
        picture_.rgb[at + channel] = static_cast<std::uint8_t>(background_ >> 8 * channel);
    picture_.height = static_cast<Long>(height);
  }
  Picture& Get() { return picture_; }

 private:
  COLORREF background_;
  Picture picture_;
};

// Puts items one after the other into rows, in pixels.
class Layout {
 public:
  Layout(const SheetDescription& description, double scale, const ControlSeen& seen)
      : description_(description),
        scale_(scale),
        seen_(seen),
        y_(Pixels(description.margin)),
        column_width_(WidestShare()),
        canvas_(2 * Pixels(description.margin) + Width(description.columns),
                ParseBackground(description.background)) {}

  void Add(const SheetItem& item) {
    if (!item.heading.empty()) {
      EndRow();
      AddHeading(item.heading);
      return;
    }
    if (column_ + item.span > description_.columns) EndRow();
    AddToRow(item);
    column_ += item.span;
  }
  Picture Finish() {
    EndRow();
    canvas_.Resize(std::max(1, y_ - Pixels(description_.gap) + Pixels(description_.margin)));
    return std::move(canvas_.Get());
  }

 private:
  Long Pixels(Long units) const { return ScaledPixels(units, scale_); }
  Long Width(Long columns) const {
    return columns * column_width_ + (columns - 1) * Pixels(description_.gap);
  }
  Long Left(Long column) const {
    return Pixels(description_.margin) + column * (column_width_ + Pixels(description_.gap));
  }
  // What each column of an item must be wide.
  Long Share(const SheetItem& item) const {
    if (!item.heading.empty()) return 0;
    const Long room = Pixels(item.size.cx) - (item.span - 1) * Pixels(description_.gap);
    return (room + item.span - 1) / item.span;
  }
  Long WidestShare() const {
    Long widest = 0;
    for (const SheetItem& item : description_.items) widest = std::max(widest, Share(item));
    return widest;
  }
  // A control's size is told in units; the last one may be cut off.
  SIZE Units(Long width, Long height) const {
    const auto units = [this](Long pixels) { return std::max(1, static_cast<Long>(pixels / scale_)); };
    return {units(width), units(height)};
  }

  // A control lives no longer than it takes to draw it.
  Long Place(SIZE size, const PropertyTexts& properties, Long x, Long y,
             const Surroundings& surroundings = {}) {
    Surroundings on_sheet = surroundings;
    on_sheet.behind = description_.background;
    RenderedControl control(size, properties, scale_, on_sheet);
    canvas_.Draw(control.Surface(), x, y);
    if (seen_) seen_(control);
    has_controls_ = true;
    return control.Height();
  }
  void AddHeading(const std::string& words) {
    const Long width = Width(description_.columns), left = Left(0);
    if (has_controls_) y_ += Pixels(kHeadingSpace);
    y_ += Place(Units(width, 1), WordsOn(description_.background, words, kHeadingColour, "12", "true"), left,
                y_);
    y_ += Pixels(kHeadingGap) / 2;
    y_ += Place(Units(width, Pixels(kRule)), {{"BackColor", kRuleColour}}, left, y_);
    y_ += Pixels(kHeadingGap) + Pixels(description_.gap) / 2;
  }
  void AddToRow(const SheetItem& item) {
    const Long left = Left(column_);
    Long height = 0;
    if (!item.title.empty())
      height = Pixels(kTitleGap) +
               Place(Units(Width(item.span), 1),
                     WordsOn(description_.background, item.title, kTitleColour, "8", "false"), left, y_);
    titles_ = std::max(titles_, height);
    waiting_.push_back({&item, left});
  }
  // The controls of a row stand on one line, below the tallest title.
  void EndRow() {
    Long height = 0;
    for (const Waiting& waiting : waiting_)
      height = std::max(height, Place(waiting.item->size, waiting.item->properties, waiting.left,
                                      y_ + titles_, waiting.item->surroundings));
    if (!waiting_.empty()) y_ += titles_ + height + Pixels(description_.gap);
    waiting_.clear();
    column_ = titles_ = 0;
  }

  struct Waiting {
    const SheetItem* item;
    Long left;
  };

  const SheetDescription& description_;
  double scale_;
  const ControlSeen& seen_;
  Long y_;
  Long column_ = 0, column_width_;
  Long titles_ = 0;
  bool has_controls_ = false;
  Canvas canvas_;
  std::vector<Waiting> waiting_;
};

}  // namespace

Picture RenderSheet(std::string_view json, double scale, const std::string& file, const ControlSeen& seen) {
  SheetDescription description = ReadSheet(json);
  for (SheetItem& item : description.items)
    for (auto& [key, image] : item.surroundings.images) image = NameBeside(file, image);
  Layout layout(description, scale, seen);
  for (const SheetItem& item : description.items) layout.Add(item);
  return layout.Finish();
}

}  // namespace marklet
