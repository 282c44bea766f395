#include "activex/page/window.h"

// commctrl.h needs windows.h first.
#include <commctrl.h>

#include <bit>

#include "activex/com/boundary.h"
#include "activex/com/module.h"
#include "activex/page/arrow_button.h"
#include "platform/win32/common_controls.h"
#include "platform/win32/resolution.h"

namespace marklet::activex::page {
namespace {

constexpr UINT kResolutionChanged = 0x02E3;  // WM_DPICHANGED_AFTERPARENT, which older headers lack

// A dialog without controls: those are made one by one, in pixels. The three words after the head stand for
// no menu, the system's class and no title.
struct Template {
  DLGTEMPLATE head = {DWORD{WS_CHILD | WS_CLIPSIBLINGS | DS_CONTROL}, WS_EX_CONTROLPARENT, 0, 0, 0, 0, 0};
  WORD menu = 0, class_name = 0, title = 0;
};

struct KindRow {
  const wchar_t* class_name;
  DWORD style, extended_style;
};
constexpr KindRow kKinds[] = {
    {L"STATIC", SS_LEFT, 0},
    {L"BUTTON", WS_TABSTOP | BS_PUSHBUTTON | WS_DISABLED, 0},
    {L"EDIT", WS_TABSTOP | ES_AUTOHSCROLL, WS_EX_CLIENTEDGE},
    {L"STATIC", WS_TABSTOP | SS_NOTIFY, WS_EX_CLIENTEDGE},
};
static_assert(static_cast<int>(Kind::Strip) + 1 == std::size(kKinds));

auto NewFont(const FontRow& row, int per_inch) {
  LOGFONTW font = {};
  font.lfHeight = -::MulDiv(row.hundredths, per_inch, 7200);
  font.lfWeight = row.weight;
  font.lfCharSet = row.charset;
  ::lstrcpynW(font.lfFaceName, row.face, LF_FACESIZE);
  return ::CreateFontIndirectW(&font);
}

bool IsArrow(Item item) { return item == Item::Previous || item == Item::Next; }

}  // namespace

// --- The window -------------------------------------------------------------------------------------------

bool Window::Create(::HWND parent, const ::RECT& position) {
  const Template description;
  draws_arrows_ = !HasFont(kFonts[static_cast<int>(Font::Arrows)].face);
  ::CreateDialogIndirectParamW(ModuleInstance(), &description.head, parent, Procedure,
                               reinterpret_cast<LPARAM>(this));
  if (!window_) return false;
  ::MoveWindow(window_, position.left, position.top, position.right - position.left,
               position.bottom - position.top, FALSE);
  CreateControls();
  CreateTips();
  Layout();
  return window_ != nullptr;
}

// Nothing of its end reaches the page any more.
void Window::Destroy() {
  const ::HWND window = window_;
  window_ = nullptr;
  if (window) {
    ::SetWindowLongPtrW(window, DWLP_USER, 0);
    ::DestroyWindow(window);
  }
  if (tips_) ::DestroyWindow(tips_);
  tips_ = nullptr;
  DeleteFonts();
}

void Window::CreateControls() {
  for (const ControlRow& row : kControls) CreateControl(row);
  const ::HWND strip = Control(Item::Strip);
  if (!strip) return;
  ::SetWindowLongPtrW(strip, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  strip_procedure_ = std::bit_cast<WNDPROC>(
      ::SetWindowLongPtrW(strip, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&StripProcedure)));
}

::HWND Window::CreateControl(const ControlRow& row) {
  const KindRow& kind = kKinds[static_cast<int>(row.kind)];
  const DWORD drawn = draws_arrows_ && IsArrow(row.item) ? BS_OWNERDRAW : 0;
  const auto id = std::bit_cast<HMENU>(static_cast<INT_PTR>(IdOf(row.item)));
  // The labels reach a little below what stands under them.
  const ::HWND control = ::CreateWindowExW(kind.extended_style, kind.class_name, row.caption,
                                           WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | kind.style | drawn, 0, 0,
                                           0, 0, window_, id, ModuleInstance(), nullptr);
  // Each new one goes to the end, where the Tab key comes last.
  ::SetWindowPos(control, reinterpret_cast<::HWND>(1), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  return control;
}

void Window::CreateTips() {
  win32::InitCommonControls();
  tips_ = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX,
                            0, 0, 0, 0, window_, nullptr, ModuleInstance(), nullptr);
  for (const ControlRow& row : kControls) {
    if (!row.tip) continue;
    std::wstring text = row.tip;
    TTTOOLINFOW tool = {};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;  // known to every system
    tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
    tool.hwnd = window_;
    tool.uId = reinterpret_cast<UINT_PTR>(Control(row.item));
    tool.lpszText = text.data();
    ::SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
  }
}

int Window::PerInch() const { return win32::PixelsPerInchOf(window_); }

// Places all for the resolution that the window has now.
void Window::Layout() {
  const int per_inch = PerInch();
  std::vector<::HFONT> old;
  old.swap(fonts_);
  for (const FontRow& row : kFonts) fonts_.push_back(NewFont(row, per_inch));
  for (const ControlRow& row : kControls) {
    const ::HWND control = Control(row.item);
    ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(fonts_[static_cast<std::size_t>(row.font)]),
                   FALSE);
    ::SetWindowPos(control, nullptr, Pixels(row.left, per_inch), Pixels(row.top, per_inch),
                   Pixels(row.width, per_inch), Pixels(row.height, per_inch), SWP_NOZORDER | SWP_NOACTIVATE);
  }
  for (const ::HFONT font : old) ::DeleteObject(font);
  ::InvalidateRect(window_, nullptr, TRUE);
}

