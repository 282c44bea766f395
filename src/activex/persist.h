// How a container starts the control off. Each of its three ways begins with InitNew for a new control.
#pragma once

#include "activex/face.h"

namespace marklet::activex {

// What the three interfaces share.
class Persist {
 public:
  explicit Persist(ControlObject& control) : control_(control) {}
  HRESULT InitNew();
  void SetDirty(bool dirty) { dirty_ = dirty; }
  bool IsDirty() const { return dirty_; }

 private:
  ControlObject& control_;
  bool dirty_ = false;
};

// Saving and loading are refused, so that a container doesn't take an empty stream for a saved control.
class PersistStreamFace final : public Face<IPersistStreamInit> {
 public:
  using Face::Face;
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP Load(IStream*) override { return E_NOTIMPL; }
  STDMETHODIMP Save(IStream*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER*) override { return E_NOTIMPL; }
  STDMETHODIMP InitNew() override;
};

class PersistBagFace final : public Face<IPersistPropertyBag> {
 public:
  using Face::Face;
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP InitNew() override;
  STDMETHODIMP Load(IPropertyBag*, IErrorLog*) override { return E_NOTIMPL; }
  STDMETHODIMP Save(IPropertyBag*, BOOL, BOOL) override { return E_NOTIMPL; }
};

class PersistStorageFace final : public Face<IPersistStorage> {
 public:
  using Face::Face;
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP InitNew(IStorage*) override;
  STDMETHODIMP Load(IStorage*) override { return E_NOTIMPL; }
  STDMETHODIMP Save(IStorage*, BOOL) override { return E_NOTIMPL; }
  STDMETHODIMP SaveCompleted(IStorage*) override { return S_OK; }
  STDMETHODIMP HandsOffStorage() override { return S_OK; }  // none is held
};

}  // namespace marklet::activex
