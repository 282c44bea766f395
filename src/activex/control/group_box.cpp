#include "activex/control/group_box.h"

#include <algorithm>

namespace marklet::activex {
namespace {

// The system looks for windows of the class: forms may have a great many others.
::HWND NextButton(::HWND parent, ::HWND after) { return ::FindWindowExW(parent, after, L"Button", nullptr); }

// The buttons of one parent, from the top. Each step of a search costs as much as there are buttons, so that
// a form of hundreds of buttons and controls would take seconds to search for each control anew. New buttons
// come below all others, and those of another parent above them; one that is put between others right away is
// found when the look is too old.
class Buttons {
 public:
  const std::vector<::HWND>& Of(::HWND parent) {
    if (parent != parent_ || ::GetTickCount() - looked_ > kLongest || !AreAllThere()) Look(parent);
    return buttons_;
  }

 private:
  static constexpr DWORD kLongest = 1000;  // milliseconds

  bool AreAllThere() const {
    const auto is_there = [this](::HWND button) { return ::GetAncestor(button, GA_PARENT) == parent_; };
    if (buttons_.empty()) return !NextButton(parent_, nullptr);
    return std::all_of(buttons_.begin(), buttons_.end(), is_there) &&
           NextButton(parent_, nullptr) == buttons_.front() && !NextButton(parent_, buttons_.back());
  }
  void Look(::HWND parent) {
    parent_ = nullptr;
    buttons_.clear();
    for (::HWND button = NextButton(parent, nullptr); button; button = NextButton(parent, button))
      buttons_.push_back(button);
    parent_ = parent;
    looked_ = ::GetTickCount();
  }

  ::HWND parent_ = nullptr;
  DWORD looked_ = 0;
  std::vector<::HWND> buttons_;
};

bool IsGroupBox(::HWND button) {
  return (::GetWindowLongPtrW(button, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
}

}  // namespace

std::vector<::HWND> GroupBoxesAt(::HWND parent, const ::RECT& place) {
  thread_local Buttons buttons;
  std::vector<::HWND> result;
  for (const ::HWND button : buttons.Of(parent)) {
    if (!IsGroupBox(button)) continue;
    ::RECT rect = {}, common = {};
    ::GetWindowRect(button, &rect);
    ::MapWindowPoints(nullptr, parent, reinterpret_cast<::POINT*>(&rect), 2);
    if (::IntersectRect(&common, &rect, &place)) result.push_back(button);
  }
  return result;
}

}  // namespace marklet::activex
