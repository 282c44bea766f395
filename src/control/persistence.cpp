// What a newly placed control has, and saved forms: which keys are written and read, in which order. What
// stands under a key, and its default, is in the property table.
#include <string>
#include <type_traits>
#include <utility>

#include "base/ignore_errors.h"
#include "control/marklet.h"
#include "control/property_table.h"
#include "control/text_bytes.h"
#include "imagelist/owned_images.h"
#include "platform/shared/os_tests.h"

namespace marklet {
namespace {

using property_table::Holds;
using property_table::RowSavedAs;
using property_table::RowsSavedAs;
using property_table::SavedRows;

constexpr auto kWritten = SavedRows<[](const PropertyRow& row) { return row.saved.written; }>(RowsSavedAs(
    {"Appearance",     "AutoSize", "BackColor",    "BackStyle",         "BorderStyle",    "Caption",
     "Enabled",        "Font",     "ForeColor",    "RightToLeft",       "UniToolTipText", "UseMnemonic",
     "Padding",        "WordWrap", "EffectColor",  "VerticalAlignment", "TextEffect",     "ImageSize",
     "ImageAlignment", "ImageKey", "ImageKeyHover"}));

constexpr auto kReadAfterImages = RowsSavedAs({"ImageKey", "ImageKeyHover"});
constexpr auto kReadLast = RowsSavedAs({"AutoSize"});  // measures with all the rest in place

// The caption comes before the font and the images, so that the setters on the way paint unfinished pictures.
constexpr auto kReadBeforeImages =
    SavedRows<[](const PropertyRow& row) { return !Holds(kReadAfterImages, row) && !Holds(kReadLast, row); }>(
        RowsSavedAs({"Appearance", "Alignment", "BackColor", "BackStyle", "BorderStyle", "Caption", "Font",
                     "ForeColor", "RightToLeft", "UniToolTipText", "UseMnemonic", "Padding", "Enabled",
                     "WordWrap", "EffectColor", "VerticalAlignment", "TextEffect", "ImageSize",
                     "ImageAlignment"}));

// A newly placed control gets each default into the bare field, but for what InitProperties sets in its own
// way and what stays as it is.
constexpr auto kPlacedOtherwise = RowsSavedAs({"Appearance", "BorderStyle", "Caption", "Alignment", "Font"});
constexpr auto kNotPlaced = RowsSavedAs({"AutoSize", "ImageKey", "ImageKeyHover", "UniToolTipText"});
constexpr auto kPlaced = SavedRows<[](const PropertyRow& row) {
  return !Holds(kPlacedOtherwise, row) && !Holds(kNotPlaced, row);
}>(RowsSavedAs({"Enabled", "BackColor", "ForeColor", "EffectColor", "RightToLeft", "Padding", "UseMnemonic",
                "WordWrap", "BackStyle", "VerticalAlignment", "TextEffect", "ImageAlignment", "ImageSize"}));

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

}  // namespace

// --- Properties -------------------------------------------------------------------------------------------

Value Marklet::DefaultOf(const PropertyRow& row) { return FromBag(row.saved.fallback(*this)); }

// Into the bare field where the row has a way to it, else as its setter stores it, without the steps.
void Marklet::StoreBare(const PropertyRow& row, const Value& value) {
  (row.saved.store != nullptr ? row.saved.store : row.store)(*this, value);
}

bool Marklet::InitProperties() {
  constexpr const PropertyRow& kCaption = RowSavedAs("Caption");
  constexpr const PropertyRow& kFont = RowSavedAs("Font");
  Ambient& ambient = host_.AmbientProperties();
  bool whole = true;
  // A step that fails is skipped; one that sets a property may fail inside.
  const auto step = [&](auto body) {
    if (!IgnoreErrors(body)) whole = false;
  };
  const auto set = [&](const PropertyRow& row, auto value) {
    step([&] {
      if (!TrySet(row, value())) whole = false;
    });
  };
  const auto place = [&](const PropertyRow& row) { step([&] { StoreBare(row, DefaultOf(row)); }); };
  const auto set_default = [&](const PropertyRow& row) { set(row, [&] { return DefaultOf(row); }); };
  step([&] { state_.DesignMode = !ambient.UserMode(); });
  set_default(RowSavedAs("Appearance"));
  set_default(RowSavedAs("BorderStyle"));
  set(kCaption, [&] { return Value(ambient.DisplayName()); });
  place(RowSavedAs("Alignment"));
  set_default(kFont);
  step([&] { host_.Font()->PutName(ambient.Font()->Name()); });
  for (const PropertyRow* row : kPlaced) place(*row);
  MatchAccessKeys();
  return whole;
}

bool Marklet::LoadProperty(PropertyBag& bag, const PropertyRow& row) {
  bool stored = true;
  const bool read_out = IgnoreErrors([&] {
    const auto read = bag.ReadProperty(row.saved.key, row.saved.type);
    const Value value = read ? FromBag(*read) : DefaultOf(row);
    if (!HoldsType(value, row.type)) return;  // the field stays as it is
    if (row.saved.store != nullptr)
      row.saved.store(*this, value);
    else
      stored = TrySet(row, value);
  });
  return read_out && stored;
}

bool Marklet::SaveProperty(PropertyBag& bag, const PropertyRow& row) {
  const SavedAs& saved = row.saved;
  return IgnoreErrors(
      [&] { bag.WriteProperty(saved.key, ToBag(saved.get(*this), saved.type), saved.fallback(*this)); });
}

bool Marklet::ReadProperties(PropertyBag& bag) {
  bool whole = true;
  const auto load = [&](const PropertyRow& row) {
    if (!LoadProperty(bag, row)) whole = false;
  };
  for (const PropertyRow* row : kReadBeforeImages) load(*row);
  if (!ReadImages(bag, state_.Images)) whole = false;
  for (const PropertyRow* row : kReadAfterImages) load(*row);
  // The extended buttons are for systems of that family. The test's first answer on a thread is false
  // everywhere, so that the first control of all never has them. It is taken here in any case: images are
  // then composited by the system's own call from the first paint on.
  IgnoreErrors([&] {
    if (host_.AmbientProperties().UserMode()) host_.StartSubclass(IsWindows2000Family());
  });
  for (const PropertyRow* row : kReadLast) load(*row);
  MatchAccessKeys();
  RedrawNow();
  UpdateColorFlag();
  return whole;
}

bool Marklet::WriteProperties(PropertyBag& bag) {
  bool whole = true;
  for (const PropertyRow* row : kWritten)
    if (!SaveProperty(bag, *row)) whole = false;
  return WriteImages(bag, state_.Images) && whole;
}

}  // namespace marklet
