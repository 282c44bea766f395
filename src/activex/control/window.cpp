#include "activex/control/window.h"

#include <array>
#include <bit>
#include <utility>

#include "activex/com/module.h"
#include "activex/control/group_box.h"
#include "activex/control/pointer.h"

namespace marklet::activex {
namespace {

constexpr UINT kResolutionChanged = 0x02E3;  // WM_DPICHANGED_AFTERPARENT, which older headers lack
constexpr wchar_t kClassName[] = L"zvsMarklet.Marklet";

// Held by one thread at a time. Its state is plain, so that it is there before and after all else.
class Lock {
 public:
  explicit Lock(SRWLOCK& lock) : lock_(lock) { ::AcquireSRWLockExclusive(&lock_); }
  ~Lock() { ::ReleaseSRWLockExclusive(&lock_); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  SRWLOCK& lock_;
};
SRWLOCK class_lock = SRWLOCK_INIT;

// Registered once a module: a class goes with the module that registered it. Threads that come here at the
// same time wait for the first one: a class that another thread is about to register exists before it can be
// used.
bool RegisterWindowClass(WNDPROC procedure) {
  const Lock lock(class_lock);
  WNDCLASSEXW description = {};
  description.cbSize = sizeof description;
  if (::GetClassInfoExW(ModuleInstance(), kClassName, &description)) return true;
  description.style = CS_DBLCLKS | CS_HREDRAW | CS_VREDRAW;
  description.lpfnWndProc = procedure;
  description.hInstance = ModuleInstance();
  description.hCursor = ::LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  description.lpszClassName = kClassName;
  return ::RegisterClassExW(&description) != 0;
}

constexpr short kRightButton = 2;
struct Button {
  UINT down, up, double_click;
  short number;
};
constexpr Button kButtons[] = {{WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, 1},
                               {WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, kRightButton},
                               {WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK, 4}};

short ButtonOf(UINT message) {
  for (const Button& button : kButtons)
    if (message == button.down || message == button.up || message == button.double_click)
      return button.number;
  return 0;
}

// The messages don't say whether Alt is down.
short ShiftOf(WPARAM keys) {
  return static_cast<short>(((keys & MK_SHIFT) != 0 ? 1 : 0) | ((keys & MK_CONTROL) != 0 ? 2 : 0) |
                            (::GetKeyState(VK_MENU) < 0 ? 4 : 0));
}

short XOf(LPARAM position) { return static_cast<short>(LOWORD(position)); }
short YOf(LPARAM position) { return static_cast<short>(HIWORD(position)); }

}  // namespace

const ControlWindow::Route ControlWindow::kRoutes[] = {
    {WM_PAINT, &ControlWindow::OnPaint, false},
    {WM_PRINTCLIENT, &ControlWindow::OnPrintClient, false},
    {WM_ERASEBKGND, &ControlWindow::OnEraseBackground, false},
    {WM_NCPAINT, &ControlWindow::OnPaintFrame, false},
    {WM_SIZE, &ControlWindow::OnSize, false},
    {WM_WINDOWPOSCHANGED, &ControlWindow::OnPlaced, false},
    {kResolutionChanged, &ControlWindow::OnSize, false},
    {WM_MOUSEMOVE, &ControlWindow::OnMouseMove, true},
    {WM_LBUTTONDOWN, &ControlWindow::OnButtonDown, true},
    {WM_RBUTTONDOWN, &ControlWindow::OnButtonDown, true},
    {WM_MBUTTONDOWN, &ControlWindow::OnButtonDown, true},
    {WM_LBUTTONUP, &ControlWindow::OnButtonUp, true},
    {WM_RBUTTONUP, &ControlWindow::OnButtonUp, true},
    {WM_MBUTTONUP, &ControlWindow::OnButtonUp, true},
    {WM_LBUTTONDBLCLK, &ControlWindow::OnDoubleClick, true},
    {WM_RBUTTONDBLCLK, &ControlWindow::OnDoubleClick, true},
    {WM_MBUTTONDBLCLK, &ControlWindow::OnDoubleClick, true},
    {WM_CAPTURECHANGED, &ControlWindow::OnCaptureLost, false},
    {WM_SETCURSOR, &ControlWindow::OnSetCursor, true},
    {WM_SETFOCUS, &ControlWindow::OnFocus, false},
    {WM_KILLFOCUS, &ControlWindow::OnFocus, false},
    {WM_DESTROY, &ControlWindow::OnDestroy, false},
    {WM_NCDESTROY, &ControlWindow::OnLast, false},
};

void UnregisterWindowClass() { ::UnregisterClassW(kClassName, ModuleInstance()); }

// --- The window -------------------------------------------------------------------------------------------

ControlWindow::~ControlWindow() {
  Destroy();
  ReleaseContext();
}

namespace {

// A window that spares its siblings shows nothing where one stands above it. Group boxes do so in dialogs,
// and are seen through.
DWORD StyleAt(::HWND parent, const ::RECT& position) {
  return GroupBoxesAt(parent, position).empty() ? WS_CHILD | WS_CLIPSIBLINGS : WS_CHILD;
}

}  // namespace

bool ControlWindow::Create(::HWND parent, const ::RECT& position) {
  if (window_) return true;
  if (!RegisterWindowClass(&Procedure)) return false;
  ReleaseContext();
  cut_ = false;
  creating_ = true;
  ::CreateWindowExW(0, kClassName, Wide(marklet_.State().Caption).c_str(), StyleAt(parent, position),
                    position.left, position.top, position.right - position.left,
                    position.bottom - position.top, parent, nullptr, ModuleInstance(), this);
  creating_ = false;
  return window_ != nullptr;
}

void ControlWindow::Destroy() {
  ReleaseContext();
  if (window_) ::DestroyWindow(window_);
}

bool ControlWindow::IsVisible() const {
  return window_ && (::GetWindowLongPtrW(window_, GWL_STYLE) & WS_VISIBLE) != 0;
}

void ControlWindow::Show() {
  if (window_) ::ShowWindow(window_, SW_SHOWNA);
}

void ControlWindow::Hide() {
  ReleaseMouse();
  if (window_) ::ShowWindow(window_, SW_HIDE);
}

void ControlWindow::ReleaseMouse() {
  if (window_ && ::GetCapture() == window_) ::ReleaseCapture();
}

::SIZE ControlWindow::ClientSize() const {
  ::RECT client = {};
  ::GetClientRect(window_, &client);
  return {client.right, client.bottom};
}

namespace {

::RECT PositionInParent(::HWND window) {
  ::RECT rect = {};
  ::GetWindowRect(window, &rect);
  ::MapWindowPoints(nullptr, ::GetAncestor(window, GA_PARENT), reinterpret_cast<::POINT*>(&rect), 2);
  return rect;
}

// To the place that the window is about to move to. False when the style is the same there.
bool FitStyle(::HWND window, const ::RECT& position) {
  const LONG_PTR now = ::GetWindowLongPtrW(window, GWL_STYLE);
  const DWORD spares = StyleAt(::GetAncestor(window, GA_PARENT), position) & WS_CLIPSIBLINGS;
  const LONG_PTR fitting = (now & ~LONG_PTR{WS_CLIPSIBLINGS}) | spares;
  if (fitting == now) return false;
  ::SetWindowLongPtrW(window, GWL_STYLE, fitting);
  return true;
}

}  // namespace

void ControlWindow::Place(const ::RECT& position, const ::RECT* clip) {
  if (!window_) return;
  ::RECT visible = position;
  const bool cut = clip && ::IntersectRect(&visible, &position, clip) && !::EqualRect(&visible, &position);
  if (cut) ::OffsetRect(&visible, -position.left, -position.top);
  // Containers say the same place again and again, and each of these calls is dear. The window owns the
  // region from then on.
  if (cut || cut_) ::SetWindowRgn(window_, cut ? ::CreateRectRgnIndirect(&visible) : nullptr, TRUE);
  cut_ = cut;
  if (const ::RECT now = PositionInParent(window_); ::EqualRect(&now, &position)) return;
  const UINT style_changed = FitStyle(window_, position) ? SWP_FRAMECHANGED : 0;
  ::SetWindowPos(window_, nullptr, position.left, position.top, position.right - position.left,
                 position.bottom - position.top, SWP_NOZORDER | SWP_NOACTIVATE | style_changed);
}

// --- What is painted on -----------------------------------------------------------------------------------

namespace {

// A context begins with the system's font and must not keep the control's. Some systems look a font up
// each time that it is selected.
void DeselectFont(::HDC context) {
  const ::HGDIOBJ system_font = ::GetStockObject(SYSTEM_FONT);
  if (::GetCurrentObject(context, OBJ_FONT) != system_font) ::SelectObject(context, system_font);
}

}  // namespace

::HDC ControlWindow::Context() {
  if (paint_context_) return paint_context_;
  // What was lent while nothing could be seen isn't the window's.
  if (borrowed_from_window_ != IsVisible()) ReleaseContext();
  if (!borrowed_context_) {
    borrowed_from_window_ = IsVisible();
    borrowed_context_ = borrowed_from_window_ ? ::GetDC(window_) : ::CreateCompatibleDC(nullptr);
  }
  return borrowed_context_;
}

::HDC ControlWindow::FontContext() {
  const ::HDC context = Context();
  if (const FontRef font = host_.Font()) ::SelectObject(context, Native(font->hFont()));
  return context;
}

void ControlWindow::ReleaseContext() {
  if (!borrowed_context_) return;
  DeselectFont(borrowed_context_);
  if (borrowed_from_window_)
    ::ReleaseDC(window_, borrowed_context_);
  else
    ::DeleteDC(borrowed_context_);
  borrowed_context_ = nullptr;
}

// --- Messages ---------------------------------------------------------------------------------------------

LRESULT CALLBACK ControlWindow::Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_NCCREATE) {
    auto* self = static_cast<ControlWindow*>(std::bit_cast<CREATESTRUCTW*>(lparam)->lpCreateParams);
    self->window_ = window;
    ::SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    // Children of a mirrored window are mirrored, which would turn over the picture that is copied there, and
    // its letters. The control has a direction of its own.
    ::SetWindowLongPtrW(window, GWL_EXSTYLE,
                        ::GetWindowLongPtrW(window, GWL_EXSTYLE) & ~LONG_PTR{WS_EX_LAYOUTRTL});
  }
  auto* self = std::bit_cast<ControlWindow*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
  if (!self) return ::DefWindowProcW(window, message, wparam, lparam);
  const Entry entry(self->owner_);
  LRESULT result = 0;
  Guarded([&] {
    result = self->Handle(message, wparam, lparam);
    return S_OK;
  });
  return result;
}

