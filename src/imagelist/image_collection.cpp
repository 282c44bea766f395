#include "imagelist/image_collection.h"

#include <algorithm>

#include "platform/system.h"

namespace marklet {
bool ImageCollection::LessWithoutCase::operator()(std::u16string_view a, std::u16string_view b) const {
  return CompareStringOrdinal(a, b) < 0;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): it is moved into the map
bool ImageCollection::Add(std::u16string key, ImageRef image) {
  // So that nothing fails after the insertion.
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
