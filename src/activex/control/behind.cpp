#include "activex/control/behind.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "activex/control/group_box.h"
#include "platform/gdi.h"
#include "platform/win32/handles.h"
#include "platform/win32/saved_state.h"

namespace marklet::activex {
namespace {

constexpr std::ptrdiff_t kBytesPerPixel = 4;

// The pixels that are drawn on. Those that nobody has drawn yet are marked, with a colour of their own.
class Canvas {
 public:
  explicit Canvas(HDC dc) : dc_(dc) { PixelsOf(dc, view_); }

  ::HDC Dc() const { return Native(dc_); }
  Long Width() const { return view_.width; }
  Long Height() const { return view_.height; }

  void MarkAll() {
    ForEach([](std::uint8_t* pixel) { Put(pixel, KeyColour); });
  }
  bool IsAnyMarked() const {
    bool result = false;
    ForEach([&](std::uint8_t* pixel) { result |= IsMarked(pixel); });
    return result;
  }
  void FillMarked(COLORREF colour) {
    ForEach([colour](std::uint8_t* pixel) {
      if (IsMarked(pixel)) Put(pixel, colour);
    });
  }
  // The pixels as they are now, to tell whether they have changed.
  std::vector<std::uint8_t> Content() const {
    GdiFlush();
    return {view_.bits, view_.bits + std::ptrdiff_t{view_.stride} * view_.height};
  }

 private:
  template <typename Visit>
  void ForEach(Visit visit) const {
    GdiFlush();
    std::uint8_t* const end = view_.bits + std::ptrdiff_t{view_.stride} * view_.height;
    for (std::uint8_t* pixel = view_.bits; pixel != end; pixel += kBytesPerPixel) visit(pixel);
  }
  static void Put(std::uint8_t* pixel, COLORREF colour) {
    pixel[0] = static_cast<std::uint8_t>(BlueOf(colour));
    pixel[1] = static_cast<std::uint8_t>(GreenOf(colour));
    pixel[2] = static_cast<std::uint8_t>(RedOf(colour));
    pixel[3] = 0;
  }
  static bool IsMarked(const std::uint8_t* pixel) {
    return MakeRgb(pixel[2], pixel[1], pixel[0]) == KeyColour;
  }

  HDC dc_;
  PixelView view_;
};

bool IsOfThisThread(::HWND window) {
  return ::GetWindowThreadProcessId(window, nullptr) == ::GetCurrentThreadId();
}

::HWND ParentOf(::HWND window) {
  const ::HWND parent = ::GetAncestor(window, GA_PARENT);
  return parent == ::GetDesktopWindow() ? nullptr : parent;
}

// Of two siblings.
bool IsAbove(::HWND window, ::HWND other) {
  while (window && window != other) window = ::GetWindow(window, GW_HWNDNEXT);
  return window != nullptr;
}

::RECT ClientOnScreen(::HWND window) {
  ::RECT rect = {};
  ::GetClientRect(window, &rect);
  ::MapWindowPoints(window, nullptr, reinterpret_cast<::POINT*>(&rect), 2);
  return rect;
}

// Whether the window counts from its right edge to the left.
bool IsMirrored(::HWND window) { return (::GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_LAYOUTRTL) != 0; }

::RECT OffsetBy(::RECT rect, ::POINT by) {
  ::OffsetRect(&rect, by.x, by.y);
  return rect;
}

// One snapshot.
class Scene {
 public:
  Scene(::HWND control, HDC dc)
      : control_(control), canvas_(dc), corner_{ClientOnScreen(control).left, ClientOnScreen(control).top} {}

  bool Paint(COLORREF otherwise) {
    canvas_.MarkAll();
    DrawUnder(control_);
    canvas_.FillMarked(otherwise);
    return is_for_good_;
  }

 private:
  // A rectangle of the screen on the canvas.
  ::RECT OnCanvas(const ::RECT& rect) const { return OffsetBy(rect, {-corner_.x, -corner_.y}); }
  ::RECT CanvasOnScreen() const { return OffsetBy({0, 0, canvas_.Width(), canvas_.Height()}, corner_); }

