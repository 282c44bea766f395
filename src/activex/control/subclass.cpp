#include "activex/control/subclass.h"

#include <bit>
#include <vector>

#include "activex/com/module.h"
#include "activex/control/window.h"
#include "base/ignore_errors.h"
#include "control/marklet.h"
#include "platform/system.h"
#include "platform/win32/handles.h"

namespace marklet::activex {

using plumbing::SubclassCall;

namespace {

constexpr Long kBefore = plumbing::kWhenBefore, kAfter = plumbing::kWhenAfter, kNever = 0;

}  // namespace

// The text itself is in no list: the window gives it. Its handler stays for whoever adds the message.
const WindowSubclass::Row WindowSubclass::kRows[] = {
    {WM_ERASEBKGND, kBefore, false, &WindowSubclass::OnEraseBackground},
    {WM_MOUSELEAVE, kAfter, false, &WindowSubclass::OnMouseLeave},
    {WM_THEMECHANGED, kAfter, false, nullptr},
    {WM_PRINT, kAfter, false, &WindowSubclass::OnPrint},
    {WM_PRINTCLIENT, kAfter, false, &WindowSubclass::OnPrint},
    {WM_GETTEXTLENGTH, kAfter, false, &WindowSubclass::OnGetTextLength},
    {WM_GETOBJECT, kAfter, false, nullptr},
    {WM_XBUTTONDOWN, kAfter, true, &WindowSubclass::OnExtendedButton},
    {WM_XBUTTONUP, kAfter, true, &WindowSubclass::OnExtendedButton},
    {WM_XBUTTONDBLCLK, kAfter, true, &WindowSubclass::OnExtendedButton},
    {WM_NCXBUTTONDOWN, kAfter, true, &WindowSubclass::OnNonClientExtendedButton},
    {WM_NCXBUTTONUP, kAfter, true, &WindowSubclass::OnNonClientExtendedButton},
    {WM_NCXBUTTONDBLCLK, kAfter, true, &WindowSubclass::OnNonClientExtendedButton},
    {WM_GETTEXT, kNever, false, &WindowSubclass::OnGetText},
};

// --- Start and end ----------------------------------------------------------------------------------------

// A window that is still there has its own procedure back after its next message.
WindowSubclass::~WindowSubclass() {
  if (proxy_window_) ::DestroyWindow(proxy_window_);
  if (subclassed_) subclasser_->ssc_Terminate();
}

void WindowSubclass::Loaded(::HWND window, bool extended_buttons) {
  loaded_ = true;
  extended_buttons_ = extended_buttons;
  Entered(window);
}

void WindowSubclass::Entered(::HWND window) {
  if (!loaded_ || !window || subclassed_) return;
  if (!IgnoreErrors([&] { StartSubclass(window); })) CreateProxyWindow(window);
}

void WindowSubclass::WindowGone() {
  subclassed_ = false;
  proxy_window_ = nullptr;  // it goes with its parent
}

void WindowSubclass::StartSubclass(::HWND window) {
  subclasser_ = std::make_unique<plumbing::CSubClassAsm>();
  subclasser_->SetOwner(this);
  bool unicode = false;
  if (!subclasser_->ssc_Subclass(window, 0, plumbing::kSubclassMethod, subclasser_.get(),
                                 !marklet_.State().DesignMode, unicode, false)) {
    // What a line of trace once began with; the host sees it read.
    host_.AmbientProperties().DisplayName();
    return;
  }
  AddMessages(window, kBefore, false);
  AddMessages(window, kAfter, false);
  if (extended_buttons_) AddMessages(window, kAfter, true);
  subclassed_ = true;
}

void WindowSubclass::AddMessages(::HWND window, Long when, bool extended) {
  std::vector<plumbing::MessageEntry> messages;
  for (const Row& row : kRows)
    if (row.when == when && row.extended == extended) messages.emplace_back(row.message);
  subclasser_->ssc_AddMsg(window, when, messages);
}

// A child out of sight that has the caption for its title, where setting up failed half way.
void WindowSubclass::CreateProxyWindow(::HWND window) {
  IgnoreErrors([&] {
    const std::string title = WideCharToMultiByte(CP_ACP, marklet_.State().Caption);
    const auto identifier = std::bit_cast<HMENU>(LONG_PTR{4096});
    proxy_window_ = ::CreateWindowExA(0, "Static", title.c_str(), WS_CHILD | WS_VISIBLE, -1000, -1000, 5, 5,
                                      window, identifier, ::GetModuleHandleW(nullptr), nullptr);
  });
}

// --- Messages ---------------------------------------------------------------------------------------------

void WindowSubclass::SubclassMessage(SubclassCall& call) {
  const Entry entry(owner_);
  for (const Row& row : kRows)
    if (static_cast<UINT>(row.message) == call.uMsg && call.bBefore == (row.when == kBefore)) {
      if (row.handler) (this->*row.handler)(call);
      return;
    }
}

void WindowSubclass::OnEraseBackground(SubclassCall& call) {
  call.bHandled = 1;
  call.lReturn = -1;
}

void WindowSubclass::OnMouseLeave(SubclassCall&) {
  marklet_.EndHover();
  if (input_.TakesMouse()) marklet_.MouseLeave();
}

// Whatever parts of the window were asked for.
void WindowSubclass::OnPrint(SubclassCall& call) {
  marklet_.PaintControl(Wrap(std::bit_cast<::HDC>(call.wParam)));
}

void WindowSubclass::OnGetTextLength(SubclassCall& call) {
  call.lReturn = static_cast<plumbing::Word>(marklet_.State().Caption.size());
}

void WindowSubclass::OnGetText(SubclassCall& call) {
  call.lReturn =
      static_cast<plumbing::Word>(marklet_.CopyCaption(call.wParam, std::bit_cast<char16_t*>(call.lParam)));
}

// --- Extended buttons -------------------------------------------------------------------------------------

// The vertical position stays in the horizontal one's upper half, and both are taken for twips across; hosts
// know it so.
void WindowSubclass::OnExtendedButton(SubclassCall& call) {
  const auto position = static_cast<Long>(call.lParam);
  Long y = (position & 0x7FFF0000) >> 16;
  if (position < 0) y |= 0x8000;
  const auto keys = static_cast<Long>(call.wParam);
  RaiseExtended(call.uMsg, {keys & (MK_XBUTTON1 | MK_XBUTTON2), keys & (MK_SHIFT | MK_CONTROL),
                            marklet_.ScaleXValue(position), marklet_.ScaleXValue(y)});
  call.lReturn = 1;
}

void WindowSubclass::OnNonClientExtendedButton(SubclassCall& call) {
  ::POINT place = {};
  ::GetCursorPos(&place);
  ::ScreenToClient(call.hWnd, &place);
  const auto down = [](int key, Long number) { return ::GetAsyncKeyState(key) != 0 ? number : 0; };
  const Long buttons = (call.lParam & 0x10000) != 0 ? MK_XBUTTON1 : MK_XBUTTON2;
  RaiseExtended(call.uMsg, {buttons, down(VK_SHIFT, 1) | down(VK_CONTROL, 2) | down(VK_MENU, 4),
                            marklet_.ScaleXValue(place.x), marklet_.ScaleXValue(place.y)});
  call.lReturn = 1;
}

// A release doesn't tell its button: it has that of the last press. Double clicks, and presses outside the
// client area, are no event.
void WindowSubclass::RaiseExtended(UINT message, const Press& press) {
  if (!input_.TakesMouse()) return;
  if (message == WM_XBUTTONDOWN) {
    marklet_.ExtendedMouseDown(press.buttons, press.shift, press.x, press.y);
    marklet_.State().XButtonDown = press.buttons;
  } else if (message == WM_XBUTTONUP) {
    marklet_.ExtendedMouseUp(marklet_.State().XButtonDown, press.shift, press.x, press.y);
  }
}

}  // namespace marklet::activex
