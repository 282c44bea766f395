// The images of a saved form.
#include <string>
#include <utility>

#include "base/ignore_errors.h"
#include "imagelist/owned_images.h"

namespace marklet {
namespace {

std::string KeyName(Long image) { return "IcoBytesKey_" + std::to_string(image); }

std::string CellName(Long size, Long depth, Long image) {
  return "IconBytesJ" + std::to_string(size) + "K" + std::to_string(depth) + "_" + std::to_string(image);
}

template <class Visit>
void ForEachCell(Visit visit) {
  for (Long size = 0; size < CIconBytes::kSizes; ++size)
    for (Long depth = 0; depth < CIconBytes::kDepths; ++depth) visit(size, depth);
}

// A cell without bytes isn't kept, and neither is one of a single byte.
bool Kept(const ByteArray& cell) { return cell.UpperBound() > 0; }

// Reads one image into `image`; false when the bag holds nothing of it, whatever it answers in place of that.
// `whole` becomes false when something can't be had for a failure.
bool ReadImage(PropertyBag& bag, Long number, CIconBytes& image, bool& whole) {
  bool found = false;
  const auto read_key = [&] {
    const auto key = bag.ReadProperty(KeyName(number), BagType::Text);
    if (!key || !std::holds_alternative<std::u16string>(*key)) return;
    image.PutKey(std::get<std::u16string>(*key));
    found = !image.Key().empty();
  };
  if (!IgnoreErrors(read_key)) whole = false;
  ForEachCell([&](Long size, Long depth) {
    const auto read_cell = [&] {
      auto cell = bag.ReadProperty(CellName(size, depth, number), BagType::Bytes);
      if (!cell || !std::holds_alternative<ByteArray>(*cell) || !Kept(std::get<ByteArray>(*cell))) return;
      image.SetBytes(size, depth, std::move(std::get<ByteArray>(*cell)));
      found = true;
    };
    if (!IgnoreErrors(read_cell)) whole = false;
  });
  return found;
}

bool WriteImage(PropertyBag& bag, Long number, const CIconBytes& image) {
  bool whole = IgnoreErrors([&] { bag.WriteProperty(KeyName(number), image.Key(), std::u16string()); });
  ForEachCell([&](Long size, Long depth) {
    const auto write = [&] {
      const ByteArray& cell = image.GetBytes(size, depth);
      if (Kept(cell)) bag.WriteBytes(CellName(size, depth, number), cell);
    };
    if (!IgnoreErrors(write)) whole = false;
  });
  return whole;
}

}  // namespace

// The count says how many images to look for, and may say anything. A saved form has no gaps: where this many
// aren't there, the count is wrong.
bool ReadImages(PropertyBag& bag, ImagesRef& images) {
  constexpr Long kMostAbsent = 100;
  Long count = 0;
  bool whole = IgnoreErrors([&] {
    const auto read = bag.ReadProperty("NumOfIconBytes", BagType::I4);
    if (read && std::holds_alternative<Long>(*read)) count = std::get<Long>(*read);
  });
  images.reset();
  if (!IgnoreErrors([&] { images = std::make_shared<ImageCollection>(); })) whole = false;
  Long absent = 0;
  for (Long i = 1; i <= count && absent < kMostAbsent; ++i) {
    const auto read = [&] {
      const auto image = std::make_shared<CIconBytes>();
      if (!ReadImage(bag, i, *image, whole)) ++absent;
      if (images) images->Add(image->Key(), image);  // a key that is taken keeps its image
    };
    if (!IgnoreErrors(read)) whole = false;
  }
  return whole;
}

bool WriteImages(PropertyBag& bag, const ImagesRef& list) {
  const ImagesRef images = list;  // the bag may be the host's own code
  if (!images) return true;
  bool whole = IgnoreErrors([&] { bag.WriteProperty("NumOfIconBytes", images->Count(), std::int16_t{0}); });
  for (Long i = 1; i <= images->Count(); ++i)
    if (const ImageRef image = images->Item(i))
      if (!WriteImage(bag, i, *image)) whole = false;
  return whole;
}

}  // namespace marklet
