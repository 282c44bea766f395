#include "imagelist/owned_images.h"

#include "base/ignore_errors.h"

namespace marklet {

ImageRef LoadImageIntoList(ImagesRef& images, UserControl& host, std::u16string_view file,
                           std::u16string_view key) {
  ImageRef image;
  IgnoreErrors([&] {
    const auto loaded = std::make_shared<CIconBytes>();
    if (!images) images = std::make_shared<ImageCollection>();
    loaded->LoadFromFile(file);
    loaded->PutKey(std::u16string(key));
    image = loaded;
    // A message box of the load may have taken the list away.
    if (images) images->Add(std::u16string(key), loaded);
  });
  IgnoreErrors([&] { host.PropertyChanged({}); });
  return image;
}

void RemoveImage(const ImagesRef& images, UserControl& host, std::u16string_view key) {
  if (!images) return;
  IgnoreErrors([&] { images->Remove(key); });
  IgnoreErrors([&] { host.PropertyChanged({}); });
}

}  // namespace marklet
