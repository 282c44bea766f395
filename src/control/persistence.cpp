// Saved forms: which keys are written and read, in which order. What stands under a key is in the property
// table.
#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>

#include "control/marklet.h"
#include "control/text_bytes.h"
#include "platform/ignore_errors.h"

namespace marklet {
namespace {

// "Alignment" is read and never written: a form that holds another than 0 loses it at its next save.
constexpr std::string_view kWritten[] = {
    "Appearance",     "AutoSize", "BackColor",    "BackStyle",         "BorderStyle",    "Caption",
    "Enabled",        "Font",     "ForeColor",    "RightToLeft",       "UniToolTipText", "UseMnemonic",
    "Padding",        "WordWrap", "EffectColor",  "VerticalAlignment", "TextEffect",     "ImageSize",
    "ImageAlignment", "ImageKey", "ImageKeyHover"};

// The caption comes before the font and the images, so that the setters on the way paint unfinished pictures.
constexpr std::string_view kReadBeforeImages[] = {
    "Appearance",        "Alignment",  "BackColor", "BackStyle",     "BorderStyle",
    "Caption",           "Font",       "ForeColor", "RightToLeft",   "UniToolTipText",
    "UseMnemonic",       "Padding",    "Enabled",   "WordWrap",      "EffectColor",
    "VerticalAlignment", "TextEffect", "ImageSize", "ImageAlignment"};
constexpr std::string_view kReadBehindImages[] = {"ImageKey", "ImageKeyHover"};

// --- Values -----------------------------------------------------------------------------------------------

// A value on its way into a bag. Numbers go as I4.
BagValue ToBag(const Value& value, BagType type) {
  return std::visit(
      [type](const auto& held) -> BagValue {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, std::u16string>)
          return type == BagType::Bytes ? BagValue(BytesOf(held)) : BagValue(held);
        else if constexpr (std::is_same_v<Held, HostObjectRef>)
          return {};
        else
          return held;
      },
      value);
}

// And on its way back. monostate when the bag couldn't give it.
Value FromBag(const BagValue& value) {
  return std::visit(
      [](const auto& held) -> Value {
        using Held = std::decay_t<decltype(held)>;
        if constexpr (std::is_same_v<Held, ByteArray>)
          return TextOf(held.bytes);
        else if constexpr (std::is_same_v<Held, std::int16_t>)
          return static_cast<Long>(held);
        else
          return held;
      },
      value);
}

// --- Images -----------------------------------------------------------------------------------------------

std::string KeyName(Long image) { return "IcoBytesKey_" + std::to_string(image); }

std::string CellName(Long size, Long depth, Long image) {
  return "IconBytesJ" + std::to_string(size) + "K" + std::to_string(depth) + "_" + std::to_string(image);
}

template <class Visit>
void ForEachCell(Visit visit) {
  for (Long size = 0; size < CIconBytes::kSizes; ++size)
    for (Long depth = 0; depth < CIconBytes::kDepths; ++depth) visit(size, depth);
}

// A cell without bytes isn't kept, and neither is one of a single byte.
bool Kept(const ByteArray& cell) { return cell.UpperBound() > 0; }

// Reads one image into `image`; false when the bag holds nothing of it.
bool ReadImage(PropertyBag& bag, Long number, CIconBytes& image) {
  bool found = false;
  IgnoreErrors([&] {
    const auto key = bag.ReadProperty(KeyName(number), BagType::Text);
    found = key.has_value();
    if (key && std::holds_alternative<std::u16string>(*key)) image.PutKey(std::get<std::u16string>(*key));
  });
  ForEachCell([&](Long size, Long depth) {
    IgnoreErrors([&] {
      auto cell = bag.ReadProperty(CellName(size, depth, number), BagType::Bytes);
      found = found || cell.has_value();
      if (!cell || !std::holds_alternative<ByteArray>(*cell)) return;
      if (Kept(std::get<ByteArray>(*cell)))
        image.SetBytes(size, depth, std::move(std::get<ByteArray>(*cell)));
    });
  });
  return found;
}

void WriteImage(PropertyBag& bag, Long number, const CIconBytes& image) {
  IgnoreErrors([&] { bag.WriteProperty(KeyName(number), image.Key(), BagValue()); });
  ForEachCell([&](Long size, Long depth) {
    const ByteArray& cell = image.GetBytes(size, depth);
    if (Kept(cell)) IgnoreErrors([&] { bag.WriteProperty(CellName(size, depth, number), cell, BagValue()); });
  });
}

}  // namespace

// --- Properties -------------------------------------------------------------------------------------------

void Marklet::LoadProperty(PropertyBag& bag, std::string_view key) {
  IgnoreErrors([&] {
    const PropertyRow& row = *FindSaved(key);
    const auto read = bag.ReadProperty(key, row.saved.type);
    const Value value = FromBag(read ? *read : row.saved.fallback(*this));
    if (!HoldsType(value, row.type)) return;  // the field stays as it is
    if (row.saved.store != nullptr)
      row.saved.store(*this, value);
    else
      Set(row, value);
  });
}

void Marklet::SaveProperty(PropertyBag& bag, std::string_view key) {
  IgnoreErrors([&] {
    const SavedAs& saved = FindSaved(key)->saved;
    bag.WriteProperty(key, ToBag(saved.get(*this), saved.type), saved.fallback(*this));
  });
}

void Marklet::ReadProperties(PropertyBag& bag) {
  for (const std::string_view key : kReadBeforeImages) LoadProperty(bag, key);
  LoadImages(bag);
  for (const std::string_view key : kReadBehindImages) LoadProperty(bag, key);
  LoadProperty(bag, "AutoSize");  // measures with all the rest in place
  MatchAccessKeys();
  RedrawNow();
  UpdateColorFlag();
}

void Marklet::WriteProperties(PropertyBag& bag) {
  for (const std::string_view key : kWritten) SaveProperty(bag, key);
  SaveImages(bag);
}

// --- Images -----------------------------------------------------------------------------------------------

// The count says how many images to look for, and may say anything. A saved form has no gaps: where this many
// aren't there, the count is wrong.
void Marklet::LoadImages(PropertyBag& bag) {
  constexpr Long kMostAbsent = 100;
  Long count = 0;
  IgnoreErrors([&] {
    const auto read = bag.ReadProperty("NumOfIconBytes", BagType::I4);
    if (read && std::holds_alternative<Long>(*read)) count = std::get<Long>(*read);
  });
  state_.Images.reset();
  IgnoreErrors([&] { state_.Images = std::make_shared<ImageCollection>(); });
  Long absent = 0;
  for (Long i = 1; i <= count && absent < kMostAbsent; ++i) {
    IgnoreErrors([&] {
      const auto image = std::make_shared<CIconBytes>();
      if (!ReadImage(bag, i, *image)) ++absent;
      if (state_.Images) state_.Images->Add(image->Key(), image);  // a key that is taken keeps its image
    });
  }
}

void Marklet::SaveImages(PropertyBag& bag) {
  const auto images = state_.Images;
  if (!images) return;
  IgnoreErrors([&] { bag.WriteProperty("NumOfIconBytes", images->Count(), std::int16_t{0}); });
  for (Long i = 1; i <= images->Count(); ++i)
    if (const ImageRef image = images->Item(i)) WriteImage(bag, i, *image);
}

}  // namespace marklet
