// A transparent control in hosts whose forms keep no picture of themselves: it looks as if only what it draws
// itself were there.
#include <array>
#include <bit>
#include <functional>
#include <list>
#include <memory>
#include <optional>

#include "activex/container.h"
#include "activex/picture.h"
#include "activex/server_copy.h"
#include "platform/system_colours.h"

namespace ocx_test {
namespace {

constexpr DWORD kBrush = 0x336699;
constexpr COLORREF Rgb(int red, int green, int blue) {
  return marklet::MakeRgb(static_cast<unsigned>(red), static_cast<unsigned>(green),
                          static_cast<unsigned>(blue));
}

// A window that draws as its test wants.
struct Drawing {
  std::function<bool(HDC dc, const RECT&client)> erase, print, paint;  // empty: the system's own answer
};
LRESULT CALLBACK DrawingProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto* drawing = std::bit_cast<const Drawing*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  RECT client = {};
  GetClientRect(window, &client);
  const HDC given = std::bit_cast<HDC>(wparam);
  if (drawing && message == WM_ERASEBKGND && drawing->erase) return drawing->erase(given, client);
  if (drawing && message == WM_PRINTCLIENT && drawing->print) return drawing->print(given, client);
  if (drawing && message == WM_PAINT && drawing->paint) {
    PAINTSTRUCT paint;
    drawing->paint(BeginPaint(window, &paint), client);
    EndPaint(window, &paint);
    return 0;
  }
  return DefWindowProcW(window, message, wparam, lparam);
}

HWND NewWindow(const Drawing* drawing, HWND parent, const RECT& place, DWORD style, bool has_brush = false) {
  static const HBRUSH brush = CreateSolidBrush(Rgb(0x33, 0x66, 0x99));
  const wchar_t* name = has_brush ? L"MarkletTestBrush" : L"MarkletTestHollow";
  WNDCLASSW description = {};
  description.lpfnWndProc = DrawingProcedure;
  description.hInstance = GetModuleHandleW(nullptr);
  description.hbrBackground = has_brush ? brush : nullptr;
  description.lpszClassName = name;
  RegisterClassW(&description);
  const HWND window =
      CreateWindowExW(0, name, L"", style, place.left, place.top, place.right - place.left,
                      place.bottom - place.top, parent, nullptr, GetModuleHandleW(nullptr), nullptr);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(drawing));
  return window;
}

// Another colour at each place.
COLORREF GradientAt(int x, int y) { return Rgb(x & 255, y & 255, (x + y) & 255); }
bool DrawGradient(HDC dc, const RECT& client) {
  static const Picture picture(300, 150);
  static const bool drawn = [] {
    for (int y = 0; y < picture.Height(); ++y)
      for (int x = 0; x < picture.Width(); ++x) SetPixelV(picture.Dc(), x, y, GradientAt(x, y));
    return true;
  }();
  return drawn && BitBlt(dc, 0, 0, client.right, client.bottom, picture.Dc(), 0, 0, marklet::SRCCOPY);
}
bool DrawNothing(HDC, const RECT&) { return true; }
// The moments at which a window may draw.
std::array<Drawing, 3> AtEachMoment(bool (*draw)(HDC dc, const RECT& client)) {
  return {{{draw, nullptr, nullptr}, {DrawNothing, draw, nullptr}, {nullptr, nullptr, draw}}};
}
DWORD ToRgb(COLORREF colour) {
  return static_cast<DWORD>(GetRValue(colour)) << 16 | static_cast<DWORD>(GetGValue(colour)) << 8 |
         GetBValue(colour);
}

// A control on a window of 300 by 150 pixels.
class Behind : public ::testing::Test {
 protected:
  void TearDown() override {
    if (container_) {
      container_->frame_window = nullptr;
      if (container_->Object()) container_->Close();
      container_.reset();
    }
    if (parent_) DestroyWindow(parent_);
    PumpMessages();
    EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  }

