#include "render/sheet.h"

#include <algorithm>

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

}  // namespace

// Puts items one after the other into rows, in pixels.
class Sheet::Layout {
 public:
  Layout(Sheet& sheet, const SheetDescription& description, double scale)
      : sheet_(sheet), description_(description), scale_(scale), y_(Pixels(description.margin)) {
    for (const SheetItem& item : description.items) column_width_ = std::max(column_width_, Share(item));
  }

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
  void Finish() {
    EndRow();
    sheet_.width_ = 2 * Pixels(description_.margin) + Width(description_.columns);
    sheet_.height_ = y_ - Pixels(description_.gap) + Pixels(description_.margin);
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
  // A control's size is told in units; the last one may be cut off.
  SIZE Units(Long width, Long height) const {
    const auto units = [this](Long pixels) { return std::max(1, static_cast<Long>(pixels / scale_)); };
    return {units(width), units(height)};
  }

  Long Place(SIZE size, const PropertyTexts& properties, Long x, Long y,
             const Surroundings& surroundings = {}) {
    auto control = std::make_unique<RenderedControl>(size, properties, scale_, surroundings);
    const Long height = control->Height();
    sheet_.placed_.push_back({std::move(control), x, y});
    return height;
  }
  void AddHeading(const std::string& words) {
    const Long width = Width(description_.columns), left = Left(0);
    if (!sheet_.placed_.empty()) y_ += Pixels(kHeadingSpace);
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

  Sheet& sheet_;
  const SheetDescription& description_;
  double scale_;
  Long y_;
  Long column_ = 0, column_width_ = 0;
  Long titles_ = 0;
  std::vector<Waiting> waiting_;
};

Sheet::Sheet(std::string_view json, double scale, const std::string& file) {
  SheetDescription description = ReadSheet(json);
  for (SheetItem& item : description.items)
    for (auto& [key, image] : item.surroundings.images) image = NameBeside(file, image);
  background_ = ParseBackground(description.background);
  Layout layout(*this, description, scale);
  for (const SheetItem& item : description.items) layout.Add(item);
  layout.Finish();
}

void Sheet::Redraw() {
  for (Placed& placed : placed_) placed.control->Redraw();
}

Picture Sheet::Compose() const {
  CDib24 canvas;
  if (!canvas.Create(width_, height_)) throw RenderError("the sheet is too large to draw");
  canvas.Clear(background_);
  for (const Placed& placed : placed_) placed.control->PaintTo(canvas.hDC(), placed.x, placed.y);
  return PictureOf(canvas);
}

}  // namespace marklet