void Window::DeleteFonts() {
  for (const ::HFONT font : fonts_) ::DeleteObject(font);
  fonts_.clear();
}

// --- Its controls -----------------------------------------------------------------------------------------

std::wstring Window::KeyText() const {
  const ::HWND control = Control(Item::Key);
  std::wstring text(static_cast<std::size_t>(::GetWindowTextLengthW(control)) + 1, L'\0');
  const int length = ::GetWindowTextW(control, text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

void Window::Enable(Item button, bool enabled) {
  const ::HWND control = Control(button);
  if (!control || enabled == (::IsWindowEnabled(control) != FALSE)) return;
  if (!enabled && ::GetFocus() == control) ::SendMessageW(window_, WM_NEXTDLGCTL, 0, FALSE);
  ::EnableWindow(control, enabled);
}

::SIZE Window::StripSize() const {
  ::RECT inside = {};
  ::GetClientRect(Control(Item::Strip), &inside);
  return {inside.right, inside.bottom};
}

// --- The keyboard -----------------------------------------------------------------------------------------

bool Window::Translate(MSG& message) {
  if (!window_ || message.message < WM_KEYFIRST || message.message > WM_KEYLAST) return false;
  if (message.hwnd != window_ && !::IsChild(window_, message.hwnd)) return false;
  // No caption has a mnemonic: what is pressed with Alt is meant for the frame.
  if (message.message >= WM_SYSKEYDOWN && message.message <= WM_SYSDEADCHAR) return false;
  if (message.message != WM_KEYDOWN) return ::IsDialogMessageW(window_, &message) != FALSE;
  const bool control = ::GetKeyState(VK_CONTROL) < 0;
  switch (message.wParam) {
    case VK_ESCAPE:
      return false;
    case VK_RETURN:
      return PressFocused();
    case VK_TAB:
      return !control && MoveFocus(::GetKeyState(VK_SHIFT) < 0);
    default:
      return ::IsDialogMessageW(window_, &message) != FALSE;
  }
}

bool Window::PressFocused() {
  const ::HWND focus = ::GetFocus();
  const LRESULT code = ::SendMessageW(focus, WM_GETDLGCODE, 0, 0);
  const bool is_button = (code & (DLGC_BUTTON | DLGC_DEFPUSHBUTTON | DLGC_UNDEFPUSHBUTTON)) != 0;
  if (!is_button || !::IsWindowEnabled(focus)) return false;
  ::SendMessageW(focus, BM_CLICK, 0, 0);
  return true;
}

// The numbers of the controls go up in the order of the Tab key: one that goes the other way has come round.
bool Window::MoveFocus(bool back) {
  const ::HWND focus = ::GetFocus(), next = ::GetNextDlgTabItem(window_, focus, back);
  const int step = ::GetDlgCtrlID(next) - ::GetDlgCtrlID(focus);
  if (!next || (back ? step >= 0 : step <= 0)) return false;
  ::SendMessageW(window_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
  return true;
}

// --- Messages ---------------------------------------------------------------------------------------------

INT_PTR CALLBACK Window::Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_INITDIALOG) {
    ::SetWindowLongPtrW(window, DWLP_USER, lparam);
    std::bit_cast<Window*>(lparam)->window_ = window;
    return FALSE;  // the frame sets the focus
  }
  auto* const self = std::bit_cast<Window*>(::GetWindowLongPtrW(window, DWLP_USER));
  if (!self) return FALSE;
  const ComPtr<IUnknown> keeper(&self->input_.Keeper());
  INT_PTR result = FALSE;
  Guarded([&] {
    result = self->Handle(message, wparam, lparam);
    return S_OK;
  });
  return result;
}

INT_PTR Window::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(wparam), HIWORD(wparam));
      return TRUE;
    case WM_PAINT:
      OnPaint();
      return TRUE;
    case WM_DRAWITEM: {
      const auto& button = *std::bit_cast<const DRAWITEMSTRUCT*>(lparam);
      DrawArrowButton(button, button.CtlID == static_cast<UINT>(IdOf(Item::Previous)));
      return TRUE;
    }
    case kResolutionChanged:
      Layout();
      input_.StripResized();
      return TRUE;
    case WM_NCDESTROY:  // with its parent; its tips belong to the frame and stay
      window_ = nullptr;
      Destroy();
      return FALSE;
    default:
      return FALSE;
  }
}

