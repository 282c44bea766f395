// The control in the hands of a form's author: its property pages, and how its properties are listed.
#pragma once

#include "activex/com/face.h"
#include "control/marklet.h"

// Not in the platform's headers here.
using PROPCAT = int;
MIDL_INTERFACE("4D07FC10-F931-11CE-B001-00AA006884E5")
ICategorizeProperties : public IUnknown {
  virtual HRESULT STDMETHODCALLTYPE MapPropertyToCategory(DISPID id, PROPCAT * category) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetCategoryName(PROPCAT category, LCID locale, BSTR * name) = 0;
};
__CRT_UUID_DECL(ICategorizeProperties, 0x4D07FC10, 0xF931, 0x11CE, 0xB0, 0x01, 0x00, 0xAA, 0x00, 0x68, 0x84,
                0xE5)

namespace marklet::activex {

// The control's own page for images, then the system's for fonts and for colours.
class PropertyPagesFace final : public Face<ISpecifyPropertyPages> {
 public:
  using Face::Face;
  STDMETHODIMP GetPages(CAUUID* pages) override;
};

// The members of enumerations, by their names in the type library.
class PropertyBrowsingFace final : public Face<IPerPropertyBrowsing> {
 public:
  PropertyBrowsingFace(FaceOwner& owner, Marklet& marklet) : Face(owner), marklet_(marklet) {}
  // S_FALSE without a text where the designer's own way of showing a value is good enough.
  STDMETHODIMP GetDisplayString(DISPID id, BSTR* text) override;
  STDMETHODIMP MapPropertyToPage(DISPID id, CLSID* page) override;
  // A cookie is the member's value.
  STDMETHODIMP GetPredefinedStrings(DISPID id, CALPOLESTR* names, CADWORD* cookies) override;
  STDMETHODIMP GetPredefinedValue(DISPID id, DWORD cookie, VARIANT* value) override;

 private:
  Marklet& marklet_;
};

class CategoriesFace final : public Face<ICategorizeProperties> {
 public:
  using Face::Face;
  STDMETHODIMP MapPropertyToCategory(DISPID id, PROPCAT* category) override;
  // Only of the control's own categories: a designer has its words for the others.
  STDMETHODIMP GetCategoryName(PROPCAT category, LCID locale, BSTR* name) override;
};

}  // namespace marklet::activex
