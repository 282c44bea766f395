// The control's answer to browsers that ask whether scripts and foreign data may have it.
#pragma once

#include "activex/com/face.h"
#include "control/marklet.h"

namespace marklet::activex {

class SafetyFace final : public Face<IObjectSafety> {
 public:
  SafetyFace(FaceOwner& owner, const MarkletState& state) : Face(owner), state_(state) {}
  STDMETHODIMP GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) override;
  STDMETHODIMP SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) override;

 private:
  const MarkletState& state_;
};

}  // namespace marklet::activex
