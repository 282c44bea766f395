// The control as an owner of images.
#include "base/ignore_errors.h"
#include "control/marklet.h"
#include "imagelist/key_rules.h"
#include "imagelist/owned_images.h"

namespace marklet {
namespace {

constexpr std::size_t kShortestFileName = 3;

}  // namespace

bool Marklet::LoadIconImageFromFile(std::u16string_view file, std::u16string_view key) {
  bool loaded = false;
  IgnoreErrors([&] {
    if (file.size() < kShortestFileName || key.empty()) return;
    if (StartsWithDigit(key) || !ImageKeyFree(key)) return;
    LoadImageIntoList(file, key);
    loaded = !ImageKeyFree(key);
  });
  return loaded;
}

bool Marklet::ImageKeyFree(std::u16string_view key) const {
  return !state_.Images || state_.Images->Item(key) == nullptr;
}

ImageRef Marklet::LoadImageIntoList(std::u16string_view file, std::u16string_view key) {
  return marklet::LoadImageIntoList(state_.Images, host_, file, key);
}

void Marklet::DeleteIconImage(std::u16string_view key) { RemoveImage(state_.Images, host_, key); }

void Marklet::DestroyIconByteCollectionData() {
  state_.Images.reset();
  IgnoreErrors([this] { state_.Images = std::make_shared<ImageCollection>(); });
}

}  // namespace marklet
