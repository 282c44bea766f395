#include "activex/control/ole_control.h"

#include "activex/automation/event_source.h"
#include "activex/control/user_control.h"

namespace marklet::activex {
namespace {

// The access key with Alt, in the form of an accelerator table.
HACCEL MakeTable(wchar_t key) {
  ACCEL accelerator = {};
  accelerator.fVirt = FALT;
  ::CharLowerBuffW(&key, 1);
  accelerator.key = key;
  return ::CreateAcceleratorTableW(&accelerator, 1);
}

}  // namespace

OleControlFace::~OleControlFace() {
  if (accelerators_) ::DestroyAcceleratorTable(accelerators_);
}

// The table is the container's to read until the next call.
HRESULT OleControlFace::GetControlInfo(CONTROLINFO* info) {
  if (!info) return E_POINTER;
  return Call([&] {
    if (accelerators_) ::DestroyAcceleratorTable(accelerators_);
    const std::u16string keys = host_.AccessKeys();
    accelerators_ = keys.empty() ? nullptr : MakeTable(static_cast<wchar_t>(keys[0]));
    info->hAccel = accelerators_;
    info->cAccel = accelerators_ ? 1 : 0;
    info->dwFlags = 0;
    return S_OK;
  });
}

// Colours, font, name and direction are what a new control and a saved one begin with, and are asked for
// then. DISPID_UNKNOWN says that any may have changed.
HRESULT OleControlFace::OnAmbientPropertyChange(DISPID id) {
  if (id != DISPID_AMBIENT_USERMODE && id != DISPID_UNKNOWN) return S_OK;
  return Call([this] {
    host_.UserModeMayHaveChanged();
    return S_OK;
  });
}

HRESULT OleControlFace::FreezeEvents(BOOL freeze) {
  events_.Freeze(freeze != FALSE);
  return S_OK;
}

}  // namespace marklet::activex
