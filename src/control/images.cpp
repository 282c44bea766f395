// The control as an owner of images.
#include "control/marklet.h"
#include "platform/ignore_errors.h"

namespace marklet {
namespace {

// File names are tested by their bytes: 5 is three characters, two to a character.
constexpr std::size_t kShortestFileBytes = 5;

bool StartsWithDigit(std::u16string_view key) { return key.front() >= u'0' && key.front() <= u'9'; }

}  // namespace

bool Marklet::LoadIconImageFromFile(std::u16string_view file, std::u16string_view key) {
  bool loaded = false;
  IgnoreErrors([&] {
    if (file.size() * sizeof(char16_t) < kShortestFileBytes || key.empty()) return;
    if (StartsWithDigit(key)) return;
    if (state_.Images && state_.Images->Item(key)) return;
    LoadImageIntoList(file, key);
    loaded = state_.Images && state_.Images->Item(key) != nullptr;
  });
  return loaded;
}

// No file format is read so far, so that nothing joins the list; the host is told of a change all the same.
void Marklet::LoadImageIntoList(std::u16string_view /*file*/, std::u16string_view /*key*/) {
  if (!state_.Images) state_.Images = std::make_shared<ImageCollection>();
  IgnoreErrors([this] { host_.PropertyChanged({}); });
}

void Marklet::DeleteIconImage(std::u16string_view key) {
  if (!state_.Images) return;
  IgnoreErrors([&] { state_.Images->Remove(key); });
  IgnoreErrors([this] { host_.PropertyChanged({}); });
}

void Marklet::DestroyIconByteCollectionData() {
  state_.Images.reset();
  IgnoreErrors([this] { state_.Images = std::make_shared<ImageCollection>(); });
}

ImageRef Marklet::LoadIconByteImageFromDisk(std::u16string_view /*file*/, std::u16string_view /*key*/) {
  return nullptr;
}

}  // namespace marklet
