// The slots of `_Marklet`, built once from the property table.
#include <algorithm>
#include <iterator>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "activex/automation/dispatch.h"
#include "activex/automation/error_report.h"
#include "activex/automation/value_conversion.h"
#include "activex/com/text.h"
#include "control/property_table.h"

namespace marklet::activex {
namespace {

// --- The C types of the slots -----------------------------------------------------------------------------

Value FromNative(VARIANT_BOOL value) { return value != VARIANT_FALSE; }
Value FromNative(LONG value) { return static_cast<Long>(value); }
Value FromNative(BSTR value) { return FromBstr(value); }
Value FromNative(IFontDisp* value) { return FontFromObject(value); }
Value FromNative(IPictureDisp* value) { return WrapPicture(value); }

void ToNative(HostFont&, const Value& value, VARIANT_BOOL& result) {
  result = std::get<bool>(value) ? VARIANT_TRUE : VARIANT_FALSE;
}
void ToNative(HostFont&, const Value& value, LONG& result) { result = std::get<Long>(value); }
void ToNative(HostFont&, const Value& value, BSTR& result) {
  result = NewBstr(std::get<std::u16string>(value));
}
void ToNative(HostFont& host_font, const Value& value, IFontDisp*& result) {
  result = host_font.For(std::get<FontRef>(value)).Detach();
}
void ToNative(HostFont&, const Value& value, IPictureDisp*& result) {
  result = UnwrapPicture(std::get<HostObjectRef>(value)).Detach();
}

// --- The slots of a property ------------------------------------------------------------------------------

template <std::size_t Row, typename Native>
HRESULT STDMETHODCALLTYPE GetSlot(DispatchFace* face, Native* result) {
  if (!result) return E_POINTER;
  *result = {};
  const Entry entry(face->Owner());
  return LeaveErrorInfo(Guarded([&] {
    ToNative(face->Font(), face->Control().Get(property_table::kRows[Row]), *result);
    return S_OK;
  }));
}

template <std::size_t Row, typename Native>
HRESULT STDMETHODCALLTYPE PutSlot(DispatchFace* face, Native value) {
  const Entry entry(face->Owner());
  return LeaveErrorInfo(Guarded([&] {
    face->Control().Set(property_table::kRows[Row], FromNative(value));
    return S_OK;
  }));
}

// The slot takes what the method's row names.
static_assert(std::size(property_table::kLoadArguments) == 2 &&
              std::ranges::all_of(property_table::kLoadArguments, [](const Argument& argument) {
                return argument.type == ArgumentType::String;
              }));
HRESULT STDMETHODCALLTYPE LoadIconImageSlot(DispatchFace* face, BSTR file, BSTR key, VARIANT_BOOL* result) {
  if (!result) return E_POINTER;
  *result = VARIANT_FALSE;
  const Entry entry(face->Owner());
  return LeaveErrorInfo(Guarded([&] {
    if (face->Control().LoadIconImageFromFile(FromBstr(file), FromBstr(key))) *result = VARIANT_TRUE;
    return S_OK;
  }));
}

// --- The slots of IDispatch -------------------------------------------------------------------------------

HRESULT STDMETHODCALLTYPE QueryInterfaceSlot(DispatchFace* face, REFIID iid, void** object) {
  return face->Owner().QueryOuter(iid, object);
}
ULONG STDMETHODCALLTYPE AddRefSlot(DispatchFace* face) { return face->Owner().AddRefOuter(); }
ULONG STDMETHODCALLTYPE ReleaseSlot(DispatchFace* face) { return face->Owner().ReleaseOuter(); }

HRESULT STDMETHODCALLTYPE GetTypeInfoCountSlot(DispatchFace*, UINT* count) {
  if (!count) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE GetTypeInfoSlot(DispatchFace*, UINT index, LCID, ITypeInfo** info) {
  return Guarded([&] { return GetTypeInfoOfDispatch(index, info); });
}

HRESULT STDMETHODCALLTYPE GetIdsOfNamesSlot(DispatchFace*, REFIID iid, LPOLESTR* names, UINT count, LCID,
                                            DISPID* ids) {
  return Guarded([&] { return GetIdsOfNames(iid, names, count, ids); });
}

HRESULT STDMETHODCALLTYPE InvokeSlot(DispatchFace* face, DISPID id, REFIID iid, LCID, WORD flags,
                                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                     UINT* bad_argument) {
  const Entry entry(face->Owner());
  return Guarded([&] {
    return InvokeMember(face->Control(), face->Font(), id, iid, flags, parameters, result, exception,
                        bad_argument);
  });
}

// --- The table --------------------------------------------------------------------------------------------

using property_table::kRows;

template <typename Function>
const void* Slot(Function* function) {
  return reinterpret_cast<const void*>(function);
}

// The C type under which a value travels through a slot. A type of value without one isn't compiled.
template <typename Held>
struct NativeOf;
template <>
struct NativeOf<bool> {
  using Type = VARIANT_BOOL;
};
template <>
struct NativeOf<Long> {
  using Type = LONG;
};
template <>
struct NativeOf<std::u16string> {
  using Type = BSTR;
};
template <>
struct NativeOf<FontRef> {
  using Type = IFontDisp*;
};
template <>
struct NativeOf<HostObjectRef> {
  using Type = IPictureDisp*;
};

using SlotTable = std::vector<const void*>;

template <std::size_t Row>
void AddSlots(SlotTable& slots) {
  using Native = typename NativeOf<HeldAs<kRows[Row].type>>::Type;
  constexpr unsigned kAttributes = kRows[Row].attributes;
  slots.push_back(Slot(&GetSlot<Row, Native>));
  if constexpr ((kAttributes & kPut) != 0) slots.push_back(Slot(&PutSlot<Row, Native>));
  if constexpr ((kAttributes & kPutRef) != 0) slots.push_back(Slot(&PutSlot<Row, Native>));
}

template <std::size_t... Rows>
SlotTable BuildSlots(std::index_sequence<Rows...>) {
  SlotTable slots = {
      Slot(&QueryInterfaceSlot), Slot(&AddRefSlot),        Slot(&ReleaseSlot), Slot(&GetTypeInfoCountSlot),
      Slot(&GetTypeInfoSlot),    Slot(&GetIdsOfNamesSlot), Slot(&InvokeSlot)};
  (AddSlots<Rows>(slots), ...);
  slots.push_back(Slot(&LoadIconImageSlot));
  return slots;
}

const void* const* Slots() {
  static const SlotTable slots = BuildSlots(std::make_index_sequence<std::size(kRows)>());
  return slots.data();
}

}  // namespace

static_assert(std::is_standard_layout_v<DispatchFace>, "callers find the slots at its start");

DispatchFace::DispatchFace(FaceOwner& owner, Marklet& marklet, HostFont& host_font)
    : slots_(Slots()), owner_(&owner), marklet_(&marklet), host_font_(&host_font) {}

}  // namespace marklet::activex
