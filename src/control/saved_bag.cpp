#include "control/saved_bag.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <stdexcept>
#include <utility>

#include "base/byte_order.h"
#include "base/byte_reader.h"
#include "base/crc32.h"

namespace marklet {
namespace {

// The last character keeps the file from being shown as text.
constexpr std::uint8_t kMagic[] = {'M', 'a', 'r', 'k', 'l', 'e', 't', 0x1A};
constexpr std::uint16_t kMajor = 1, kMinor = 1;
constexpr std::size_t kLengthAt = 12, kChecksumBytes = 4;
constexpr std::size_t kLongestName = 255;

}  // namespace

SavedBag::SavedBag() : bytes_(std::begin(kMagic), std::end(kMagic)) {
  AppendU16(bytes_, kMajor);
  AppendU16(bytes_, kMinor);
  AppendU32(bytes_, 0);
}

// --- Reading ----------------------------------------------------------------------------------------------

std::optional<std::uint64_t> SavedBag::BytesAfter(std::span<const std::uint8_t> header, State& state) {
  ByteReader reader(header);
  const auto magic = reader.Take(std::size(kMagic));
  const std::uint16_t major = reader.U16();
  reader.U16();  // a later minor version only adds what this one passes over
  const std::uint32_t length = reader.U32();
  if (reader.Overran() || !std::equal(magic.begin(), magic.end(), std::begin(kMagic)) || major == 0)
    state = State::NotABag;
  else if (major > kMajor)
    state = State::TooNew;
  else
    return std::uint64_t{length} + kChecksumBytes;
  return std::nullopt;
}

SavedBag::State SavedBag::Read(std::vector<std::uint8_t> bytes) {
  *this = SavedBag();
  State state = State::Whole;
  const auto header = std::span(bytes).first(std::min(bytes.size(), kHeaderBytes));
  const std::optional<std::uint64_t> rest = BytesAfter(header, state);
  if (!rest) return state;
  bytes_ = std::move(bytes);
  const std::uint64_t whole = kHeaderBytes + *rest;
  if (bytes_.size() < whole) {
    ReadRecords(bytes_.size());
    return State::Damaged;
  }
  const std::size_t end = static_cast<std::size_t>(whole) - kChecksumBytes;
  const auto checked = std::span(std::as_const(bytes_)).first(end);
  const bool as_written = Crc32(checked) == ByteReader(std::span(bytes_).subspan(end)).U32();
  const bool sound = ReadRecords(end);
  return as_written && sound ? State::Whole : State::Damaged;
}

// False when something is wrong with one. A value that is none stays in the bag as one that can't be had;
// where a length is wrong nothing after it can be found.
bool SavedBag::ReadRecords(std::size_t end) {
  ByteReader reader(std::span(std::as_const(bytes_)).subspan(kHeaderBytes, end - kHeaderBytes));
  bool sound = true;
  std::size_t good_end = kHeaderBytes;
  while (reader.Left() > 0) {
    Record record = {};
    record.type = reader.U8();
    record.name_bytes = reader.U8();
    record.name = end - reader.Left();
    reader.Take(record.name_bytes);
    record.value_bytes = reader.U32();
    record.value = end - reader.Left();
    const auto value = reader.Take(record.value_bytes);
    if (reader.Overran()) {
      sound = false;
      break;
    }
    sound = sound && record.name_bytes > 0 && IsSavedValue(record.type, value);
    records_.push_back(record);
    good_end = end - reader.Left();
  }
  sorted_ = false;
  bytes_.resize(good_end);
  return sound;
}

std::string_view SavedBag::NameOf(const Record& record) const {
  return {reinterpret_cast<const char*>(bytes_.data()) + record.name, record.name_bytes};
}

void SavedBag::SortRecords() {
  if (sorted_) return;
  std::stable_sort(records_.begin(), records_.end(),
                   [this](const Record& a, const Record& b) { return NameOf(a) < NameOf(b); });
  sorted_ = true;
}

std::optional<BagValue> SavedBag::ReadProperty(std::string_view name, BagType type) {
  SortRecords();
  const auto found = std::lower_bound(
      records_.begin(), records_.end(), name,
      [this](const Record& record, std::string_view wanted) { return NameOf(record) < wanted; });
  if (found == records_.end() || NameOf(*found) != name) return std::nullopt;
  return Converted(ReadValue(found->type, std::span(bytes_).subspan(found->value, found->value_bytes)), type);
}

// --- Writing ----------------------------------------------------------------------------------------------

void SavedBag::WriteProperty(std::string_view name, const BagValue& value, const BagValue& /*fallback*/) {
  if (value.index() == 0) return;
  Append(name, SavedTypeOf(value), [&] { AppendValue(bytes_, value); });
}

void SavedBag::WriteBytes(std::string_view name, const ByteArray& bytes) {
  Append(name, SavedType::Bytes, [&] { AppendArray(bytes_, bytes); });
}

// `put` appends the value's bytes to the others.
template <class Put>
void SavedBag::Append(std::string_view name, SavedType type, Put put) {
  if (sealed_) {
    bytes_.resize(bytes_.size() - kChecksumBytes);
    sealed_ = false;
  }
  const std::size_t before = bytes_.size();
  try {
    AppendRecord(name, type, put);
  } catch (...) {
    bytes_.resize(before);
    throw;
  }
}

template <class Put>
void SavedBag::AppendRecord(std::string_view name, SavedType type, Put put) {
  if (name.empty() || name.size() > kLongestName) throw std::length_error("a name that can't be saved");
  const std::size_t start = bytes_.size();
  AppendU8(bytes_, static_cast<std::uint8_t>(type));
  AppendU8(bytes_, static_cast<std::uint32_t>(name.size()));
  bytes_.insert(bytes_.end(), name.begin(), name.end());
  const std::size_t length_at = bytes_.size();
  AppendU32(bytes_, 0);
  put();
  if (bytes_.size() - kHeaderBytes > std::numeric_limits<std::uint32_t>::max())
    throw std::length_error("more than can be saved");
  const std::size_t value_at = length_at + 4;
  const auto value_bytes = static_cast<std::uint32_t>(bytes_.size() - value_at);
  records_.push_back(
      {start + 2, value_at, value_bytes, static_cast<std::uint8_t>(name.size()), bytes_[start]});
  sorted_ = false;
  StoreLittleEndian(&bytes_[length_at], value_bytes);
}

const std::vector<std::uint8_t>& SavedBag::Bytes() {
  if (!sealed_) Seal();
  return bytes_;
}

void SavedBag::Seal() {
  StoreLittleEndian(&bytes_[kLengthAt], static_cast<std::uint32_t>(bytes_.size() - kHeaderBytes));
  AppendU32(bytes_, Crc32(bytes_));
  sealed_ = true;
}

}  // namespace marklet
