// Another system colour than before, as long as this lives.
#pragma once

#include "platform/win32/sdk.h"

namespace ocx_test {

class OtherSystemColour {
 public:
  explicit OtherSystemColour(int element) : element_(element), former_(GetSysColor(element)) {
    Put(former_ ^ 0x404041);
  }
  ~OtherSystemColour() { Put(former_); }
  OtherSystemColour(const OtherSystemColour&) = delete;
  OtherSystemColour& operator=(const OtherSystemColour&) = delete;

 private:
  void Put(COLORREF colour) const { SetSysColors(1, &element_, &colour); }
  int element_;
  COLORREF former_;
};

}  // namespace ocx_test
