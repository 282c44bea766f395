#include "activex/control/pointer.h"

#include <bit>

#include "activex/automation/value_conversion.h"

namespace marklet::activex {
namespace {

constexpr Long kCustom = 99;

struct Shape {
  Long number;
  LPCWSTR cursor;
};

LPCWSTR SystemCursor(Long number) {
  const auto id = [](auto cursor) { return reinterpret_cast<LPCWSTR>(cursor); };
  const Shape shapes[] = {
      {1, id(IDC_ARROW)},        {2, id(IDC_CROSS)},    {3, id(IDC_IBEAM)},    {4, id(IDC_ICON)},
      {5, id(IDC_SIZEALL)},      {6, id(IDC_SIZENESW)}, {7, id(IDC_SIZENS)},   {8, id(IDC_SIZENWSE)},
      {9, id(IDC_SIZEWE)},       {10, id(IDC_UPARROW)}, {11, id(IDC_WAIT)},    {12, id(IDC_NO)},
      {13, id(IDC_APPSTARTING)}, {14, id(IDC_HELP)},    {15, id(IDC_SIZEALL)},
  };
  for (const Shape& shape : shapes)
    if (shape.number == number) return shape.cursor;
  return nullptr;
}

::HCURSOR CustomCursor(const HostObjectRef& icon) {
  ComPtr<IPicture> picture;
  const ComPtr<IPictureDisp> object = UnwrapPicture(icon);
  if (!object || FAILED(object.As(&picture))) return nullptr;
  SHORT type = 0;
  OLE_HANDLE handle = 0;
  if (FAILED(picture->get_Type(&type)) || type != PICTYPE_ICON || FAILED(picture->get_Handle(&handle)))
    return nullptr;
  return std::bit_cast<::HCURSOR>(ULONG_PTR{handle});
}

}  // namespace

bool SetPointer(Long number, const HostObjectRef& icon) {
  ::HCURSOR cursor = nullptr;
  if (number == kCustom)
    cursor = CustomCursor(icon);
  else if (const LPCWSTR name = SystemCursor(number))
    cursor = ::LoadCursorW(nullptr, name);
  if (!cursor) return false;
  ::SetCursor(cursor);
  return true;
}

std::int16_t ButtonsOf(WPARAM keys) {
  return static_cast<std::int16_t>(((keys & MK_LBUTTON) != 0 ? 1 : 0) | ((keys & MK_RBUTTON) != 0 ? 2 : 0) |
                                   ((keys & MK_MBUTTON) != 0 ? 4 : 0));
}

}  // namespace marklet::activex