LRESULT ControlWindow::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  for (const Route& route : kRoutes) {
    if (route.message != message) continue;
    if (!route.is_mouse || input_.TakesMouse()) return (this->*route.handler)(message, wparam, lparam);
    ReleaseMouse();
    break;
  }
  return Default(message, wparam, lparam);
}

// Whoever was asked or told before may have ended the window.
LRESULT ControlWindow::Default(UINT message, WPARAM wparam, LPARAM lparam) {
  return window_ ? ::DefWindowProcW(window_, message, wparam, lparam) : 0;
}

// The container may do anything while the picture is built: have another paint message answered, or destroy
// the window, whose context may by then be another window's.
LRESULT ControlWindow::OnPaint(UINT, WPARAM, LPARAM) {
  PAINTSTRUCT paint;
  const ::HWND window = window_;
  const ::HDC context = ::BeginPaint(window, &paint);
  const ::HDC outer_context = std::exchange(paint_context_, context);
  marklet_.PaintControl(nullptr);
  if (window_ != window) return 0;
  paint_context_ = outer_context;
  if (context) DeselectFont(context);
  ::EndPaint(window, &paint);
  return 0;
}

LRESULT ControlWindow::OnPrintClient(UINT, WPARAM wparam, LPARAM) {
  marklet_.PaintControl(Wrap(std::bit_cast<::HDC>(wparam)));
  return 0;
}