  void DrawUnder(::HWND child) {
    const ::HWND parent = ParentOf(child);
    if (!parent || !IsOfThisThread(parent)) return;
    AskParent(parent);
    if (canvas_.IsAnyMarked()) {
      // What the parent leaves open shows its own parent, which goes first then.
      canvas_.MarkAll();
      DrawUnder(parent);
      AskParent(parent);
    }
    for (::HWND sibling = ::GetWindow(child, GW_HWNDLAST); sibling && sibling != child;
         sibling = ::GetWindow(sibling, GW_HWNDPREV))
      DrawWithChildren(sibling);
    DrawGroupBoxesAbove(child, parent);
  }

  // The control paints over those that stand above it, too, unless it spares its siblings: it meets none
  // then.
  void DrawGroupBoxesAbove(::HWND child, ::HWND parent) {
    if ((::GetWindowLongPtrW(child, GWL_STYLE) & WS_CLIPSIBLINGS) != 0) return;
    ::RECT place = CanvasOnScreen();
    ::MapWindowPoints(nullptr, parent, reinterpret_cast<::POINT*>(&place), 2);
    const std::vector<::HWND> boxes = GroupBoxesAt(parent, place);
    for (auto box = boxes.rbegin(); box != boxes.rend(); ++box)
      if (IsAbove(*box, child)) DrawWithChildren(*box);
  }

  // Those that draw nothing when they are asked may do so when they paint.
  void AskParent(::HWND parent) {
    Ask(parent, [&](::HDC dc) { Send(parent, WM_ERASEBKGND, dc, 0); });
    const auto before = canvas_.Content();
    Ask(parent, [&](::HDC dc) { Send(parent, WM_PRINTCLIENT, dc, PRF_CLIENT); });
    if (canvas_.Content() != before) return;
    if (::IsWindowVisible(parent))
      ReadFromScreen(parent);
    else
      is_for_good_ = false;
  }

  static void Send(::HWND window, UINT message, ::HDC dc, LPARAM flags) {
    ::SendMessageW(window, message, reinterpret_cast<WPARAM>(dc), flags);
  }

  // Calls `draw` with the context as if the window's client area began at (0, 0).
  template <typename Draw>
  void Ask(::HWND window, Draw draw) const {
    const win32::SavedState state(canvas_.Dc());
    const ::RECT client = OnCanvas(ClientOnScreen(window));
    ::POINT origin = {client.left, client.top};
    if (IsMirrored(window)) {
      ::SetLayout(canvas_.Dc(), LAYOUT_RTL);
      origin.x = canvas_.Width() - client.right;
    }
    ::OffsetViewportOrgEx(canvas_.Dc(), origin.x, origin.y, nullptr);
    ::SetBrushOrgEx(canvas_.Dc(), origin.x, origin.y, nullptr);
    draw(canvas_.Dc());
  }

  void DrawWithChildren(::HWND window) {
    ::RECT whole = {}, seen = {};
    ::GetWindowRect(window, &whole);
    const ::RECT canvas = CanvasOnScreen();
    const bool is_shown = (::GetWindowLongPtrW(window, GWL_STYLE) & WS_VISIBLE) != 0;
    if (!is_shown || !IsOfThisThread(window) || !::IntersectRect(&seen, &whole, &canvas)) return;
    const win32::SavedState state(canvas_.Dc());
    DrawFrame(window, OnCanvas(whole));
    ::RECT client = {};
    ::GetClientRect(window, &client);
    Ask(window, [&](::HDC dc) {
      ::IntersectClipRect(dc, client.left, client.top, client.right, client.bottom);
      Send(window, WM_ERASEBKGND, dc, 0);
      Send(window, WM_PRINTCLIENT, dc, PRF_CLIENT);
    });
    const ::RECT inside = OnCanvas(ClientOnScreen(window));
    ::IntersectClipRect(canvas_.Dc(), inside.left, inside.top, inside.right, inside.bottom);
    const ::HWND top = ::GetWindow(window, GW_CHILD);
    for (::HWND child = top ? ::GetWindow(top, GW_HWNDLAST) : nullptr; child;
         child = ::GetWindow(child, GW_HWNDPREV))
      DrawWithChildren(child);
  }

