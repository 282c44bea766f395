#include "png/code_lengths.h"

#include <cstring>

#include "png/processor.h"

namespace marklet::png {
namespace {

constexpr unsigned kMostBits = 14;  // of a length and how often it comes
constexpr int kInARow = 4;          // between two refills
static_assert(kInARow * kMostBits <= FastBits::kRefilled);

void StoreEightTimes(unsigned two_lengths, std::uint8_t* to) {
  const std::uint64_t four_times = std::uint64_t{two_lengths} * 0x0001000100010001;
  StoreLittleEndian(to, four_times);
  StoreLittleEndian(to + 8, four_times);
}

void Count(LengthCounts& counts, std::size_t length, std::size_t added) {
  counts[length] = static_cast<std::uint16_t>(counts[length] + added);
}

}  // namespace

LengthCounts CodeLengths::CountsWithout(const LengthCounts& part) const {
  LengthCounts rest;
  for (std::size_t length = 0; length < rest.size(); ++length)
    rest[length] = static_cast<std::uint16_t>(counts_[length] + second_counts_[length] - part[length]);
  return rest;
}

[[gnu::always_inline]] inline bool CodeLengths::AddAt(Place& place, std::uint32_t entry,
                                                      std::uint32_t value) {
  const bool is_run = (entry & kEntryMatch) != 0;
  const std::size_t pair = (entry & kEntryPair) != 0 ? 1 : 0;
  const std::size_t added = is_run ? value : 1 + pair;
  if ((RepeatsLast(entry) && place.count == 0) || added > total_ - place.count) return false;
  const unsigned repeated = (entry & kEntryEnd) != 0 ? 0u : place.last;
  const unsigned two = is_run ? repeated * 0x101 : EntryValue(entry);
  std::uint8_t* const to = &lengths_[place.count];
  StoreEightTimes(two, to);
  if (added > kFewRepeats) std::memset(to, static_cast<int>(repeated), added);
  Count(counts_, two & 0xFF, added - pair);
  Count(second_counts_, two >> 8, pair);
  place.last = two >> 8 * pair & 0xFF;
  place.count += added;
  return true;
}

bool CodeLengths::Add(std::uint32_t entry, std::uint32_t value) { return AddAt(place_, entry, value); }

// Place and bits are copied, so that they stay in registers.
[[gnu::always_inline]] inline bool CodeLengths::AddManyInline(const CodeTable& table, FastBits& bits_now) {
  const RootEntries roots = table.roots();
  FastBits bits = bits_now;
  Place place = place_;
  bool sound = true;
  while (sound && total_ - place.count >= 2 && bits.Refill(kInARow * kMostBits))
    for (int i = 0; i < kInARow && sound && total_ - place.count >= 2; ++i) {
      const std::uint32_t entry = roots.For(bits.bits());
      sound = AddAt(place, entry, EntryValueWithExtra(entry, bits.bits()));
      bits.Drop(entry);
    }
  bits_now = bits;
  place_ = place;
  return sound;
}

bool CodeLengths::AddManyPlain(const CodeTable& table, FastBits& bits) { return AddManyInline(table, bits); }

#if defined(MARKLET_BMI2)
[[gnu::target("bmi,bmi2")]] bool CodeLengths::AddManyBmi2(const CodeTable& table, FastBits& bits) {
  return AddManyInline(table, bits);
}
#endif

bool CodeLengths::AddMany(const CodeTable& table, FastBits& bits) {
#if defined(MARKLET_BMI2)
  static const bool has_bmi2 = HasBmi2();
  if (has_bmi2) return AddManyBmi2(table, bits);
#endif
  return AddManyPlain(table, bits);
}

}  // namespace marklet::png
