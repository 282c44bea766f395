// `_ISupportsAlphaImage`: the images of the control, for who edits them at design time.
#pragma once

#include "activex/com/face.h"
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