  void DrawFrame(::HWND window, const ::RECT& whole) const {
    const ::RECT client = OnCanvas(ClientOnScreen(window));
    if (::EqualRect(&whole, &client)) return;
    const win32::SavedState state(canvas_.Dc());
    ::IntersectClipRect(canvas_.Dc(), whole.left, whole.top, whole.right, whole.bottom);
    ::OffsetViewportOrgEx(canvas_.Dc(), whole.left, whole.top, nullptr);
    Send(window, WM_PRINT, canvas_.Dc(), PRF_NONCLIENT);
  }

  // Has the parent paint on the screen where the control is, over what is on the canvas, and takes what is
  // there then.
  void ReadFromScreen(::HWND parent) {
    ::RECT place = CanvasOnScreen();
    ::MapWindowPoints(nullptr, parent, reinterpret_cast<::POINT*>(&place), 2);
    const ::HWND child = ChildOf(parent);
    // A parent that spares its children paints where a child is hidden. This hides it from the parent alone.
    const bool is_spared =
        child && ::IsWindowVisible(child) && (::GetWindowLongPtrW(parent, GWL_STYLE) & WS_CLIPCHILDREN) != 0;
    if (is_spared) ::DefWindowProcW(child, WM_SETREDRAW, FALSE, 0);
    const ::RECT client = ClientOnScreen(parent);
    const ::POINT corner = {corner_.x - client.left, corner_.y - client.top};
    WithScreen(parent, [&](::HDC screen) {
      ::BitBlt(screen, corner.x, corner.y, canvas_.Width(), canvas_.Height(), canvas_.Dc(), 0, 0,
               marklet::SRCCOPY);
    });
    ::RedrawWindow(parent, &place, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW | RDW_NOCHILDREN);
    WithScreen(parent, [&](::HDC screen) { CopyVisible(screen, corner); });
    if (is_spared) ::DefWindowProcW(child, WM_SETREDRAW, TRUE, 0);
    RepaintChildren(parent);
  }

  // The child of `parent` that is the control or holds it.
  ::HWND ChildOf(::HWND parent) const {
    ::HWND child = control_;
    while (child && ParentOf(child) != parent) child = ParentOf(child);
    return child;
  }

  // Calls `use` with a context of the window that doesn't spare its children and isn't mirrored.
  template <typename Use>
  static void WithScreen(::HWND window, Use use) {
    const ::HDC screen = ::GetDCEx(window, nullptr, DCX_CACHE);
    if (!screen) return;
    ::SetLayout(screen, 0);
    use(screen);
    ::ReleaseDC(window, screen);
  }

  void CopyVisible(::HDC screen, const ::POINT& corner) const {
    constexpr INT kVisibleRegion = 4;
    const HRGN visible = ::CreateRectRgn(0, 0, 0, 0);
    if (::GetRandomRgn(screen, visible, kVisibleRegion) == 1) {  // in the screen's coordinates
      const win32::SavedState state(canvas_.Dc());
      ::OffsetRgn(visible, -corner_.x, -corner_.y);
      ::SelectClipRgn(canvas_.Dc(), visible);
      ::BitBlt(canvas_.Dc(), 0, 0, canvas_.Width(), canvas_.Height(), screen, corner.x, corner.y,
               marklet::SRCCOPY);
    }
    ::DeleteObject(visible);
  }

  // The parent may have painted over them.
  void RepaintChildren(::HWND parent) const {
    for (::HWND child = ::GetWindow(parent, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
      ::RECT place = CanvasOnScreen();
      ::MapWindowPoints(nullptr, child, reinterpret_cast<::POINT*>(&place), 2);
      ::RedrawWindow(child, &place, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    }
  }

  ::HWND control_;
  Canvas canvas_;
  ::POINT corner_;  // of the canvas, on the screen
  bool is_for_good_ = true;
};

}  // namespace

bool PaintBehindWindow(::HWND window, HDC dc, COLORREF otherwise) {
  PixelView view;
  if (!PixelsOf(dc, view) || view.bits_per_pixel != 32) return false;
  return Scene(window, dc).Paint(otherwise);
}

}  // namespace marklet::activex