  void MakeParent(const Drawing& drawing, bool is_visible = true, DWORD style = 0, bool has_brush = false) {
    Server::Get();
    parent_ = NewWindow(Keep(drawing), nullptr, {40, 40, 340, 190}, WS_POPUP | style, has_brush);
    if (is_visible) ShowParent();
  }
  // As long as the windows live.
  const Drawing* Keep(const Drawing& drawing) { return &drawings_.emplace_back(drawing); }
  void ShowParent() {
    ShowWindow(parent_, SW_SHOWNOACTIVATE);
    UpdateWindow(parent_);
    PumpMessages();
  }
  // An empty transparent control in `window`, the parent unless another is given.
  void Activate(HWND window = nullptr) {
    container_.emplace();
    Place(window ? window : parent_);
  }
  void Place(HWND window) {
    container_->frame_window = window;
    container_->position = place_;
    container_->clip = {-1000, -1000, 1000, 1000};
    container_->Host();
    PutNumber(Object().Get(), L"BackStyle", 0);
    ASSERT_EQ(S_OK, container_->Activate());
    PumpMessages();
  }
  // For another round.
  void CloseAll() {
    container_->frame_window = nullptr;
    container_->Close();
    DestroyWindow(parent_);
    parent_ = nullptr;
  }
  ComPtr<IDispatch> Object() const { return container_->Dispatch(); }

  // The picture as others get it.
  DWORD At(int x, int y) const {
    Picture picture(place_.right - place_.left, place_.bottom - place_.top);
    SendMessageW(container_->ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()),
                 PRF_CLIENT);
    return picture.At(x, y);
  }
  using Colours = std::function<DWORD(int x, int y)>;  // of the parent's client area
  void ExpectLook(const Colours& expected) const {
    const int width = place_.right - place_.left, height = place_.bottom - place_.top;
    Picture picture(width, height);
    SendMessageW(container_->ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()),
                 PRF_CLIENT);
    for (int y = 0; y < height; ++y)
      for (int x = 0; x < width; ++x)
        ASSERT_EQ(expected(place_.left + x, place_.top + y), picture.At(x, y)) << x << "," << y;
  }
  void ExpectGradient() const {
    ExpectLook([](int x, int y) { return ToRgb(GradientAt(x, y)); });
  }
  // And what stands on the screen.
  void ExpectGradientOnScreen() const {
    UpdateWindow(container_->ControlWindow());
    const HDC dc = GetDC(container_->ControlWindow());
    for (const auto& [x, y] : {std::pair{0, 0}, {7, 11}, {59, 29}})
      EXPECT_EQ(GradientAt(place_.left + x, place_.top + y), GetPixel(dc, x, y)) << x << "," << y;
    ReleaseDC(container_->ControlWindow(), dc);
  }

  // What is seen at the control's place, whoever drew it.
  void TakeScreen(const Picture& picture, HWND window = nullptr) const {
    const HDC dc = GetDCEx(window ? window : parent_, nullptr, DCX_CACHE);
    BitBlt(picture.Dc(), 0, 0, picture.Width(), picture.Height(), dc, place_.left, place_.top,
           marklet::SRCCOPY);
    ReleaseDC(window ? window : parent_, dc);
  }

  RECT place_ = {20, 30, 80, 60};
  std::list<Drawing> drawings_;
  HWND parent_ = nullptr;
  std::optional<Container> container_;
};

TEST_F(Behind, AWindowsPlainBackgroundIsSeen) {
  MakeParent({}, true, 0, true);
  Activate();
  ExpectLook([](int, int) { return kBrush; });
}

TEST_F(Behind, WhatAWindowErasesWithIsSeen) {
  MakeParent({DrawGradient, nullptr, nullptr});
  Activate();
  ExpectGradient();
  ExpectGradientOnScreen();
}

TEST_F(Behind, WhatAWindowPrintsOverItsBackgroundIsSeen) {
  MakeParent({DrawNothing, DrawGradient, nullptr});
  Activate();
  ExpectGradient();
}

TEST_F(Behind, WhatAWindowDrawsOnlyWhenItPaintsIsSeen) {
  for (const DWORD style : {DWORD{0}, DWORD{WS_CLIPCHILDREN}})
    for (const bool has_brush : {false, true}) {
      SCOPED_TRACE(style);
      MakeParent({nullptr, nullptr, DrawGradient}, true, style, has_brush);
      Activate();
      ExpectGradient();
      ExpectGradientOnScreen();
      CloseAll();
    }
}

