// The object as a control: its mnemonic, its ambient properties, its events held back.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class EventSource;
class OleUserControl;

class OleControlFace final : public Face<IOleControl> {
 public:
  OleControlFace(FaceOwner& owner, OleUserControl& host, EventSource& events)
      : Face(owner), host_(host), events_(events) {}
  ~OleControlFace();

  STDMETHODIMP GetControlInfo(CONTROLINFO* info) override;
  STDMETHODIMP OnMnemonic(LPMSG) override {
    return S_OK;
  }  // no event: what follows is the host's focus logic
  STDMETHODIMP OnAmbientPropertyChange(DISPID id) override;
  STDMETHODIMP FreezeEvents(BOOL freeze) override;

 private:
  OleUserControl& host_;
  EventSource& events_;
  HACCEL accelerators_ = nullptr;
};

}  // namespace marklet::activex
