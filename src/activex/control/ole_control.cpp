#include "activex/control/ole_control.h"

#include <algorithm>
#include <vector>

#include "activex/automation/event_source.h"
#include "activex/control/user_control.h"

namespace marklet::activex {
namespace {

using Accelerators = std::vector<ACCEL>;

void Add(BYTE flags, WORD key, Accelerators& to) {
  const auto same = [&](const ACCEL& entry) { return entry.fVirt == flags && entry.key == key; };
  if (std::none_of(to.begin(), to.end(), same)) to.push_back({flags, key, 0});
}

// The key that types a character on this keyboard, with Shift where it takes that. A Latin letter has its key
// on every keyboard.
void AddKeyOf(wchar_t character, Accelerators& to) {
  constexpr BYTE kFlags = FVIRTKEY | FALT;
  if (character >= L'A' && character <= L'Z') return Add(kFlags | FSHIFT, character, to);
  if (character >= L'a' && character <= L'z')
    return Add(kFlags, static_cast<WORD>(character - L'a' + L'A'), to);
  const SHORT key = ::VkKeyScanW(character);
  const int state = HIBYTE(key), shift = state & 1;
  if (key != -1 && state == shift) Add(shift ? kFlags | FSHIFT : kFlags, LOBYTE(key), to);
}

// The access key with Alt, in the forms in which hosts look for it: as the character that is typed, in both
// cases because of Caps Lock, and as the key that goes down. The two kinds are told apart by their flag
// alone: a small "t" has the number of F5.
Accelerators AcceleratorsOf(wchar_t key) {
  wchar_t cases[] = {key, key};
  ::CharLowerBuffW(&cases[0], 1);
  ::CharUpperBuffW(&cases[1], 1);
  Accelerators result;
  for (const wchar_t character : cases) AddKeyOf(character, result);
  for (const wchar_t character : cases) Add(FALT, character, result);
  return result;
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
    accelerators_ = nullptr;
    const std::u16string keys = host_.AccessKeys();
    Accelerators table = keys.empty() ? Accelerators() : AcceleratorsOf(static_cast<wchar_t>(keys[0]));
    const auto count = static_cast<int>(table.size());
    if (count > 0) accelerators_ = ::CreateAcceleratorTableW(table.data(), count);
    info->hAccel = accelerators_;
    info->cAccel = static_cast<USHORT>(accelerators_ ? count : 0);
    info->dwFlags = 0;
    return S_OK;
  });
}

// Colours, font, name and direction are what a new control and a saved one begin with, and are asked for
// then. DISPID_UNKNOWN says that any may have changed.
HRESULT OleControlFace::OnAmbientPropertyChange(DISPID id) {
  const bool any = id == DISPID_UNKNOWN;
  if (!any && id != DISPID_AMBIENT_USERMODE && id != DISPID_AMBIENT_UIDEAD) return S_OK;
  return Call([&] {
    host_.MouseMayBeTaken();
    if (any || id == DISPID_AMBIENT_USERMODE) host_.UserModeMayHaveChanged();
    return S_OK;
  });
}

HRESULT OleControlFace::FreezeEvents(BOOL freeze) {
  events_.Freeze(freeze != FALSE);
  return S_OK;
}

}  // namespace marklet::activex
