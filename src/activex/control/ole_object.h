// The object as a container embeds it.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class DragSource;
class Extent;
class InPlace;
class Persist;
class PlaceListener;
class Site;

class OleObjectFace final : public Face<IOleObject> {
 public:
  OleObjectFace(FaceOwner& owner, Site& site, Extent& extent, InPlace& in_place, DragSource& drag_source,
                Persist& persist, PlaceListener& listener)
      : Face(owner),
        site_(site),
        extent_(extent),
        in_place_(in_place),
        drag_source_(drag_source),
        persist_(persist),
        listener_(listener) {}

  STDMETHODIMP SetClientSite(IOleClientSite* site) override;
  STDMETHODIMP GetClientSite(IOleClientSite** site) override;
  STDMETHODIMP SetHostNames(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  STDMETHODIMP Close(DWORD save) override;
  // The control has no use for its name, which is the site's to give; those who advised have.
  STDMETHODIMP SetMoniker(DWORD which, IMoniker* moniker) override;
  STDMETHODIMP GetMoniker(DWORD assign, DWORD which, IMoniker** moniker) override;
  STDMETHODIMP InitFromData(IDataObject*, BOOL, DWORD) override { return E_NOTIMPL; }
  STDMETHODIMP GetClipboardData(DWORD, IDataObject** data) override;
  STDMETHODIMP DoVerb(LONG verb, LPMSG message, IOleClientSite* site, LONG index, ::HWND parent,
                      LPCRECT position) override;
  STDMETHODIMP EnumVerbs(IEnumOLEVERB** verbs) override;
  STDMETHODIMP Update() override { return S_OK; }
  STDMETHODIMP IsUpToDate() override { return S_OK; }
  STDMETHODIMP GetUserClassID(CLSID* class_id) override;
  STDMETHODIMP GetUserType(DWORD form, LPOLESTR* type) override;
  STDMETHODIMP SetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP GetExtent(DWORD aspect, SIZEL* size) override;
  STDMETHODIMP Advise(IAdviseSink* sink, DWORD* cookie) override;
  STDMETHODIMP Unadvise(DWORD cookie) override;
  STDMETHODIMP EnumAdvise(IEnumSTATDATA** advises) override;
  STDMETHODIMP GetMiscStatus(DWORD aspect, DWORD* status) override;
  STDMETHODIMP SetColorScheme(LOGPALETTE*) override { return E_NOTIMPL; }

  // Tells those who advised that the control's values are saved.
  void TellSaved();

 private:
  HRESULT RunVerb(LONG verb, ::HWND parent);
  HRESULT ShowProperties(::HWND parent);
  void CloseOnce(DWORD save);

  Site& site_;
  Extent& extent_;
  InPlace& in_place_;
  DragSource& drag_source_;
  Persist& persist_;
  PlaceListener& listener_;
  ComPtr<IOleAdviseHolder> advises_;
  bool closing_ = false;
};

}  // namespace marklet::activex
