#include "activex/control/group_box.h"

namespace marklet::activex {

// The system looks for windows of the class: forms may have a great many others.
std::vector<::HWND> GroupBoxesAt(::HWND parent, const ::RECT& place) {
  std::vector<::HWND> result;
  const auto next = [parent](::HWND after) { return ::FindWindowExW(parent, after, L"Button", nullptr); };
  for (::HWND button = next(nullptr); button; button = next(button)) {
    if ((::GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) != BS_GROUPBOX) continue;
    ::RECT rect = {}, common = {};
    ::GetWindowRect(button, &rect);
    ::MapWindowPoints(nullptr, parent, reinterpret_cast<::POINT*>(&rect), 2);
    if (::IntersectRect(&common, &rect, &place)) result.push_back(button);
  }
  return result;
}

}  // namespace marklet::activex
