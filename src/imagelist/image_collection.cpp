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

bool SameKey(std::u16string_view a, std::u16string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return FoldCase(x) == FoldCase(y); });
}

}  // namespace

std::vector<ImageCollection::Entry>::const_iterator ImageCollection::Find(std::u16string_view key) const {
  return std::find_if(entries_.begin(), entries_.end(),
                      [key](const Entry& entry) { return SameKey(entry.key, key); });
}

bool ImageCollection::Add(std::u16string key, ImageRef image) {
  if (Find(key) != entries_.end()) return false;
  entries_.push_back({std::move(key), std::move(image)});
  return true;
}

ImageRef ImageCollection::Item(std::u16string_view key) const {
  const auto found = Find(key);
  return found == entries_.end() ? nullptr : found->image;
}

ImageRef ImageCollection::Item(Long position) const {
  if (position < 1 || position > Count()) return nullptr;
  return entries_[static_cast<std::size_t>(position) - 1].image;
}

bool ImageCollection::Remove(std::u16string_view key) {
  const auto found = Find(key);
  if (found == entries_.end()) return false;
  entries_.erase(found);
  return true;
}

}  // namespace marklet
