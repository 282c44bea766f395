// A form as designers make them: automation objects with members by name, and a picture that it keeps of
// itself.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "activex/container.h"

namespace ocx_test {

// An automation object with the members that it is given, and no others. Each use goes into the log as
// "form.hwnd", "form.AutoRedraw=1" or "controls[0]"; a question for a name doesn't.
class LateObject;

// Keeps a member's value and gives it out in whatever type it has.
struct LateMember {
  std::function<HRESULT(VARIANT& result)> get;
  std::function<HRESULT(const VARIANT& value)> put;  // none: it can't be set
};

class LateObject final : public IDispatch, public IOleContainer {
 public:
  using Log = std::vector<std::string>;
  static ComPtr<LateObject> Make(const char* name, Log& log);

  std::map<std::string, LateMember> members;  // names in lower case
  std::vector<ComPtr<LateObject>> items;      // of a collection
  bool has_enumerator = false;                // otherwise Count and an index from 0
  std::function<void(const std::string& use)> on_use;

  void Put(const char* name, const VARIANT& value);  // a member of that value, which can't be set
  IDispatch* Dispatch() { return this; }
  IOleContainer* Container() { return this; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override;
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* id) override;
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO*, UINT*) override;
  HRESULT STDMETHODCALLTYPE ParseDisplayName(IBindCtx*, LPOLESTR, ULONG*, IMoniker**) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE EnumObjects(DWORD, IEnumUnknown**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE LockContainer(BOOL) override { return E_NOTIMPL; }

  // Item `at` for the caller, logged.
  ComPtr<IDispatch> Item(std::size_t at);

 private:
  LateObject(const char* name, Log& log) : name_(name), log_(log) {}
  ~LateObject() = default;
  HRESULT Use(const std::string& what);

  ULONG references_ = 0;
  std::string name_;
  Log& log_;
};

// A picture of its own for each pixel, and around it a form in whose container controls can be placed.
class Form {
 public:
  static constexpr int kWidth = 640, kHeight = 480;
  // 0xRRGGBB, no two the same.
  static DWORD ColourAt(int x, int y);

  // Becomes the form of the container, which must not be hosting yet.
  explicit Form(Container& container);
  ~Form();
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;

  LateObject::Log log;
  bool form_redraws = false, frame_redraws = false;  // AutoRedraw
  ComPtr<LateObject> form, controls, frame, label, extender;

  void ScaleMode(int mode);
  void PutAt(const VARIANT& left, const VARIANT& top);
  void PutAt(int left, int top) { PutAt(Variant(left), Variant(top)); }
  // From now on controls are placed in the frame.
  void UseFrame();

 private:
  void Surface(LateObject& object, HWND window, bool& redraws);

  Container& container_;
  HWND frame_window_;
  HDC picture_ = nullptr, screen_ = nullptr;
};

}  // namespace ocx_test
