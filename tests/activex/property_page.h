// Property pages in the place of those that the control names, for the system's frame.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

// While it lives, the listed pages of a control (0 is the first that it names) are there to be created, and
// no others. A frame that shows one is closed at once.
class PropertyPages {
 public:
  PropertyPages(IUnknown* control, const std::vector<int>& there);
  ~PropertyPages();
  PropertyPages(const PropertyPages&) = delete;
  PropertyPages& operator=(const PropertyPages&) = delete;

  std::function<void()> on_activate;  // inside the frame, before it is closed

  std::vector<int> Created() const { return created_; }
  int ObjectsRight() const { return objects_right_; }  // pages that were given the control

 private:
  class Page;
  class Factory;
  std::vector<int> created_;
  int objects_right_ = 0;
  IUnknown* control_;
  std::vector<std::unique_ptr<Factory>> factories_;
  std::vector<DWORD> cookies_;
};

}  // namespace ocx_test
