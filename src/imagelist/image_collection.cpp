#include "imagelist/image_collection.h"

#include <algorithm>

namespace marklet {
namespace {

constexpr char16_t Shift(char16_t ch, int by) { return static_cast<char16_t>(ch + by); }

// Lower case of the Latin, Greek and Cyrillic capitals; every other unit as it is.
char16_t FoldCase(char16_t ch) {
  struct Range {
    char16_t first, last;
    int shift;
  };
  static constexpr Range kCapitals[] = {{u'A', u'Z', 32},     {0x00C0, 0x00D6, 32}, {0x00D8, 0x00DE, 32},
                                        {0x0391, 0x03A1, 32}, {0x03A3, 0x03AB, 32}, {0x0400, 0x040F, 80},
                                        {0x0410, 0x042F, 32}};
  for (const Range& range : kCapitals)
    if (ch >= range.first && ch <= range.last) return Shift(ch, range.shift);
  return ch;
}

}  // namespace

bool ImageCollection::LessWithoutCase::operator()(std::u16string_view a, std::u16string_view b) const {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char16_t x, char16_t y) { return FoldCase(x) < FoldCase(y); });
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved into the map
bool ImageCollection::Add(std::u16string key, ImageRef image) {
  // So that nothing fails behind the insertion.
  if (order_.size() == order_.capacity()) order_.reserve(2 * order_.size() + 1);
  const auto [place, is_new] = keys_.try_emplace(std::move(key), std::move(image));
  if (is_new) order_.push_back(place);
  return is_new;
}

ImageRef ImageCollection::Item(std::u16string_view key) const {
  const auto found = keys_.find(key);
  return found == keys_.end() ? nullptr : found->second;
}

ImageRef ImageCollection::Item(Long position) const {
  if (position < 1 || position > Count()) return nullptr;
  return order_[static_cast<std::size_t>(position) - 1]->second;
}

bool ImageCollection::Remove(std::u16string_view key) {
  const auto found = keys_.find(key);
  if (found == keys_.end()) return false;
  order_.erase(std::find(order_.begin(), order_.end(), Keys::const_iterator(found)));
  keys_.erase(found);
  return true;
}

}  // namespace marklet