// The picture covers everything, so that erasing would only flicker.
LRESULT ControlWindow::OnEraseBackground(UINT, WPARAM, LPARAM) { return 1; }

// The window is made without a frame, for which the system would open a context all the same; a container may
// have given it one.
LRESULT ControlWindow::OnPaintFrame(UINT message, WPARAM wparam, LPARAM lparam) {
  constexpr LONG_PTR kFrames = WS_BORDER | WS_DLGFRAME | WS_THICKFRAME | WS_HSCROLL | WS_VSCROLL;
  constexpr LONG_PTR kEdges = WS_EX_CLIENTEDGE | WS_EX_STATICEDGE | WS_EX_WINDOWEDGE | WS_EX_DLGMODALFRAME;
  const bool is_framed = (::GetWindowLongPtrW(window_, GWL_STYLE) & kFrames) != 0 ||
                         (::GetWindowLongPtrW(window_, GWL_EXSTYLE) & kEdges) != 0;
  return is_framed ? Default(message, wparam, lparam) : 0;
}

// The size that a window is made with is looked at when it is there.
LRESULT ControlWindow::OnSize(UINT, WPARAM, LPARAM) {
  if (creating_) return 0;
  listener_.SizeMayHaveChanged();
  return 0;
}

// Another parent may be on another monitor; nothing else tells so on every system.
LRESULT ControlWindow::OnPlaced(UINT message, WPARAM wparam, LPARAM lparam) {
  const LRESULT result = Default(message, wparam, lparam);
  listener_.SizeMayHaveChanged();
  return result;
}

