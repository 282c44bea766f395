#include "site.h"

namespace example {
namespace {

// The font that controls start with. A machine without it takes the nearest one that it has.
HRESULT CreateFormFont(IDispatch** font) {
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = const_cast<LPOLESTR>(L"DejaVu Sans");
  description.cySize.int64 = 90000;  // ten-thousandths of a point
  description.sWeight = FW_NORMAL;
  return OleCreateFontIndirect(&description, IID_IDispatch, reinterpret_cast<void**>(font));
}

}  // namespace

void Site::Detach() {
  control_ = nullptr;
  on_placed = nullptr;
  on_pages = nullptr;
}

HRESULT Site::QueryInterface(REFIID iid, void** object) {
  const bool as_window = iid == IID_IOleWindow;  // whose methods the place's interface begins with
  return Counted::QueryInterface(as_window ? IID_IOleInPlaceSite : iid, object);
}

HRESULT Site::GetContainer(IOleContainer** container) {
  if (!container) return E_POINTER;
  *container = nullptr;
  return E_NOINTERFACE;
}

HRESULT Site::GetWindow(HWND* window) {
  if (!window) return E_POINTER;
  *window = window_;
  return S_OK;
}

HRESULT Site::GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** document, RECT* position,
                               RECT* clip, OLEINPLACEFRAMEINFO* info) {
  if (!frame || !document || !position || !clip || !info) return E_POINTER;
  *frame = nullptr;
  *document = nullptr;
  *position = *clip = place_;
  info->fMDIApp = FALSE;
  info->hwndFrame = window_;
  info->haccel = nullptr;
  info->cAccelEntries = 0;
  return S_OK;
}

// The control asks for another size, as one with AutoSize does; it gets what it asks for.
HRESULT Site::OnPosRectChange(const RECT* position) {
  if (!position) return E_POINTER;
  place_ = *position;
  const HRESULT result = control_ ? control_->SetObjectRects(&place_, &place_) : S_OK;
  if (on_placed) on_placed();
  return result;
}

HRESULT Site::GetExtendedControl(IDispatch** extender) {
  if (!extender) return E_POINTER;
  *extender = nullptr;
  return E_NOTIMPL;
}

HRESULT Site::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT Site::Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS*, VARIANT* result, EXCEPINFO*, UINT*) {
  if (!(flags & DISPATCH_PROPERTYGET) || !result) return DISP_E_MEMBERNOTFOUND;
  const auto give_truth = [&](bool truth) {
    V_VT(result) = VT_BOOL;
    V_BOOL(result) = truth ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  };
  const auto give_colour = [&](int of_the_system) {
    V_VT(result) = VT_I4;
    V_I4(result) = static_cast<LONG>(0x80000000 | static_cast<unsigned>(of_the_system));
    return S_OK;
  };
  switch (id) {
    case DISPID_AMBIENT_USERMODE:
      return give_truth(ambients_.running);
    case DISPID_AMBIENT_UIDEAD:
    case DISPID_AMBIENT_SHOWHATCHING:  // who designs the form sees its own handles
    case DISPID_AMBIENT_SHOWGRABHANDLES:
      return give_truth(false);
    case DISPID_AMBIENT_BACKCOLOR:
      return give_colour(ambients_.back_color);
    case DISPID_AMBIENT_FORECOLOR:
      return give_colour(ambients_.fore_color);
    case DISPID_AMBIENT_DISPLAYNAME:
      V_VT(result) = VT_BSTR;
      V_BSTR(result) = SysAllocString(ambients_.name.c_str());
      return V_BSTR(result) ? S_OK : E_OUTOFMEMORY;
    case DISPID_AMBIENT_FONT:
      V_VT(result) = VT_DISPATCH;
      return CreateFormFont(&V_DISPATCH(result));
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

}  // namespace example
