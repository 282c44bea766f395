// Small automation objects without a type of their own: late-bound members from a table, all of them to read.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "activex/automation/error_report.h"
#include "activex/com/boundary.h"
#include "activex/com/com_object.h"
#include "activex/com/text.h"

namespace marklet::activex {

// `Object` derives from LateBound<Object> and has a table `kMembers` of Member. A member takes its number of
// arguments, and so many more that may be left out, none of them named, and leaves its answer in an empty
// variant.
template <typename Object>
class LateBound : public ComObject<IDispatch> {
 public:
  struct Member {
    std::string_view name;
    DISPID id;
    UINT arguments;
    HRESULT (Object::*answer)(const DISPPARAMS& parameters, VARIANT& result);
    UINT optional = 0;
  };

  STDMETHODIMP GetTypeInfoCount(UINT* count) override {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo** info) override {
    if (!info) return E_POINTER;
    *info = nullptr;
    return DISP_E_BADINDEX;
  }
  STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!ids || !names || count == 0) return E_POINTER;
    return Guarded([&] {
      std::fill_n(ids, count, DISPID_UNKNOWN);  // arguments have no names
      for (const Member& member : Object::kMembers)
        if (SameName(names[0], member.name)) ids[0] = member.id;
      return count == 1 && ids[0] != DISPID_UNKNOWN ? S_OK : DISP_E_UNKNOWNNAME;
    });
  }
  STDMETHODIMP Invoke(DISPID id, REFIID iid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT*) override {
    if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
    if (!parameters) return E_POINTER;
    if (result) ::VariantInit(result);
    return ReportInvoke(Guarded([&] { return Answer(id, flags, *parameters, result); }), exception);
  }

 private:
  HRESULT Answer(DISPID id, WORD flags, const DISPPARAMS& parameters, VARIANT* result) {
    const Member* member = std::find_if(std::begin(Object::kMembers), std::end(Object::kMembers),
                                        [id](const Member& row) { return row.id == id; });
    if (member == std::end(Object::kMembers)) return DISP_E_MEMBERNOTFOUND;
    if ((flags & (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) == 0) return DISP_E_MEMBERNOTFOUND;
    if (parameters.cNamedArgs != 0) return DISP_E_NONAMEDARGS;
    if (parameters.cArgs < member->arguments || parameters.cArgs > member->arguments + member->optional)
      return DISP_E_BADPARAMCOUNT;
    Variant answer;
    const HRESULT outcome = (static_cast<Object*>(this)->*member->answer)(parameters, answer);
    if (SUCCEEDED(outcome) && result) {
      *result = answer;
      ::VariantInit(&answer);  // what it held is the caller's now
    }
    return outcome;
  }
};

}  // namespace marklet::activex
