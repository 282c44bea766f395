// The built server, loaded by its path, and what the tests share around it.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/win32/sdk_ole.h"

namespace ocx_test {

using Microsoft::WRL::ComPtr;

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;

// Identities as the documentation gives them.
constexpr GUID kLibraryId = {0x8F6B874C, 0x6DE0, 0x4902, {0xA0, 0x16, 0xDB, 0xCD, 0xD8, 0xF2, 0x72, 0xC1}};
constexpr GUID kDispatchId = {0x310A4F20, 0xC1CC, 0x4F0F, {0x90, 0xA4, 0x98, 0x26, 0x80, 0x4A, 0x23, 0xC7}};
constexpr GUID kClassId = {0x2C94FDA3, 0xAB60, 0x4E3F, {0x85, 0xFD, 0xA5, 0xAE, 0xC6, 0x54, 0x3F, 0x3F}};
constexpr GUID kEventsId = {0x6E85A505, 0x50AA, 0x4694, {0x9B, 0x51, 0x64, 0xC5, 0x0D, 0x1D, 0x20, 0x45}};
constexpr GUID kImageOwnerId = {0x215FB7C9, 0x18D0, 0x42C9, {0xBE, 0x97, 0x3A, 0x3F, 0xA3, 0xC7, 0x03, 0xE4}};
// Which the platform's libraries have no symbol for.
constexpr GUID kSafetyId = {0xCB5BDC81, 0x93C1, 0x11CF, {0x8F, 0x20, 0x00, 0x80, 0x5F, 0x2C, 0xD0, 0x64}};

std::wstring FolderOfProgram();
std::wstring ServerPath();
std::wstring ScriptsPath();
std::wstring SavedFormsPath();

// A variant that clears itself.
class Variant : public VARIANT {
 public:
  Variant() { VariantInit(this); }
  explicit Variant(int value) : Variant() {
    vt = VT_I4;
    lVal = value;
  }
  explicit Variant(const wchar_t* text) : Variant() {
    vt = VT_BSTR;
    bstrVal = SysAllocString(text);
  }
  explicit Variant(IDispatch* object) : Variant() {
    vt = VT_DISPATCH;
    pdispVal = object;
    if (object) object->AddRef();
  }
  static Variant Bool(bool value);
  Variant(Variant&& other) noexcept : VARIANT(other) { other.vt = VT_EMPTY; }
  Variant& operator=(const Variant&) = delete;
  ~Variant() { VariantClear(this); }
  std::wstring Text() const {
    return vt == VT_BSTR && bstrVal ? std::wstring(bstrVal, SysStringLen(bstrVal)) : L"";
  }
};

// The loaded module. It stays loaded from the first use to the end of the program, so that tests can ask it
// whether it could go.
class Server {
 public:
  static Server& Get();
  HRESULT GetClassObject(REFCLSID class_id, REFIID iid, void** object) const;
  HRESULT CanUnloadNow() const;
  HRESULT Register() const;
  HRESULT Unregister() const;
  HRESULT Install(bool install, const wchar_t* command_line) const;
  HMODULE Module() const { return module_; }

 private:
  Server();
  template <typename Function>
  Function* Entry(const char* name) const;
  HMODULE module_;
};

// A new control, nothing set.
ComPtr<IUnknown> CreateControl();

// Asks for an interface; null when there is none.
template <typename Interface>
ComPtr<Interface> As(IUnknown* object) {
  ComPtr<Interface> result;
  if (object) object->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(result.GetAddressOf()));
  return result;
}
template <typename Interface, typename Other>
ComPtr<Interface> As(const ComPtr<Other>& object) {
  return As<Interface>(object.Get());
}

// Late-bound access by number and by name. Failures come back as result codes.
HRESULT Get(IDispatch* object, DISPID id, VARIANT& result);
HRESULT Put(IDispatch* object, DISPID id, const VARIANT& value, WORD flags = DISPATCH_PROPERTYPUT);
HRESULT GetByName(IDispatch* object, const wchar_t* name, VARIANT& result);
HRESULT PutByName(IDispatch* object, const wchar_t* name, const VARIANT& value);
DISPID IdOf(IDispatch* object, const wchar_t* name);
long GetNumber(IDispatch* object, const wchar_t* name);
std::wstring GetText(IDispatch* object, const wchar_t* name);
void PutNumber(IDispatch* object, const wchar_t* name, long value);
void PutText(IDispatch* object, const wchar_t* name, const wchar_t* value);

// References that callers hold.
ULONG References(IUnknown* object);

// Handles all messages that are waiting.
void PumpMessages();

}  // namespace ocx_test
