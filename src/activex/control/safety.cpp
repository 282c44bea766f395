#include "activex/control/safety.h"

namespace marklet::activex {
namespace {

constexpr DWORD kUntrustedCaller = 1, kUntrustedData = 2;

enum class Kind { Unknown, Scripting, Initialisation };

Kind KindOf(REFIID iid) {
  if (iid == __uuidof(IDispatch)) return Kind::Scripting;
  for (const IID& known : {__uuidof(IPersistStorage), __uuidof(IPersistStream), __uuidof(IPersistStreamInit),
                           __uuidof(IPersistPropertyBag)})
    if (iid == known) return Kind::Initialisation;
  return Kind::Unknown;
}

// C callers may pass no interface at all, which a reference can't say.
bool IsNull(REFIID iid) {
  const IID* volatile address = &iid;
  return address == nullptr;
}

}  // namespace

HRESULT SafetyFace::GetInterfaceSafetyOptions(REFIID iid, DWORD* supported, DWORD* enabled) {
  if (!supported || !enabled) return E_POINTER;
  *supported = kUntrustedCaller | kUntrustedData;
  if (IsNull(iid)) return S_OK;
  switch (KindOf(iid)) {
    case Kind::Scripting:
      *enabled = state_.SafeForScripting ? kUntrustedCaller : 0;
      return S_OK;
    case Kind::Initialisation:
      *enabled = state_.SafeForInitializing ? kUntrustedData : 0;
      return S_OK;
    case Kind::Unknown:
      break;
  }
  return E_NOINTERFACE;
}

// Nothing is changed: what the caller asks for is there already, or is refused.
HRESULT SafetyFace::SetInterfaceSafetyOptions(REFIID iid, DWORD mask, DWORD enabled) {
  if (IsNull(iid)) return S_OK;
  const DWORD wanted = mask & enabled;
  switch (KindOf(iid)) {
    case Kind::Scripting:
      return wanted == kUntrustedCaller && state_.SafeForScripting ? S_OK : E_FAIL;
    case Kind::Initialisation:
      return wanted == kUntrustedData && state_.SafeForInitializing ? S_OK : E_FAIL;
    case Kind::Unknown:
      break;
  }
  return E_NOINTERFACE;
}

}  // namespace marklet::activex
