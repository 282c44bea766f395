// `_Marklet`, the dual dispatch interface: late-bound calls by name and number, and early-bound ones through
// slots that are read off the property table.
#pragma once

#include "activex/automation/font.h"
#include "activex/com/face.h"
#include "control/marklet.h"
#include "control/properties.h"

namespace marklet::activex {

// The property with this DISPID; null when there is none.
const PropertyRow* PropertyOf(DISPID id);

// The interface as callers see it: a pointer to its slots. The slots after those of IDispatch stand in the
// order of the property table, get, put and putref of each, and the method comes last.
class DispatchFace {
 public:
  DispatchFace(FaceOwner& owner, Marklet& marklet, HostFont& host_font);
  DispatchFace(const DispatchFace&) = delete;
  DispatchFace& operator=(const DispatchFace&) = delete;

  IDispatch* Interface() { return reinterpret_cast<IDispatch*>(this); }
  // For the slots.
  FaceOwner& Owner() const { return *owner_; }
  Marklet& Control() const { return *marklet_; }
  HostFont& Font() const { return *host_font_; }

 private:
  const void* const* slots_;  // first, since callers find the slots there
  FaceOwner* owner_;
  Marklet* marklet_;
  HostFont* host_font_;
};

// The members of IDispatch.
HRESULT GetTypeInfoOfDispatch(UINT index, ITypeInfo** info);
HRESULT GetIdsOfNames(REFIID iid, LPOLESTR* names, UINT count, DISPID* ids);
HRESULT InvokeMember(Marklet& marklet, HostFont& host_font, DISPID id, REFIID iid, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception, UINT* bad_argument);

}  // namespace marklet::activex
