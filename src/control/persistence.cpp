// Saved forms: which keys are written and read, in which order. What stands under a key is in the property
// table.
#include <string>
#include <type_traits>
#include <utility>

#include "base/ignore_errors.h"
#include "control/marklet.h"
#include "control/text_bytes.h"
#include "imagelist/owned_images.h"
#include "platform/shared/os_tests.h"

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

}  // namespace

// --- Properties -------------------------------------------------------------------------------------------

bool Marklet::LoadProperty(PropertyBag& bag, std::string_view key) {
  bool stored = true;
  const bool read_out = IgnoreErrors([&] {
    const PropertyRow& row = *FindSaved(key);
    const auto read = bag.ReadProperty(key, row.saved.type);
    const Value value = FromBag(read ? *read : row.saved.fallback(*this));
    if (!HoldsType(value, row.type)) return;  // the field stays as it is
    if (row.saved.store != nullptr)
      row.saved.store(*this, value);
    else
      stored = TrySet(row, value);
  });
  return read_out && stored;
}

bool Marklet::SaveProperty(PropertyBag& bag, std::string_view key) {
  return IgnoreErrors([&] {
    const SavedAs& saved = FindSaved(key)->saved;
    bag.WriteProperty(key, ToBag(saved.get(*this), saved.type), saved.fallback(*this));
  });
}

bool Marklet::ReadProperties(PropertyBag& bag) {
  bool whole = true;
  const auto load = [&](std::string_view key) {
    if (!LoadProperty(bag, key)) whole = false;
  };
  for (const std::string_view key : kReadBeforeImages) load(key);
  if (!ReadImages(bag, state_.Images)) whole = false;
  for (const std::string_view key : kReadBehindImages) load(key);
  // The first answer is false on any system. A loaded control takes it here, so that its images are
  // composited by the system's own call from the first paint on, where there is one.
  IgnoreErrors([&] {
    if (host_.AmbientProperties().UserMode()) IsWindows2000Family();
  });
  load("AutoSize");  // measures with all the rest in place
  MatchAccessKeys();
  RedrawNow();
  UpdateColorFlag();
  return whole;
}

bool Marklet::WriteProperties(PropertyBag& bag) {
  bool whole = true;
  for (const std::string_view key : kWritten)
    if (!SaveProperty(bag, key)) whole = false;
  return WriteImages(bag, state_.Images) && whole;
}

}  // namespace marklet
