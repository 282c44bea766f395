#include "control/saved_extent.h"

#include <cstdint>
#include <string_view>

namespace marklet {
namespace {

constexpr std::string_view kWidthName = "ExtentWidth", kHeightName = "ExtentHeight";

constexpr Long kLongestSide = 1'000'000;
constexpr std::int64_t kLargestArea = std::int64_t{200'000} * 200'000;  // 2 metres square

std::optional<Long> ReadSide(PropertyBag& bag, std::string_view name) {
  const std::optional<BagValue> value = bag.ReadProperty(name, BagType::I4);
  const Long* const side = value ? std::get_if<Long>(&*value) : nullptr;
  return side && *side >= 0 && *side <= kLongestSide ? std::optional(*side) : std::nullopt;
}

}  // namespace

void WriteExtent(PropertyBag& bag, SavedExtent extent) {
  bag.WriteProperty(kWidthName, extent.width, BagValue());
  bag.WriteProperty(kHeightName, extent.height, BagValue());
}

std::optional<SavedExtent> ReadExtent(PropertyBag& bag) {
  const std::optional<Long> width = ReadSide(bag, kWidthName), height = ReadSide(bag, kHeightName);
  if (!width || !height || std::int64_t{*width} * *height > kLargestArea) return std::nullopt;
  return SavedExtent{*width, *height};
}

}  // namespace marklet
