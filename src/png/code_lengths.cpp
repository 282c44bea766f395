#include "png/code_lengths.h"

#include <cstring>

#include "base/processor.h"

namespace marklet::png {
namespace {

constexpr unsigned kMostBits = 14;  // of a length and how often it comes
constexpr int kInARow = 4;          // between two refills
static_assert(kInARow * kMostBits <= FastBits::kRefilled);

}  // namespace

[[gnu::always_inline]] inline bool CodeLengths::AddRun(std::size_t& count, std::uint32_t entry,
                                                       std::size_t repeats) {
  if ((RepeatsLast(entry) && count == 0) || repeats > total_ - count) return false;
  std::uint8_t* const to = &lengths_[count];
  const std::uint64_t length = RepeatsLast(entry) ? to[-1] : 0u, eight_times = length * 0x0101010101010101;
  StoreLittleEndian(to, eight_times);
  StoreLittleEndian(to + 8, eight_times);
  if (repeats > kFewRepeats) std::memset(to, static_cast<int>(length), repeats);
  count += repeats;
  return true;
}

bool CodeLengths::Add(std::uint32_t entry, std::uint32_t value) {
  if ((entry & kEntryMatch) != 0) return AddRun(count_, entry, value);
  lengths_[count_++] = static_cast<std::uint8_t>(EntryValue(entry));
  return true;
}

// Count and bits are copied, so that they stay in registers.
[[gnu::always_inline]] inline bool CodeLengths::AddManyInline(const CodeTable& table, FastBits& bits_now) {
  const RootEntries roots = table.roots();
  FastBits bits = bits_now;
  std::size_t count = count_;
  const std::size_t total = total_;
  while (total - count >= 2 && bits.Refill(kInARow * kMostBits))
    for (int i = 0; i < kInARow && total - count >= 2; ++i) {
      const std::uint32_t entry = roots.For(bits.bits());
      if ((entry & kEntryMatch) == 0) {
        StoreLittleEndian(&lengths_[count], static_cast<std::uint16_t>(EntryValue(entry)));
        count += 1 + PairBit(entry);
      } else if (!AddRun(count, entry, EntryValueWithExtra(entry, bits.bits()))) {
        return false;
      }
      bits.Drop(entry);
    }
  bits_now = bits;
  count_ = count;
  return true;
}

bool CodeLengths::AddManyPlain(const CodeTable& table, FastBits& bits) { return AddManyInline(table, bits); }

#if MARKLET_HAS_BMI2_PATH
MARKLET_BMI2 bool CodeLengths::AddManyBmi2(const CodeTable& table, FastBits& bits) {
  return AddManyInline(table, bits);
}
#endif

bool CodeLengths::AddMany(const CodeTable& table, FastBits& bits) {
#if MARKLET_HAS_BMI2_PATH
  if (TakesBmi2()) return AddManyBmi2(table, bits);
#endif
  return AddManyPlain(table, bits);
}

}  // namespace marklet::png
