// `_Marklet`, the dual dispatch interface: late-bound calls by name and number, and early-bound ones through
// slots that are read off the property table.
#pragma once

#include "activex/com/com.h"
#include "control/properties.h"

namespace marklet::activex {

class ControlObject;

// The property with this DISPID; null when there is none.
const PropertyRow* PropertyOf(DISPID id);

// The interface as callers see it: a pointer to its slots. The slots behind those of IDispatch stand in the
// order of the property table, get, put and putref of each, and the method comes last.
class DispatchFace {
 public:
  explicit DispatchFace(ControlObject& control);
  DispatchFace(const DispatchFace&) = delete;
  DispatchFace& operator=(const DispatchFace&) = delete;

  IDispatch* Interface() { return reinterpret_cast<IDispatch*>(this); }
  ControlObject& Control() const { return *control_; }

 private:
  const void* const* slots_;  // first, since callers find the slots there
  ControlObject* control_;
};

// The members of IDispatch.
HRESULT GetTypeInfoOfDispatch(UINT index, ITypeInfo** info);
HRESULT GetIdsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids);
HRESULT InvokeMember(ControlObject& control, DISPID id, REFIID iid, WORD flags, DISPPARAMS* parameters,
                     VARIANT* result, EXCEPINFO* exception, UINT* bad_argument);

}  // namespace marklet::activex
