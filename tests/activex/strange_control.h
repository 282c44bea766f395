// A control that isn't ours: nothing but the least that a container needs, any of which may fail.
#pragma once

#include "activex/server.h"

namespace ocx_test {

struct Strangeness {
  HRESULT creation = S_OK, init_new = S_OK, load = S_OK, save = S_OK;
  bool has_types = true;       // its properties are described
  bool closes_in_put = false;  // it goes away while a property is set
};

constexpr GUID kStrangeId = {0x6A1D3A60, 0x33C1, 0x4B0E, {0x9C, 0x4E, 0x10, 0x5F, 0x6D, 0x22, 0x71, 0x08}};

// Has the properties of one of ours, but neither their categories nor pages nor a window.
class StrangeControl final : public IOleObject, public IPersistStreamInit, public IDispatch {
 public:
  explicit StrangeControl(const Strangeness& how) : how_(how), ours_(As<IDispatch>(CreateControl())) {
    ++alive;
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(ours_)->InitNew());
    CreateOleAdviseHolder(advises_.GetAddressOf());
  }
  static inline int alive = 0;

  void CloseItself() { advises_->SendOnClose(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleObject) *object = static_cast<IOleObject*>(this);
    if (iid == IID_IPersistStreamInit) *object = static_cast<IPersistStreamInit*>(this);
    if (iid == IID_IDispatch) *object = static_cast<IDispatch*>(this);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE SetClientSite(IOleClientSite* site) override {
    site_ = site;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetClientSite(IOleClientSite**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE Close(DWORD) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE SetMoniker(DWORD, IMoniker*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetClipboardData(DWORD, IDataObject**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE DoVerb(LONG, MSG*, IOleClientSite*, LONG, HWND, LPCRECT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE EnumVerbs(IEnumOLEVERB**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Update() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE IsUpToDate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetUserClassID(CLSID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetUserType(DWORD, LPOLESTR*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetExtent(DWORD, SIZEL*) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE GetExtent(DWORD, SIZEL*) override { return E_FAIL; }
  HRESULT STDMETHODCALLTYPE Advise(IAdviseSink* sink, DWORD* cookie) override {
    return advises_->Advise(sink, cookie);
  }
  HRESULT STDMETHODCALLTYPE Unadvise(DWORD cookie) override { return advises_->Unadvise(cookie); }
  HRESULT STDMETHODCALLTYPE EnumAdvise(IEnumSTATDATA**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetMiscStatus(DWORD, DWORD*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  HRESULT STDMETHODCALLTYPE GetClassID(CLSID* id) override {
    *id = kStrangeId;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE IsDirty() override { return S_FALSE; }
  HRESULT STDMETHODCALLTYPE Load(IStream*) override { return how_.load; }
  HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL) override {
    return how_.save == S_OK ? stream->Write("state", 5, nullptr) : how_.save;
  }
  HRESULT STDMETHODCALLTYPE GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE InitNew() override { return how_.init_new; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override { return ours_->GetTypeInfoCount(count); }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT which, LCID locale, ITypeInfo** info) override {
    return how_.has_types ? ours_->GetTypeInfo(which, locale, info) : E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID locale,
                                          DISPID* ids) override {
    return ours_->GetIDsOfNames(iid, names, count, locale, ids);
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags, DISPPARAMS* parameters,
                                   VARIANT* result, EXCEPINFO* exception, UINT* wrong) override {
    if (how_.closes_in_put && flags & DISPATCH_PROPERTYPUT) {
      CloseItself();
      PumpMessages();  // as one that shows a box does
    }
    return ours_->Invoke(id, iid, locale, flags, parameters, result, exception, wrong);
  }

 private:
  ~StrangeControl() { --alive; }
  ULONG references_ = 0;
  Strangeness how_;
  ComPtr<IDispatch> ours_;
  ComPtr<IOleAdviseHolder> advises_;
  ComPtr<IOleClientSite> site_;
};

// While it lives, such controls can be created.
class StrangeClass final : public IClassFactory {
 public:
  StrangeClass() {
    EXPECT_EQ(S_OK,
              CoRegisterClassObject(kStrangeId, this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_));
  }
  ~StrangeClass() { CoRevokeClassObject(cookie_); }
  StrangeClass(const StrangeClass&) = delete;
  StrangeClass& operator=(const StrangeClass&) = delete;

  Strangeness how;                 // of those to come
  StrangeControl* last = nullptr;  // not counted

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }  // lives longer than its registration
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** object) override {
    *object = nullptr;
    if (how.creation != S_OK) return how.creation;
    last = new StrangeControl(how);
    const ComPtr<IOleObject> made = last;
    return made->QueryInterface(iid, object);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  DWORD cookie_ = 0;
};

}  // namespace ocx_test
