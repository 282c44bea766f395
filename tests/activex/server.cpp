#include "activex/server.h"

#include <algorithm>

namespace ocx_test {
namespace {

// Paths of the build use forward slashes.
std::wstring Below(const char* path) {
  std::wstring result =
      FolderOfProgram() + L"\\" + std::wstring(path, path + std::char_traits<char>::length(path));
  std::replace(result.begin(), result.end(), L'/', L'\\');
  wchar_t full[MAX_PATH] = {};
  GetFullPathNameW(result.c_str(), MAX_PATH, full, nullptr);
  return full;
}

}  // namespace

std::wstring FolderOfProgram() {
  wchar_t path[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring text = path;
  return text.substr(0, text.find_last_of(L'\\'));
}

std::wstring ServerPath() { return Below(MARKLET_SERVER); }
std::wstring ScriptsPath() { return Below(MARKLET_SCRIPTS); }
std::wstring SavedFormsPath() { return Below(MARKLET_SAVED_FORMS); }

Variant Variant::Bool(bool value) {
  Variant result;
  result.vt = VT_BOOL;
  result.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return result;
}

// --- Server -----------------------------------------------------------------------------------------------

Server::Server() : module_(LoadLibraryW(ServerPath().c_str())) {
  OleInitialize(nullptr);
  EXPECT_TRUE(module_) << "the server could not be loaded";
}

Server& Server::Get() {
  static Server server;
  return server;
}

template <typename Function>
Function* Server::Entry(const char* name) const {
  return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module_, name)));
}

HRESULT Server::GetClassObject(REFCLSID class_id, REFIID iid, void** object) const {
  return Entry<HRESULT WINAPI(REFCLSID, REFIID, void**)>("DllGetClassObject")(class_id, iid, object);
}
HRESULT Server::CanUnloadNow() const { return Entry<HRESULT WINAPI()>("DllCanUnloadNow")(); }
HRESULT Server::Register() const { return Entry<HRESULT WINAPI()>("DllRegisterServer")(); }
HRESULT Server::Unregister() const { return Entry<HRESULT WINAPI()>("DllUnregisterServer")(); }
HRESULT Server::Install(bool install, const wchar_t* command_line) const {
  return Entry<HRESULT WINAPI(BOOL, PCWSTR)>("DllInstall")(install, command_line);
}

ComPtr<IUnknown> CreateControl() {
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> control;
  EXPECT_EQ(S_OK, Server::Get().GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  if (factory && FAILED(factory->CreateInstance(nullptr, IID_PPV_ARGS(control.GetAddressOf()))))
    control.Reset();
  EXPECT_TRUE(control) << "no control was made";
  return control;
}

// --- Late-bound access ------------------------------------------------------------------------------------

HRESULT Get(IDispatch* object, DISPID id, VARIANT& result) {
  DISPPARAMS none = {};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &none, &result, nullptr,
                        nullptr);
}

HRESULT Put(IDispatch* object, DISPID id, const VARIANT& value, WORD flags) {
  DISPID name = DISPID_PROPERTYPUT;
  DISPPARAMS parameters = {const_cast<VARIANT*>(&value), &name, 1, 1};
  return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, nullptr, nullptr, nullptr);
}

DISPID IdOf(IDispatch* object, const wchar_t* name) {
  DISPID id = DISPID_UNKNOWN;
  LPOLESTR names[] = {const_cast<LPOLESTR>(name)};
  object->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &id);
  return id;
}

HRESULT GetByName(IDispatch* object, const wchar_t* name, VARIANT& result) {
  return Get(object, IdOf(object, name), result);
}
HRESULT PutByName(IDispatch* object, const wchar_t* name, const VARIANT& value) {
  return Put(object, IdOf(object, name), value);
}

long GetNumber(IDispatch* object, const wchar_t* name) {
  Variant value;
  EXPECT_EQ(S_OK, GetByName(object, name, value)) << name;
  EXPECT_TRUE(value.vt == VT_I4 || value.vt == VT_BOOL) << name << " is a " << value.vt;
  return value.vt == VT_BOOL ? value.boolVal : value.lVal;
}

std::wstring GetText(IDispatch* object, const wchar_t* name) {
  Variant value;
  EXPECT_EQ(S_OK, GetByName(object, name, value)) << name;
  EXPECT_EQ(VT_BSTR, value.vt) << name;
  return value.Text();
}

void PutNumber(IDispatch* object, const wchar_t* name, long value) {
  EXPECT_EQ(S_OK, PutByName(object, name, Variant(static_cast<int>(value)))) << name;
}
void PutText(IDispatch* object, const wchar_t* name, const wchar_t* value) {
  EXPECT_EQ(S_OK, PutByName(object, name, Variant(value))) << name;
}

ULONG References(IUnknown* object) {
  object->AddRef();
  return object->Release();
}

void PumpMessages() {
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

}  // namespace ocx_test
