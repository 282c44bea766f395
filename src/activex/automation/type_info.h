// The type library that the server carries, and what a control says about itself from it.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

// The description of a type of the library by its GUID, for the caller to release.
HRESULT GetOwnTypeInfo(REFGUID guid, ITypeInfo** info);

class ClassInfoFace final : public Face<IProvideClassInfo2> {
 public:
  using Face::Face;
  STDMETHODIMP GetClassInfo(ITypeInfo** info) override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) override;
};

}  // namespace marklet::activex
