// What the control says about itself.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class ClassInfoFace final : public Face<IProvideClassInfo2> {
 public:
  using Face::Face;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;
};

class ErrorInfoFace final : public Face<ISupportErrorInfo> {
 public:
  using Face::Face;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;
};

}  // namespace marklet::activex