void Window::OnCommand(int id, int code) {
  if (id == IdOf(Item::Key)) {
    if (code == EN_CHANGE) input_.KeyTyped();
    return;
  }
  for (const ControlRow& row : kControls)
    if (row.kind == Kind::Button && id == IdOf(row.item) && code == BN_CLICKED)
      return input_.Pressed(row.item);
}

void Window::OnPaint() {
  PAINTSTRUCT paint = {};
  const ::HDC dc = ::BeginPaint(window_, &paint);
  const int per_inch = PerInch();
  for (const LineRow& line : kLines) {
    const int top = Pixels(line.top, per_inch);
    const ::RECT rect = {Pixels(line.left, per_inch), top, Pixels(line.right, per_inch), top + 1};
    ::FillRect(dc, &rect, ::GetSysColorBrush(line.colour));
  }
  ::EndPaint(window_, &paint);
}

// --- The strip --------------------------------------------------------------------------------------------

LRESULT CALLBACK Window::StripProcedure(::HWND strip, UINT message, WPARAM wparam, LPARAM lparam) {
  auto* const self = std::bit_cast<Window*>(::GetWindowLongPtrW(strip, GWLP_USERDATA));
  const WNDPROC procedure = self->strip_procedure_;
  // When the window goes with its page, no message is for the page any more.
  if (!self->window_) return ::CallWindowProcW(procedure, strip, message, wparam, lparam);
  const ComPtr<IUnknown> keeper(&self->input_.Keeper());
  LRESULT result = 0;
  bool handled = false;
  Guarded([&] {
    handled = self->HandleStrip(message, wparam, lparam, result);
    return S_OK;
  });
  return handled ? result : ::CallWindowProcW(procedure, strip, message, wparam, lparam);
}

bool Window::HandleStrip(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) {
  switch (message) {
    case WM_PAINT:
      PaintStrip();
      return true;
    case WM_PRINTCLIENT:
      input_.PaintStrip(std::bit_cast<::HDC>(wparam));
      return true;
    case WM_ERASEBKGND:
      result = TRUE;
      return true;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
      ::SetFocus(Control(Item::Strip));
      input_.StripPressed(static_cast<short>(LOWORD(lparam)));
      return true;
    default:
      return false;
  }
}

void Window::PaintStrip() {
  PAINTSTRUCT paint = {};
  const ::HWND strip = Control(Item::Strip);
  input_.PaintStrip(::BeginPaint(strip, &paint));
  ::EndPaint(strip, &paint);
}

}  // namespace marklet::activex::page
