// InternalAlphaImageList: the hidden control that holds images for controls without a list of their own. It
// is created as a constituent of another control, which is its host, and never by itself.
#pragma once

#include <string>
#include <string_view>

#include "host/property_bag.h"
#include "host/user_control.h"
#include "imagelist/owned_images.h"
#include "imagelist/owner_theme.h"

namespace marklet {

// No call throws: a failing step is skipped. The list is null until one of InitProperties, ReadProperties and
// LoadImageIntoList makes it. Keys are taken as given.
class InternalAlphaImageList {
 public:
  explicit InternalAlphaImageList(UserControl& host) : host_(host) {}  // `host` outlives the list

  void InitProperties() { ClearIcons(); }
  bool ReadProperties(PropertyBag& bag) { return ReadImages(bag, images_); }
  bool WriteProperties(PropertyBag& bag) { return WriteImages(bag, images_); }

  // Null when there is no such image.
  ImageRef GetIcoBytes(std::u16string_view key) const { return images_ ? images_->Item(key) : nullptr; }
  void ClearIcons();
  void RemoveIcon(std::u16string_view key) { RemoveImage(images_, host_, key); }
  ImageRef LoadImageIntoList(std::u16string_view file, std::u16string_view key);
  // The list itself.
  ImagesRef IconCollection() const { return images_; }
  // The colours of the desktop's scheme for the page's strip.
  ThemeColours ThemeColors() { return OwnerThemeColours(host_); }
  // The file of the image added last.
  const std::u16string& FileName() const { return file_name_; }

 private:
  UserControl& host_;
  std::u16string file_name_;
  ImagesRef images_;
};

}  // namespace marklet
