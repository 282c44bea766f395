#include "activex/page/selected_object.h"

#include "activex/automation/image_list.h"
#include "activex/com/own.h"
#include "activex/com/text.h"

namespace marklet::activex::page {

// --- The owner of images ----------------------------------------------------------------------------------

void SelectedObject::Owner::DestroyIconByteCollectionData() { owner_->DestroyIconByteCollectionData(); }

void SelectedObject::Owner::DeleteIconImage(std::u16string_view key) {
  BstrResult text;
  *text.Out() = NewBstr(key);
  owner_->DeleteIconImage(text.Get());
}

std::shared_ptr<ImageCollection> SelectedObject::Owner::GetIconByteCollection() const {
  ComPtr<IDispatch> list;
  if (FAILED(owner_->GetIconByteCollection(list.GetAddressOf()))) return nullptr;
  return ListBehind(list.Get());
}

std::u16string SelectedObject::Owner::GetFriendlyString() const {
  BstrResult word;
  return SUCCEEDED(owner_->GetFriendlyString(word.Out())) ? FromBstr(word.Get()) : std::u16string();
}

// --- The object -------------------------------------------------------------------------------------------

// Asked once: the flows go on with an owner while another call of theirs may come here.
ISupportsAlphaImage* SelectedObject::AlphaImages() {
  if (owner_) return owner_.get();
  void* found = nullptr;
  if (FAILED(object_->QueryInterface(kImageOwnerGuid, &found)) || !found) return nullptr;
  owner_ = std::make_unique<Owner>(Adopt(static_cast<IImageOwner*>(found)));
  return owner_.get();
}

InternalAlphaImageList* SelectedObject::HiddenList() {
  if (!hidden_) hidden_ = AsOwn<IOwnHiddenList>(object_.Get());
  return hidden_ ? &hidden_->List() : nullptr;
}

ImageRef SelectedObject::LoadImageIntoLabel(std::u16string_view file, std::u16string_view key) {
  const ComPtr<IOwnLabel> label = AsOwn<IOwnLabel>(object_.Get());
  return label ? label->LoadImageIntoList(file, key) : nullptr;
}

}  // namespace marklet::activex::page
