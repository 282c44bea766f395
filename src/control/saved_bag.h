// A property bag as one piece of bytes: what a stream and a storage hold of a control. The same values give
// the same bytes on every platform. docs/saved-format.md tells every byte.
//
// Bytes from outside may be anything. Reading them takes time and memory in proportion to their number,
// whatever they say.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "control/saved_value.h"
#include "host/property_bag.h"

namespace marklet {

class SavedBag final : public PropertyBag {
 public:
  static constexpr std::size_t kHeaderBytes = 16;

  enum class State {
    Whole,
    Damaged,  // it can be read as far as it goes
    TooNew,   // of a version that this one doesn't know how to read; the bag is empty
    NotABag,  // something else; the bag is empty
  };

  SavedBag();

  // How many bytes follow a header: for readers of a stream in which something else follows. `header` has
  // kHeaderBytes. Nothing when it is none that Read could make sense of; `state` then says why.
  static std::optional<std::uint64_t> BytesAfter(std::span<const std::uint8_t> header, State& state);

  // Replaces what the bag holds. Bytes past the end are passed over.
  State Read(std::vector<std::uint8_t> bytes);
  // All that the bag holds.
  const std::vector<std::uint8_t>& Bytes();

  // The first of that name.
  std::optional<BagValue> ReadProperty(std::string_view name, BagType type) override;
  // Leaves nothing out, so that what was saved doesn't depend on what the defaults were. Throws
  // std::length_error for a name or value that the format can't hold; the bag is then as it was.
  void WriteProperty(std::string_view name, const BagValue& value, const BagValue& fallback) override;
  void WriteBytes(std::string_view name, const ByteArray& bytes) override;

 private:
  struct Record {
    std::size_t name, value;  // where they begin
    std::uint32_t value_bytes;
    std::uint8_t name_bytes, type;
  };
  std::string_view NameOf(const Record& record) const;
  bool ReadRecords(std::size_t end);
  template <class Put>
  void Append(std::string_view name, SavedType type, Put put);
  template <class Put>
  void AppendRecord(std::string_view name, SavedType type, Put put);
  void Seal();
  void SortRecords();

  std::vector<std::uint8_t> bytes_;
  std::vector<Record> records_;
  bool sorted_ = true, sealed_ = false;
};

}  // namespace marklet
