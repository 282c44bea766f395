// The control's tip: one of the system's, with the control's window as its only tool.
#pragma once

#include "host/tooltip.h"
#include "plumbing/unicode_tooltip.h"

namespace marklet::activex {

class WindowTooltip final : public HostTooltip {
 public:
  // Where the tip window can't be made nothing is shown.
  explicit WindowTooltip(::HWND window);
  void SetToolText(std::u16string_view text) override { tip_.SetToolText(window_, text); }

 private:
  ::HWND window_;
  plumbing::CUnicodeTooltip tip_;
};

}  // namespace marklet::activex