TEST_F(Behind, AGrownControlSeesWhatAWindowOnlyPaintsToo) {
  MakeParent({nullptr, nullptr, DrawGradient}, true, WS_CLIPCHILDREN);
  Activate();
  place_ = {20, 30, 180, 120};
  As<IOleInPlaceObject>(Object())->SetObjectRects(&place_, &container_->clip);
  PumpMessages();
  ExpectGradient();
  ExpectGradientOnScreen();
}

TEST_F(Behind, AControlThatIsActiveBeforeItsWindowIsSeenFollows) {
  for (const Drawing& kind : AtEachMoment(DrawGradient)) {
    MakeParent(kind, false);
    Activate();
    ShowParent();
    UpdateWindow(container_->ControlWindow());
    ExpectGradient();
    ExpectGradientOnScreen();
    CloseAll();
  }
}

TEST_F(Behind, AControlHalfOutsideItsWindowIsWholeInside) {
  const RECT whole = {0, 0, 300, 150};
  for (const Drawing& kind : AtEachMoment(DrawGradient))
    for (const RECT& place : {RECT{-30, -10, 30, 20}, RECT{270, 140, 330, 170}}) {
      MakeParent(kind);
      place_ = place;
      Activate();
      RECT inside = {};
      IntersectRect(&inside, &place, &whole);
      for (int y = inside.top; y < inside.bottom; ++y)
        for (int x = inside.left; x < inside.right; ++x)
          ASSERT_EQ(ToRgb(GradientAt(x, y)), At(x - place.left, y - place.top)) << x << "," << y;
      CloseAll();
    }
}

TEST_F(Behind, AWindowThatDrawsNothingShowsItsOwnParent) {
  MakeParent({DrawGradient, nullptr, nullptr});
  Drawing nothing = {DrawNothing, nullptr, DrawNothing};
  const HWND frame = NewWindow(Keep(nothing), parent_, {10, 10, 200, 100}, WS_CHILD | WS_VISIBLE);
  Activate(frame);
  ExpectLook([](int x, int y) { return ToRgb(GradientAt(x + 10, y + 10)); });
}

