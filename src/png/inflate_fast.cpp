#include "png/inflate_fast.h"

#include "base/processor.h"
#include "png/match_copy.h"

namespace marklet::png {
namespace {

// Writes two bytes and counts one or both.
[[gnu::always_inline]] inline std::uint8_t* PutLiteral(std::uint8_t* out, std::uint32_t entry) {
  StoreLittleEndian(out, static_cast<std::uint16_t>(EntryValue(entry)));
  return out + 1 + PairBit(entry);
}

// Bits of the longest things that are taken between two refills, each with those that find the next root
// entry: two literals and a third one or a length, and a distance.
constexpr unsigned kRootBits = CodeTable::kMaxRootBits;
constexpr unsigned kLengthBits = 2 * kRootBits + kMaxCodeLength + kRootBits;
constexpr unsigned kDistanceBits = kMaxCodeLength + 14 + kRootBits;
static_assert(kLengthBits >= 2 * kRootBits + kMaxCodeLength + 5 && kLengthBits <= FastBits::kRefilled);

struct Match {
  std::size_t length, distance;
};

// Takes a match whose length has the entry `entry`. False where the input ends first.
[[gnu::always_inline]] inline bool TakeMatch(std::uint32_t entry, const CodeTable& distances,
                                             RootEntries roots, FastBits& bits, Match& match) {
  match.length = EntryValueWithExtra(entry, bits.bits());
  bits.Drop(entry);
  if (!bits.Refill(kDistanceBits)) return false;
  std::uint32_t distance_entry = roots.For(bits.bits());
  if (distance_entry == 0) [[unlikely]]
    distance_entry = distances.FindLong(bits.bits());
  match.distance = EntryValueWithExtra(distance_entry, bits.bits());
  bits.Drop(distance_entry);
  return true;
}

// All state is in locals: a store to the output could change anything that lies in memory.
[[gnu::always_inline]] inline bool RunInline(FastRun& run) {
  const RootEntries literals = run.literals.roots(), distances = run.distances.roots();
  const std::uint8_t *const out_first = run.out_first, *const out_end = run.out_end,
                            *const out_limit = run.out_limit;
  FastBits bits = run.bits;
  std::uint8_t* out = run.out;
  bool ended = false;
  bool enough = bits.Refill(kLengthBits);
  // The next entry is always looked up before more bits come in, so as not to wait for them.
  std::uint32_t entry = literals.For(bits.bits());
  for (; enough && out < out_end; enough = bits.Refill(kLengthBits)) {
    if (entry & kEntryLiteral) {
      bits.Drop(entry);
      out = PutLiteral(out, entry);
      entry = literals.For(bits.bits());
      if (entry & kEntryLiteral) {
        bits.Drop(entry);
        out = PutLiteral(out, entry);
        entry = literals.For(bits.bits());
        if (entry & kEntryLiteral) {
          bits.Drop(entry);
          out = PutLiteral(out, entry);
          entry = literals.For(bits.bits());
          continue;
        }
      }
    }
    if (!(entry & kEntryMatch)) [[unlikely]] {
      if (entry == 0) entry = run.literals.FindLong(bits.bits());
      if (entry & kEntryLiteral) {
        bits.Drop(entry);
        out = PutLiteral(out, entry);
        entry = literals.For(bits.bits());
        continue;
      }
      if (entry & kEntryEnd) {
        bits.Drop(entry);
        ended = true;
        break;
      }
    }
    const FastBits before = bits;
    Match match;
    if (!TakeMatch(entry, run.distances, distances, bits, match) ||
        match.distance > static_cast<std::size_t>(out - out_first) ||
        match.length > static_cast<std::size_t>(out_limit - out)) [[unlikely]] {
      bits = before;
      break;
    }
    entry = literals.For(bits.bits());
    CopyMatchFast(out, match.distance, match.length);
    out += match.length;
  }
  bits.Settle();
  run.bits = bits;
  run.out = out;
  return ended;
}

bool RunPlain(FastRun& run) { return RunInline(run); }

#if MARKLET_HAS_BMI2_PATH
MARKLET_BMI2 bool RunBmi2(FastRun& run) { return RunInline(run); }
#endif

}  // namespace

bool FastRun::Run() {
#if MARKLET_HAS_BMI2_PATH
  if (TakesBmi2()) return RunBmi2(*this);
#endif
  return RunPlain(*this);
}

}  // namespace marklet::png
