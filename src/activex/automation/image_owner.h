// `_ISupportsAlphaImage`: the images of the control, for who edits them at design time.
#pragma once

#include "activex/com/face.h"
#include "activex/com/guid.h"
#include "control/marklet.h"
#include "imagelist/internal_alpha_image_list.h"
#include "imagelist/supports_alpha_image.h"

namespace marklet::activex {

// The slots as the type library lists them. Dual, as `_Marklet` is.
struct IImageOwner : public IDispatch {
  // Leaves a new empty list.
  virtual HRESULT STDMETHODCALLTYPE DestroyIconByteCollectionData() = 0;
  // Removes the image under the key, if there is one, and tells the host of a change.
  virtual HRESULT STDMETHODCALLTYPE DeleteIconImage(BSTR key) = 0;
  // Loads nothing and answers null: `LoadIconImageFromFile` of `_Marklet` is the way.
  virtual HRESULT STDMETHODCALLTYPE LoadIconByteImageFromDisk(BSTR file, BSTR key, IDispatch** image) = 0;
  // The list itself, an object of image_list.h; null when there is none.
  virtual HRESULT STDMETHODCALLTYPE GetIconByteCollection(IDispatch** list) = 0;
  // A word for the owner's kind.
  virtual HRESULT STDMETHODCALLTYPE GetFriendlyString(BSTR* text) = 0;
};

// What the page for images asks of objects of this module itself (activex/com/own.h).
struct IOwnLabel : public IUnknown {
  static constexpr IID kIid = ParseGuid("{B8E4D5C6-2F4B-4E0C-8C0D-6A1E9F3D2B10}");
  virtual ImageRef LoadImageIntoList(std::u16string_view file, std::u16string_view key) = 0;
};
// A hidden list, which is no owner in the sense of ImageOwnerFace, answers to it.
struct IOwnHiddenList : public IUnknown {
  static constexpr IID kIid = ParseGuid("{3F6C0B0D-51C4-4D7E-A2E5-94B7C8D1E0A2}");
  virtual InternalAlphaImageList& List() = 0;  // stays good as long as the object is held
};

class OwnLabelFace final : public Face<IOwnLabel> {
 public:
  OwnLabelFace(FaceOwner& owner, Marklet& marklet) : Face(owner), marklet_(marklet) {}
  ImageRef LoadImageIntoList(std::u16string_view file, std::u16string_view key) override;

 private:
  Marklet& marklet_;
};

class ImageOwnerFace final : public Face<IImageOwner> {
 public:
  ImageOwnerFace(FaceOwner& owner, ISupportsAlphaImage& images) : Face(owner), images_(images) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) override;

  STDMETHODIMP DestroyIconByteCollectionData() override;
  STDMETHODIMP DeleteIconImage(BSTR key) override;
  STDMETHODIMP LoadIconByteImageFromDisk(BSTR file, BSTR key, IDispatch** image) override;
  STDMETHODIMP GetIconByteCollection(IDispatch** list) override;
  STDMETHODIMP GetFriendlyString(BSTR* text) override;

 private:
  ISupportsAlphaImage& images_;
};

}  // namespace marklet::activex