TEST_F(Behind, APageThatPassesOnToItsParentIsSeenThrough) {
  MakeParent({nullptr, DrawGradient, nullptr});
  const auto page = std::make_shared<HWND>();
  // What the system's themed pages do.
  Drawing passing = {[this, page](HDC dc, const RECT&) {
                       POINT corner = {};
                       MapWindowPoints(*page, parent_, &corner, 1);
                       POINT old = {};
                       OffsetViewportOrgEx(dc, -corner.x, -corner.y, &old);
                       SendMessageW(parent_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
                       SetViewportOrgEx(dc, old.x, old.y, nullptr);
                       return true;
                     },
                     nullptr, nullptr};
  *page = NewWindow(Keep(passing), parent_, {15, 25, 250, 140}, WS_CHILD | WS_VISIBLE);
  Activate(*page);
  ExpectLook([](int x, int y) { return ToRgb(GradientAt(x + 15, y + 25)); });
}

TEST_F(Behind, APictureBelowTheControlIsSeenOneAboveIsNot) {
  MakeParent({DrawGradient, nullptr, nullptr});
  const Drawing red = {[](HDC dc, const RECT& client) {
                         const HBRUSH brush = CreateSolidBrush(Rgb(255, 0, 0));
                         FillRect(dc, &client, brush);
                         DeleteObject(brush);
                         return true;
                       },
                       nullptr, nullptr};
  const HWND below = NewWindow(Keep(red), parent_, {50, 0, 100, 100}, WS_CHILD | WS_VISIBLE);
  const HWND above = NewWindow(Keep(red), parent_, {20, 30, 25, 35}, WS_CHILD | WS_VISIBLE);
  Activate();
  SetWindowPos(above, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  SetWindowPos(below, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  place_ = {20, 30, 120, 70};  // larger than before: it is taken anew
  As<IOleInPlaceObject>(Object())->SetObjectRects(&place_, &container_->clip);
  ExpectLook([](int x, int y) { return x >= 50 && x < 100 ? 0xFF0000u : ToRgb(GradientAt(x, y)); });
}

TEST_F(Behind, AHiddenPictureIsNotSeen) {
  MakeParent({DrawGradient, nullptr, nullptr});
  const Drawing red = {DrawNothing, nullptr, nullptr};
  NewWindow(Keep(red), parent_, {0, 0, 300, 150}, WS_CHILD);
  Activate();
  ExpectGradient();
}

TEST_F(Behind, WhereNobodyDrawsThereIsTheHostsBackground) {
  MakeParent({DrawNothing, nullptr, DrawNothing});
  container_.emplace();
  container_->ambients.back_color = 0x112233;
  Place(parent_);
  ExpectLook([](int, int) { return 0x332211; });
}

TEST_F(Behind, TheCaptionStandsInFrontOfIt) {
  MakeParent({DrawGradient, nullptr, nullptr});
  Activate();
  PutText(Object().Get(), L"Caption", L"<b>MM</b>");
  PutNumber(Object().Get(), L"ForeColor", 0x0000FF);
  int ink = 0, other = 0;
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 60; ++x) {
      const DWORD pixel = At(x, y);
      ink += pixel == 0xFF0000;
      other += pixel == ToRgb(GradientAt(place_.left + x, place_.top + y));
    }
  EXPECT_GT(ink, 20);
  EXPECT_GT(other, 1000);
}

INT_PTR CALLBACK LeaveAllToTheDialog(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

HWND NewDialog(DWORD style, HWND parent) {
  struct {
    DLGTEMPLATE head;
    WORD menu, window_class, title;
  } dialog = {};
  dialog.head = {style, 0, 0, 0, 0, 150, 80};
  return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &dialog.head, parent, LeaveAllToTheDialog, 0);
}

// A dialog as the system has it, with a group box, and the same without the control.
class BehindOnADialog : public Behind {
 protected:
  void SetUp() override {
    Server::Get();
    parent_ = NewDialog(WS_POPUP, nullptr);
    ASSERT_TRUE(parent_);
    box_ = CreateWindowExW(0, L"Button", L"Group", WS_CHILD | WS_VISIBLE | BS_GROUPBOX, 5, 5, 150, 100,
                           parent_, nullptr, nullptr, nullptr);
    ShowParent();
  }
  // Some of it is the caption's, all else is as it was without the control.
  void ExpectOnlyInkOnScreen(const Picture& without) const {
    Picture with(without.Width(), without.Height());
    TakeScreen(with);
    int ink = 0;
    for (int y = 0; y < with.Height(); ++y)
      for (int x = 0; x < with.Width(); ++x) {
        const bool is_ink = with.At(x, y) == 0xFF0000;
        ink += is_ink;
        if (is_ink) continue;
        ASSERT_EQ(without.At(x, y), with.At(x, y)) << x << "," << y;
      }
    EXPECT_GT(ink, 20);
  }

  HWND box_ = nullptr;
};

TEST_F(BehindOnADialog, ItLooksAsIfOnlyItsInkWereThere) {
  Picture without(60, 30);
  TakeScreen(without);
  Activate();
  SetWindowPos(box_, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  ExpectLook([&](int x, int y) { return without.At(x - place_.left, y - place_.top); });
}

// The box is the first in the order of the keyboard, and so above what stands in it. The second place lies on
// its frame.
TEST_F(BehindOnADialog, BelowAGroupBoxItLooksSoToo) {
  for (const RECT& place : {RECT{20, 30, 80, 60}, RECT{2, 30, 62, 60}}) {
    place_ = place;
    Picture without(60, 30);
    TakeScreen(without);
    Activate();
    ASSERT_EQ(box_, GetWindow(container_->ControlWindow(), GW_HWNDPREV));
    PutNumber(Object().Get(), L"ForeColor", 0x0000FF);
    PutText(Object().Get(), L"Caption", L"<b>MM</b>");
    ExpectOnlyInkOnScreen(without);
    RedrawWindow(parent_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    ExpectOnlyInkOnScreen(without);
    container_->frame_window = nullptr;
    container_->Close();
    RedrawWindow(parent_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  }
}

// Such a page draws the tab control's body, which isn't the colour of dialogs.
TEST_F(BehindOnADialog, OnAThemedPageOfATabControlItLooksSoToo) {
  const HMODULE themes = LoadLibraryW(L"uxtheme.dll");
  const auto put_texture = reinterpret_cast<HRESULT(WINAPI*)(HWND, DWORD)>(
      reinterpret_cast<void*>(GetProcAddress(themes, "EnableThemeDialogTexture")));
  ASSERT_TRUE(put_texture);
  constexpr DWORD kTabTexture = 6;
  LoadLibraryW(L"comctl32.dll");
  const HWND tabs = CreateWindowExW(0, L"SysTabControl32", L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 0, 0,
                                    250, 150, parent_, nullptr, nullptr, nullptr);
  ASSERT_TRUE(tabs);
  const HWND page = NewDialog(WS_CHILD | WS_VISIBLE, parent_);
  EXPECT_EQ(S_OK, put_texture(page, kTabTexture));
  SetWindowPos(page, HWND_TOP, 10, 30, 200, 100, 0);
  PumpMessages();
  Picture without(60, 30);
  TakeScreen(without, page);
  EXPECT_NE(ToRgb(GetSysColor(marklet::COLOR_BTNFACE)), without.At(0, 0));
  Activate(page);
  ExpectLook([&](int x, int y) { return without.At(x - place_.left, y - place_.top); });
}

TEST_F(Behind, AGroupBoxThatHoldsTheControlIsSeen) {
  MakeParent({DrawGradient, nullptr, nullptr});
  const HWND box = CreateWindowExW(0, L"Button", L"", WS_CHILD | WS_VISIBLE | BS_GROUPBOX, 10, 10, 200, 100,
                                   parent_, nullptr, nullptr, nullptr);
  Activate(box);
  EXPECT_EQ(ToRgb(GradientAt(10 + 50, 10 + 45)), At(30, 15)) << "inside of it is its parent";
}

TEST_F(BehindOnADialog, MovedBelowAGroupBoxItIsSeenAndElsewhereItSparesWindowsAboveIt) {
  const auto spares_siblings = [&] {
    return (GetWindowLongPtrW(container_->ControlWindow(), GWL_STYLE) & WS_CLIPSIBLINGS) != 0;
  };
  const RECT outside = {170, 30, 230, 60}, inside = place_;
  Picture without(60, 30);
  TakeScreen(without);
  place_ = outside;
  Activate();
  EXPECT_TRUE(spares_siblings());
  PutNumber(Object().Get(), L"ForeColor", 0x0000FF);
  PutText(Object().Get(), L"Caption", L"<b>MM</b>");
  place_ = inside;
  As<IOleInPlaceObject>(Object())->SetObjectRects(&place_, &container_->clip);
  PumpMessages();
  ExpectOnlyInkOnScreen(without);
  As<IOleInPlaceObject>(Object())->SetObjectRects(&outside, &container_->clip);
  EXPECT_TRUE(spares_siblings());
}

// --- Windows of other threads ---------------------------------------------------------------------------

// A window that a thread of its own serves as long as this lives.
class ForeignWindow {
 public:
  ForeignWindow() : thread_([this] { Serve(); }) { EXPECT_TRUE(ready_.Wait()); }
  ~ForeignWindow() {
    PostThreadMessageW(GetWindowThreadProcessId(window_, nullptr), WM_QUIT, 0, 0);
    EXPECT_TRUE(thread_.Join());
  }
  ForeignWindow(const ForeignWindow&) = delete;
  ForeignWindow& operator=(const ForeignWindow&) = delete;
  HWND Window() const { return window_; }

 private:
  void Serve() {
    static const Drawing gradient = {DrawGradient, DrawGradient, nullptr};
    window_ = NewWindow(&gradient, nullptr, {40, 40, 340, 190}, WS_POPUP | WS_VISIBLE);
    ready_.Give();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    DestroyWindow(window_);
  }

  Signal ready_;
  HWND window_ = nullptr;
  HostThread thread_;
};

// They might never answer.
TEST_F(Behind, WhereWindowsOfOtherThreadsWouldShowThereIsTheHostsBackground) {
  const ForeignWindow foreign;
  const Drawing nothing = {DrawNothing, nullptr, DrawNothing};
  const HWND between = NewWindow(&nothing, foreign.Window(), {0, 0, 300, 150}, WS_CHILD | WS_VISIBLE);
  for (const HWND window : {foreign.Window(), between}) {
    container_.emplace();
    container_->ambients.back_color = 0x112233;
    Place(window);
    ExpectLook([](int, int) { return 0x332211; });
    container_->frame_window = nullptr;
    container_->Close();
  }
  container_.reset();
  DestroyWindow(between);
}

// --- Mirrored windows -------------------------------------------------------------------------------------

// Two colours that meet below the control, counted from the window's left; from its right, where that is
// mirrored.
bool DrawHalves(HDC dc, const RECT& client) {
  constexpr int kMiddle = 45;
  for (const bool is_right : {false, true}) {
    const RECT half = {is_right ? kMiddle : 0, 0, is_right ? client.right : kMiddle, client.bottom};
    const HBRUSH brush = CreateSolidBrush(is_right ? Rgb(0, 128, 0) : Rgb(200, 100, 0));
    FillRect(dc, &half, brush);
    DeleteObject(brush);
  }
  return true;
}

class BehindMirrored : public Behind {
 protected:
  void MakeMirrored(const Drawing& drawing) {
    MakeParent(drawing, false);
    SetWindowLongPtrW(parent_, GWL_EXSTYLE, WS_EX_LAYOUTRTL);
    ShowParent();
  }
  // What is seen at the control's place by someone in front of the screen.
  void TakeUnmirrored(const Picture& picture) const {
    const HDC dc = GetDCEx(parent_, nullptr, DCX_CACHE);
    SetLayout(dc, 0);
    BitBlt(picture.Dc(), 0, 0, picture.Width(), picture.Height(), dc, 300 - place_.right, place_.top,
           marklet::SRCCOPY);
    ReleaseDC(parent_, dc);
  }
};

TEST_F(BehindMirrored, WhatLiesBehindIsSeenAsTheWindowDrawsIt) {
  for (const Drawing& kind : AtEachMoment(DrawHalves)) {
    MakeMirrored(kind);
    Activate();
    UpdateWindow(container_->ControlWindow());
    Picture screen(60, 30);
    TakeUnmirrored(screen);
    for (int x = 0; x < 60; ++x) ASSERT_EQ(x < 35 ? 0x008000u : 0xC86400u, screen.At(x, 5)) << x;
    CloseAll();
  }
}

TEST_F(BehindMirrored, LettersAreNotTurnedOver) {
  MakeMirrored({DrawGradient, nullptr, nullptr});
  Activate();
  PutNumber(Object().Get(), L"BackStyle", 1);
  PutText(Object().Get(), L"Caption", L"<b>FLR</b>");
  UpdateWindow(container_->ControlWindow());
  Picture screen(60, 30), printed(60, 30);
  TakeUnmirrored(screen);
  SendMessageW(container_->ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(printed.Dc()),
               PRF_CLIENT);
  for (int y = 0; y < 30; ++y)
    for (int x = 0; x < 60; ++x) ASSERT_EQ(printed.At(x, y), screen.At(x, y)) << x << "," << y;
  EXPECT_NE(printed.Count(printed.At(59, 29)), 60 * 30) << "there are letters";
}

// The control is asked to print, painted, and closed from inside.
TEST_F(Behind, AnythingMayHappenWhileAWindowIsAsked) {
  using Act = void (*)(Container&);
  const Act acts[] = {
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); },
      [](Container& c) { c.Close(); },
      [](Container& c) { c.Drop(); },
      [](Container& c) { DestroyWindow(c.ControlWindow()); },
      [](Container& c) { DestroyWindow(c.frame_window); },
      [](Container& c) { UpdateWindow(c.ControlWindow()); },
      [](Container& c) { PutText(c.Dispatch().Get(), L"Caption", L"inside"); },
      [](Container& c) {
        const HDC dc = CreateCompatibleDC(nullptr);
        SendMessageW(c.ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(dc), PRF_CLIENT);
        DeleteDC(dc);
      },
      [](Container& c) {
        const RECT rect = {0, 0, 300, 200};
        As<IOleInPlaceObject>(c.Object())->SetObjectRects(&rect, &rect);
      },
  };
  for (int kind = 0; kind < 3; ++kind)
    for (const Act act : acts) {
      Container container;
      bool done = false, armed = false;
      const auto draw = [&](HDC, const RECT&) {
        if (armed && !std::exchange(done, true)) act(container);
        return true;
      };
      Drawing drawing;
      (kind == 0 ? drawing.erase : kind == 1 ? drawing.print : drawing.paint) = draw;
      const HWND parent = NewWindow(&drawing, nullptr, {40, 40, 340, 190}, WS_POPUP);
      ShowWindow(parent, SW_SHOWNOACTIVATE);
      PumpMessages();
      container.frame_window = parent;
      container.Host();
      EXPECT_EQ(S_OK, container.Activate());
      PumpMessages();
      ComPtr<IDispatch> object = container.Dispatch();
      armed = true;
      PutNumber(object.Get(), L"BackStyle", 0);
      EXPECT_TRUE(done) << kind;
      PutText(object.Get(), L"Caption", L"after");
      EXPECT_EQ(L"after", GetText(object.Get(), L"Caption"));
      object.Reset();
      if (container.Object()) container.Close();
      SetWindowLongPtrW(parent, GWLP_USERDATA, 0);
      DestroyWindow(parent);
    }
}

// --- Drawn elsewhere without a window -------------------------------------------------------------------

class Windowless : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    PutNumber(container_.Dispatch().Get(), L"BackStyle", 0);
    PutNumber(container_.Dispatch().Get(), L"ForeColor", 0x0000FF);
    PutText(container_.Dispatch().Get(), L"Caption", L"<b>MMM</b>");
  }
  void Draw(HDC dc, RECTL bounds) {
    EXPECT_EQ(S_OK,
              As<IViewObject>(container_.Object())
                  ->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0));
  }

  Container container_;
};

