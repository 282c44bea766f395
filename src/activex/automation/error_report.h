// What callers can learn of a failure beyond its result code.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

// Leaves the thread an error object with the system's words for a failure of the control, for callers that
// look for one, as its ISupportErrorInfo tells them to. Gives the result back.
HRESULT LeaveErrorInfo(HRESULT result) noexcept;

// The result of a late-bound call, of the control or of an object that it hands out. A member that failed
// itself, as against a call that was wrong, becomes an exception with the system's words when the caller
// takes one.
HRESULT ReportInvoke(HRESULT result, EXCEPINFO* exception) noexcept;

// Tells callers which interfaces leave such error objects.
class ErrorInfoFace final : public Face<ISupportErrorInfo> {
 public:
  using Face::Face;
  STDMETHODIMP InterfaceSupportsErrorInfo(REFIID iid) override;
};

}  // namespace marklet::activex
