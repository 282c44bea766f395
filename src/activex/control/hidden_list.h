// The hidden list of images that belongs to a control, as an object. Only code that knows its interfaces
// finds it: it has no class, and no library lists it.
#pragma once

#include "activex/com/face.h"
#include "activex/com/guid.h"
#include "control/marklet.h"

namespace marklet::activex {

class HostFont;

// What a control of this module tells of the controls that belong to it.
struct IOwnConstituents : public IUnknown {
  static constexpr IID kIid = ParseGuid("{5E7C93A4-8D1B-4F66-B0C2-7A39D1E4F508}");
  // `InternalAlphaImageList1`: late-bound, with its public GetIcoBytes(key); IPersistPropertyBag for its
  // saved rows. The same object as long as somebody holds it, and it holds the control.
  virtual HRESULT STDMETHODCALLTYPE InternalAlphaImageList1(IUnknown** list) = 0;
};

class ConstituentsFace final : public Face<IOwnConstituents> {
 public:
  ConstituentsFace(FaceOwner& owner, Marklet& marklet, HostFont& host_font)
      : Face(owner), marklet_(marklet), host_font_(host_font) {}
  STDMETHODIMP InternalAlphaImageList1(IUnknown** list) override;

 private:
  class HiddenList;

  Marklet& marklet_;
  HostFont& host_font_;
  HiddenList* hidden_list_ = nullptr;  // while somebody holds it
};

}  // namespace marklet::activex