TEST_F(Windowless, ATransparentControlIsDrawnOntoWhatTheTargetHolds) {
  for (const RECTL bounds : {RECTL{5, 5, 126, 30}, RECTL{0, 0, 200, 60}}) {
    Picture picture(220, 70);
    for (int y = 0; y < 70; ++y)
      for (int x = 0; x < 220; ++x) SetPixelV(picture.Dc(), x, y, Rgb(10, x, y));
    Draw(picture.Dc(), bounds);
    int red = 0, untouched = 0;
    for (int y = 0; y < 70; ++y)
      for (int x = 0; x < 220; ++x) {
        const DWORD behind = ToRgb(Rgb(10, x, y));
        const DWORD pixel = picture.At(x, y);
        red += pixel == 0xFF0000;
        untouched += pixel == behind;
        EXPECT_TRUE(pixel == behind || (pixel >> 16) >= 10u);
      }
    EXPECT_GT(red, 20);
    EXPECT_GT(untouched, 220 * 70 * 3 / 4);
  }
}

TEST_F(Windowless, AnEmptyTransparentControlChangesNothing) {
  PutText(container_.Dispatch().Get(), L"Caption", L"");
  Picture picture(130, 40);
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 130; ++x) SetPixelV(picture.Dc(), x, y, Rgb(x, y, x + y));
  Draw(picture.Dc(), {0, 0, 130, 40});
  for (int y = 0; y < 40; ++y)
    for (int x = 0; x < 130; ++x) ASSERT_EQ(ToRgb(Rgb(x, y, x + y)), picture.At(x, y));
}

