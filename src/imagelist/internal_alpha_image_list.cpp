#include "imagelist/internal_alpha_image_list.h"

#include "base/ignore_errors.h"

namespace marklet {

void InternalAlphaImageList::ClearIcons() {
  images_.reset();
  IgnoreErrors([this] { images_ = std::make_shared<ImageCollection>(); });
}

ImageRef InternalAlphaImageList::LoadImageIntoList(std::u16string_view file, std::u16string_view key) {
  IgnoreErrors([&] { file_name_ = file; });
  return marklet::LoadImageIntoList(images_, host_, file, key);
}

}  // namespace marklet
