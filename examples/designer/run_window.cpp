#include "run_window.h"

#include <algorithm>
#include <bit>

#include "element.h"
#include "examples/shared/event_log.h"
#include "property_value.h"
#include "refusal.h"

namespace designer {
namespace {

constexpr DWORD kFrame = WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
constexpr int kEventsHeight = 120, kLeastWidth = 320;

}  // namespace

RunWindow::RunWindow(const SavedForm& form, const std::wstring& title, HWND owner, const Look& look,
                     std::function<void()> on_closed)
    : look_(look), on_closed_(std::move(on_closed)) {
  Create(title, owner, {ToPixels(form.width, look.PerInch()), ToPixels(form.height, look.PerInch())});
  for (const SavedControl& control : form.controls) Place(control);
  ShowWindow(Window(), SW_SHOW);
  UpdateWindow(Window());
}

RunWindow::~RunWindow() { controls_.clear(); }

void RunWindow::Create(const std::wstring& title, HWND owner, SIZE form) {
  const LONG events = look_.Pixels(kEventsHeight), width = std::max<LONG>(form.cx, look_.Pixels(kLeastWidth));
  RECT outside = {0, 0, width, form.cy + events};
  AdjustWindowRectEx(&outside, kFrame, FALSE, 0);
  RECT above = {};
  GetWindowRect(owner, &above);
  OffsetRect(&outside, above.left + look_.Pixels(48) - outside.left,
             above.top + look_.Pixels(96) - outside.top);
  window_.Create({L"MarkletDesignerRun", title.c_str(), kFrame, 0, GetSysColorBrush(COLOR_BTNFACE)}, owner,
                 outside, [this](UINT message, WPARAM w, LPARAM l) { return Handle(message, w, l); });
  form_.Create({L"MarkletDesignerRunForm", L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
                GetSysColorBrush(COLOR_BTNFACE)},
               Window(), {0, 0, width, form.cy},
               [this](UINT message, WPARAM w, LPARAM l) { return form_.Default(message, w, l); });
  events_ = example::CreateEventPane(Window(), {0, form.cy, width, form.cy + events});
  SendMessageW(events_, WM_SETFONT, reinterpret_cast<WPARAM>(look_.Font()), TRUE);
  SendMessageW(events_, LB_SETITEMHEIGHT, 0, look_.LineHeight());
}

void RunWindow::Place(const SavedControl& saved) {
  const auto id = std::bit_cast<CLSID>(saved.class_id);
  const std::wstring name(saved.name.begin(), saved.name.end());
  try {
    auto control = std::make_unique<example::Control>(
        id, form_.Handle(), RectOf(ToPixels(saved.place, look_.PerInch())),
        example::Ambients{true, name, COLOR_BTNFACE, COLOR_BTNTEXT},
        [&](IOleObject& object) { example::StartFrom(object, saved.state); });
    control->Activate();
    controls_.push_back(std::move(control));
  } catch (HRESULT result) {
    throw Refusal{name + L" can't run. " + FailureText(result)};
  }
  // Later controls stand above earlier ones.
  SetWindowPos(controls_.back()->Window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  try {
    controls_.back()->Listen(example::ComPtr<IDispatch>(new example::EventSink(events_, name)).Get());
  } catch (HRESULT) {  // one without events
  }
}

LRESULT RunWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  const bool cancelled = message == WM_COMMAND && LOWORD(wparam) == IDCANCEL;  // the Escape key
  if (message != WM_CLOSE && !cancelled) return window_.Default(message, wparam, lparam);
  const auto on_closed = on_closed_;
  on_closed();  // after which there may be nothing left of this
  return 0;
}

}  // namespace designer
