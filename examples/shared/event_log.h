// A pane that shows each event of the form's controls as it arrives.
#pragma once

#include <windows.h>

#include <oaidl.h>

#include <string>

#include "counted.h"

namespace example {

// The sink of one control.
class EventSink final : public Counted<IDispatch> {
 public:
  // `pane` is a list box, `name` what the control is called in it.
  EventSink(HWND pane, std::wstring name) : pane_(pane), name_(std::move(name)) {}

  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* arguments, VARIANT* result, EXCEPINFO*,
                      UINT*) override;

 private:
  HWND pane_;
  std::wstring name_;
};

// A list box in the form.
HWND CreateEventPane(HWND form, const RECT& place);

}  // namespace example
