// A property bag in memory: remembers what was written, in order, and hands out what a test put in.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "host/property_bag.h"

namespace marklet::testing {

class MemoryBag final : public PropertyBag {
 public:
  struct Entry {
    std::string name;
    BagValue value, fallback;
  };
  std::vector<Entry> entries;      // in the order of writing
  std::vector<std::string> asked;  // the names read, in order

  void Put(std::string_view name, BagValue value) {
    entries.push_back({std::string(name), std::move(value), {}});
  }
  const Entry* Find(std::string_view name) const {
    const auto found =
        std::find_if(entries.begin(), entries.end(), [&](const Entry& e) { return e.name == name; });
    return found == entries.end() ? nullptr : &*found;
  }
  void Remove(std::string_view name) {
    std::erase_if(entries, [&](const Entry& e) { return e.name == name; });
  }

  // Converts between the numbers only, as far as tests need it.
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override {
    asked.emplace_back(name);
    const Entry* entry = Find(name);
    if (!entry) return std::nullopt;
    if (entry->value.index() == static_cast<std::size_t>(type) + 1) return entry->value;
    if (const auto* number = std::get_if<std::int16_t>(&entry->value); number && type == BagType::I4)
      return Long{*number};
    return BagValue();
  }
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override {
    entries.push_back({std::string(name), value, fallback});
  }
};

}  // namespace marklet::testing
