// A host's bag that holds anything under any name, whatever it is asked for.
#include <limits>
#include <map>
#include <new>
#include <string>
#include <utility>

#include "fuzz/fuzzers.h"
#include "fuzz/input_reader.h"
#include "fuzz/loading.h"

namespace marklet {
namespace {

constexpr const char* kNames[] = {"Appearance",
                                  "Alignment",
                                  "BackColor",
                                  "BackStyle",
                                  "BorderStyle",
                                  "Caption",
                                  "Font",
                                  "ForeColor",
                                  "RightToLeft",
                                  "UniToolTipText",
                                  "UseMnemonic",
                                  "Padding",
                                  "Enabled",
                                  "WordWrap",
                                  "EffectColor",
                                  "VerticalAlignment",
                                  "TextEffect",
                                  "ImageSize",
                                  "ImageAlignment",
                                  "ImageKey",
                                  "ImageKeyHover",
                                  "AutoSize",
                                  "NumOfIconBytes",
                                  "IcoBytesKey_1",
                                  "IcoBytesKey_2",
                                  "IcoBytesKey_3",
                                  "IconBytesJ0K4_1",
                                  "IconBytesJ0K3_1",
                                  "IconBytesJ2K4_1",
                                  "IconBytesJ7K4_2",
                                  "IconBytesJ0K0_2",
                                  "IconBytesJ5K1_3"};

constexpr Long kNumbers[] = {0,
                             1,
                             -1,
                             2,
                             3,
                             4,
                             5,
                             7,
                             8,
                             100,
                             2'000'000'000,
                             -2'000'000'000,
                             std::numeric_limits<Long>::max(),
                             std::numeric_limits<Long>::min(),
                             static_cast<Long>(0x8000000F),
                             static_cast<Long>(0x800000FF)};

constexpr double kSizes[] = {8.25, 0, 0.0001, 1, 12.5, 72, 32767};

// A value that fails when it is asked for, beside those that a bag can hold.
struct Throws {};
using Held = std::variant<BagValue, Throws>;

std::u16string ReadText(InputReader& input) {
  std::u16string text;
  for (unsigned left = input.Byte(); left > 0 && !input.Empty(); --left) {
    const char16_t unit = input.Byte();
    text += unit < 0x80 ? unit : static_cast<char16_t>(unit << 8 | input.Byte());
  }
  return text;
}

// The dimensions may be anything; the bytes are as many as they say.
ByteArray ReadArray(InputReader& input) {
  constexpr std::size_t kMostBytes = 4096;
  ByteArray array;
  std::size_t total = 1;
  for (unsigned left = input.Byte() % 5; left > 0; --left) {
    const Long lower = input.Byte() % 4 == 0 ? input.OneOf(kNumbers) : 0;
    const Long count = input.Byte() % 64;
    if (std::int64_t{lower} + count - 1 > std::numeric_limits<Long>::max()) break;
    if (total * static_cast<std::size_t>(count) > kMostBytes) break;
    total *= static_cast<std::size_t>(count);
    array.bounds.push_back({lower, count});
  }
  array.bytes.resize(array.bounds.empty() ? 0 : total);
  for (std::uint8_t& byte : array.bytes) byte = input.Byte();
  return array;
}

FontRef ReadFont(InputReader& input) {
  auto font = std::make_shared<StdFont>();
  font->PutName(ReadText(input));
  font->PutSize(input.OneOf(kSizes));
  font->PutWeight(input.OneOf(kNumbers));
  font->PutItalic(input.Byte() % 2 == 0);
  font->PutCharset(input.Byte());
  return font;
}

Held ReadHeld(InputReader& input) {
  switch (input.Byte() % 9) {
    case 0:
      return BagValue();
    case 1:
      return BagValue(static_cast<std::int16_t>(input.OneOf(kNumbers)));
    case 2:
      return BagValue(input.OneOf(kNumbers));
    case 3:
      return BagValue(input.Byte() % 2 == 0);
    case 4:
      return BagValue(ReadText(input));
    case 5:
    case 6:
      return BagValue(ReadArray(input));
    case 7:
      return BagValue(input.Byte() % 8 == 0 ? FontRef() : ReadFont(input));
    default:
      return Throws();
  }
}

class AnyBag final : public PropertyBag {
 public:
  explicit AnyBag(InputReader& input) {
    while (!input.Empty()) {
      const char* name = input.OneOf(kNames);
      held_.insert_or_assign(name, ReadHeld(input));
    }
  }
  std::optional<BagValue> ReadProperty(std::string_view name, BagType) override {
    const auto found = held_.find(std::string(name));
    if (found == held_.end()) return std::nullopt;
    if (std::holds_alternative<Throws>(found->second)) throw std::bad_alloc();
    return std::get<BagValue>(found->second);
  }
  void WriteProperty(std::string_view, const BagValue&, const BagValue&) override {}

 private:
  std::map<std::string, Held> held_;
};

}  // namespace

void FuzzPropertyBag(std::span<const std::uint8_t> bytes) {
  InputReader input(bytes);
  const bool paints = input.Byte() % 4 == 0;
  AnyBag bag(input);
  LoadAndSaveAgain(bag, paints);
}

}  // namespace marklet
