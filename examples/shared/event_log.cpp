#include "event_log.h"

#include <iterator>

namespace example {
namespace {

// By their numbers, from 1 on.
const wchar_t* const kNames[] = {L"Change",          L"Click",       L"DblClick",    L"MouseDown",
                                 L"MouseUp",         L"MouseMove",   L"MouseEnter",  L"MouseLeave",
                                 L"OLECompleteDrag", L"OLEDragDrop", L"OLEDragOver", L"OLEGiveFeedback",
                                 L"OLESetData",      L"OLEStartDrag"};

std::wstring TextOf(const VARIANT& argument) {
  if ((V_VT(&argument) & VT_TYPEMASK) == VT_DISPATCH) return L"Data";
  VARIANT text;
  VariantInit(&text);
  std::wstring result = L"?";
  if (SUCCEEDED(VariantChangeType(&text, const_cast<VARIANT*>(&argument), 0, VT_BSTR)))
    result = V_BSTR(&text);
  VariantClear(&text);
  return result;
}

// "MouseMove 0, 0, 12, 5"; arguments stand last to first.
std::wstring Describe(DISPID id, const DISPPARAMS& arguments) {
  std::wstring line = id >= 1 && id <= static_cast<DISPID>(std::size(kNames)) ? kNames[id - 1] : L"?";
  for (UINT i = arguments.cArgs; i-- > 0;)
    line += (i + 1 == arguments.cArgs ? L" " : L", ") + TextOf(arguments.rgvarg[i]);
  return line;
}

}  // namespace

STDMETHODIMP EventSink::GetTypeInfoCount(UINT* count) {
  if (!count) return E_POINTER;
  *count = 0;
  return S_OK;
}

STDMETHODIMP EventSink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* arguments, VARIANT*, EXCEPINFO*,
                               UINT*) {
  const std::wstring line = name_ + L": " + Describe(id, *arguments);
  const LRESULT row = SendMessageW(pane_, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(line.c_str()));
  SendMessageW(pane_, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
  UpdateWindow(pane_);
  return S_OK;
}

HWND CreateEventPane(HWND form, const RECT& place) {
  const HWND pane = CreateWindowExW(WS_EX_CLIENTEDGE, L"LISTBOX", L"",
                                    WS_CHILD | WS_VISIBLE | WS_VSCROLL | LBS_NOINTEGRALHEIGHT | LBS_NOSEL,
                                    place.left, place.top, place.right - place.left, place.bottom - place.top,
                                    form, nullptr, GetModuleHandleW(nullptr), nullptr);
  SendMessageW(pane, WM_SETFONT, reinterpret_cast<WPARAM>(GetStockObject(DEFAULT_GUI_FONT)), TRUE);
  return pane;
}

}  // namespace example
