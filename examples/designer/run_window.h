// A form that runs: its controls as they were saved, in a window of its own, over a list of their events.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "examples/shared/control.h"
#include "file_format.h"
#include "look.h"
#include "window.h"

namespace designer {

class RunWindow {
 public:
  // `on_closed` is called when the user closes the window, which may then be deleted. Throws a Refusal.
  RunWindow(const SavedForm& form, const std::wstring& title, HWND owner, const Look& look,
            std::function<void()> on_closed);
  ~RunWindow();
  RunWindow(const RunWindow&) = delete;
  RunWindow& operator=(const RunWindow&) = delete;

  HWND Window() const { return window_.Handle(); }
  HWND Events() const { return events_; }
  const std::vector<std::unique_ptr<example::Control>>& Controls() const { return controls_; }

 private:
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void Create(const std::wstring& title, HWND owner, SIZE form);
  void Place(const SavedControl& saved);

  const Look& look_;
  std::function<void()> on_closed_;
  OwnWindow window_, form_;
  HWND events_ = nullptr;
  std::vector<std::unique_ptr<example::Control>> controls_;
};

}  // namespace designer
