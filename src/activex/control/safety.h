// The control's answer to browsers that ask whether scripts and foreign data may have it.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class SafetyFace final : public Face<IObjectSafety> {
 public:
  using Face::Face;
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) override;
};

}  // namespace marklet::activex