LRESULT ControlWindow::OnMouseMove(UINT, WPARAM wparam, LPARAM lparam) {
  marklet_.MouseMove(ButtonsOf(wparam), ShiftOf(wparam), XOf(lparam), YOf(lparam));
  return 0;
}

LRESULT ControlWindow::OnButtonDown(UINT message, WPARAM wparam, LPARAM lparam) {
  const short button = ButtonOf(message);
  pressed_ = static_cast<short>(pressed_ | button);
  swallow_click_ = false;
  ::SetCapture(window_);
  marklet_.MouseDown(button, ShiftOf(wparam), XOf(lparam), YOf(lparam));
  return 0;
}

// A double click comes in place of the second press: the order is down, up, click, double click, up.
LRESULT ControlWindow::OnDoubleClick(UINT message, WPARAM, LPARAM) {
  pressed_ = static_cast<short>(pressed_ | ButtonOf(message));
  swallow_click_ = true;
  ::SetCapture(window_);
  marklet_.DblClick();
  return 0;
}

LRESULT ControlWindow::OnButtonUp(UINT message, WPARAM wparam, LPARAM lparam) {
  const short button = ButtonOf(message);
  const bool was_pressed = (pressed_ & button) != 0;
  const ::SIZE size = ClientSize();
  const bool inside = XOf(lparam) >= 0 && YOf(lparam) >= 0 && XOf(lparam) < size.cx && YOf(lparam) < size.cy;
  // The middle button doesn't click.
  const bool clicks = was_pressed && inside && !swallow_click_ && button != 4;
  pressed_ = static_cast<short>(pressed_ & ~button);
  if (pressed_ == 0 && ::GetCapture() == window_) ::ReleaseCapture();
  marklet_.MouseUp(button, ShiftOf(wparam), XOf(lparam), YOf(lparam));
  if (clicks) marklet_.Click();
  // The system makes the call for a context menu of it, which goes on to the container.
  return button == kRightButton ? Default(message, wparam, lparam) : 0;
}

LRESULT ControlWindow::OnCaptureLost(UINT, WPARAM, LPARAM) {
  pressed_ = 0;
  return 0;
}

LRESULT ControlWindow::OnSetCursor(UINT message, WPARAM wparam, LPARAM lparam) {
  const bool in_client = LOWORD(lparam) == HTCLIENT;
  if (in_client && SetPointer(host_.MousePointer(), host_.MouseIcon())) return TRUE;
  return Default(message, wparam, lparam);
}

LRESULT ControlWindow::OnFocus(UINT message, WPARAM wparam, LPARAM lparam) {
  input_.FocusChanged(message == WM_SETFOCUS);
  return Default(message, wparam, lparam);
}

LRESULT ControlWindow::OnDestroy(UINT message, WPARAM wparam, LPARAM lparam) {
  listener_.Leaving();
  return Default(message, wparam, lparam);
}

// The window is gone, by our hand or with its parent.
LRESULT ControlWindow::OnLast(UINT message, WPARAM wparam, LPARAM lparam) {
  ReleaseContext();
  paint_context_ = nullptr;
  const ::HWND window = window_;
  window_ = nullptr;
  pressed_ = 0;
  ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
  return ::DefWindowProcW(window, message, wparam, lparam);
}

}  // namespace marklet::activex
