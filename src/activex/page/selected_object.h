// An object that a designer has selected, as the page's flows know it.
#pragma once

#include <memory>

#include "activex/automation/image_owner.h"
#include "imagelist/image_page_view.h"

namespace marklet::activex::page {

// It may be anybody's, and fail every call. Its images are there when they are this module's own; of an owner
// elsewhere only deletions arrive.
class SelectedObject final : public PageObject {
 public:
  explicit SelectedObject(ComPtr<IUnknown> object) : object_(std::move(object)) {}

  ISupportsAlphaImage* AlphaImages() override;
  InternalAlphaImageList* HiddenList() override;
  ImageRef LoadImageIntoLabel(std::u16string_view file, std::u16string_view key) override;

 private:
  // `_ISupportsAlphaImage` behind the interface of the logic. A call that fails does nothing.
  class Owner final : public ISupportsAlphaImage {
   public:
    explicit Owner(ComPtr<IImageOwner> owner) : owner_(std::move(owner)) {}
    void DestroyIconByteCollectionData() override;
    void DeleteIconImage(std::u16string_view key) override;
    std::shared_ptr<ImageCollection> GetIconByteCollection() const override;
    std::u16string GetFriendlyString() const override;

   private:
    ComPtr<IImageOwner> owner_;
  };

  ComPtr<IUnknown> object_;
  std::unique_ptr<Owner> owner_;
  ComPtr<IOwnHiddenList> hidden_;
};

}  // namespace marklet::activex::page
