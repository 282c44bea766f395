// The object as a control: its mnemonic, its ambient properties, its events held back.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class OleControlFace final : public Face<IOleControl> {
 public:
  using Face::Face;
  ~OleControlFace();

  STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
  STDMETHODIMP OnMnemonic(LPMSG) override {
    return S_OK;
  }  // no event: what follows is the host's focus logic
  STDMETHODIMP OnAmbientPropertyChange(DISPID id) override;
  STDMETHODIMP FreezeEvents(BOOL freeze) override;

 private:
  HACCEL accelerators_ = nullptr;
};

}  // namespace marklet::activex