TEST_F(Windowless, ARecordLeavesWhatItIsPlayedOn) {
  const RECT frame = {0, 0, 3201, 661};
  const HDC record = CreateEnhMetaFileW(nullptr, nullptr, &frame, nullptr);
  Draw(record, {0, 0, 121, 25});
  const HENHMETAFILE metafile = CloseEnhMetaFile(record);
  Picture picture(121, 25);
  picture.Fill(0x00FF00);
  const RECT bounds = {0, 0, 121, 25};
  PlayEnhMetaFile(picture.Dc(), metafile, &bounds);
  DeleteEnhMetaFile(metafile);
  EXPECT_GT(picture.Count(0x00FF00), 121 * 25 / 2);
  EXPECT_EQ(0, picture.Count(0x000000));
  EXPECT_LT(picture.Count(0x00FF00), 121 * 25 - 20);
}

TEST_F(Windowless, TheFirstSightInAWindowIsTheWindows) {
  ASSERT_EQ(S_OK, container_.Activate());
  PumpMessages();
  const HDC dc = GetDC(container_.ControlWindow());
  EXPECT_EQ(GetSysColor(marklet::COLOR_WINDOW), GetPixel(dc, 190, 50));
  ReleaseDC(container_.ControlWindow(), dc);
}

}  // namespace
}  // namespace ocx_test
