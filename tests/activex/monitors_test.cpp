// The control on monitors of different resolutions, in a process that is told of them. The system's own
// answers are replaced, since there may be one monitor only.
#include <cstring>
#include <optional>

#include "activex/container.h"
#include "activex/import_patch.h"
#include "activex/picture.h"
#include "activex/saving.h"
#include "activex/server_copy.h"

namespace ocx_test {
namespace {

constexpr int kResolutions[] = {96, 120, 144, 192, 288};

// What the system says of every window. A function that is missing, as on older systems, isn't found.
UINT of_windows = 96, of_monitors = 96;
bool has_window_function = true, has_monitor_function = true;

UINT WINAPI AskWindow(HWND) { return of_windows; }
HRESULT WINAPI AskMonitor(HMONITOR, int, UINT* across, UINT* down) {
  *across = *down = of_monitors;
  return S_OK;
}

FARPROC Given(bool is_there, void* function) {
  return is_there ? reinterpret_cast<FARPROC>(function) : nullptr;
}

FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
  if (std::strcmp(name, "GetDpiForWindow") == 0) return Given(has_window_function, Address(AskWindow));
  if (std::strcmp(name, "GetDpiForMonitor") == 0) return Given(has_monitor_function, Address(AskMonitor));
  return GetProcAddress(module, name);
}

// A server that hasn't asked the system for anything yet.
class FreshServer {
 public:
  FreshServer() : copy_(L"monitors.ocx") {
    if (copy_.Load())
      patch_.emplace(copy_.Module(), std::vector<Replacement>{{"GetProcAddress", Address(FindFunction)}});
  }
  ~FreshServer() {
    EXPECT_EQ(S_OK, copy_.CanUnloadNow());
    patch_.reset();
    copy_.Unload();
  }
  ComPtr<IUnknown> CreateControl() const { return copy_.CreateControl(); }

 private:
  ServerCopy copy_;
  std::optional<ImportPatch> patch_;
};

class Monitors : public ::testing::Test {
 protected:
  void SetUp() override {
    of_windows = of_monitors = 96;
    has_window_function = has_monitor_function = true;
    container_.missing = {SiteInterface::InPlaceContext};  // the control says how large it is
  }
  void Host() {
    container_.HostObject(server_.CreateControl());
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(container_.Object())->InitNew());
  }
  void Activate() {
    ASSERT_EQ(S_OK, container_.Activate());
    window_ = container_.ControlWindow();
    ASSERT_TRUE(window_);
  }
  void SetExtent(SIZEL size) {
    EXPECT_EQ(S_OK, As<IOleObject>(container_.Object())->SetExtent(DVASPECT_CONTENT, &size));
  }
  // A control with a red caption on a screen of three times the usual resolution.
  ComPtr<IDispatch> ShowAt288(const wchar_t* caption) {
    of_windows = 288;
    Host();
    SetExtent({10000, 5000});
    Activate();
    ComPtr<IDispatch> object = container_.Dispatch();
    PutNumber(object.Get(), L"ForeColor", 0x0000FF);
    PutText(object.Get(), L"Caption", caption);
    return object;
  }
  SIZEL Extent() const {
    SIZEL size = {};
    EXPECT_EQ(S_OK, As<IOleObject>(container_.Object())->GetExtent(DVASPECT_CONTENT, &size));
    return size;
  }
  SIZE WindowSize() const {
    RECT client = {};
    GetClientRect(window_, &client);
    return {client.right, client.bottom};
  }
  // What a system does, which has moved the window's parent to such a monitor.
  void MoveTo(UINT resolution) {
    of_windows = resolution;
    constexpr UINT kResolutionChanged = 0x02E3;
    SendMessageW(window_, kResolutionChanged, 0, 0);
  }
  // Rows in which something is red.
  int InkHeight() const {
    const SIZE size = WindowSize();
    Picture picture(size.cx, size.cy);
    SendMessageW(window_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()), PRF_CLIENT);
    int rows = 0;
    for (int y = 0; y < size.cy; ++y) {
      bool is_red = false;
      for (int x = 0; x < size.cx && !is_red; ++x) is_red = picture.At(x, y) == 0xFF0000;
      rows += is_red;
    }
    return rows;
  }

  FreshServer server_;
  Container container_;
  HWND window_ = nullptr;
};

// How large a line of text is in the control's first font.
SIZE LineSize(const wchar_t* text, int resolution) {
  const HFONT font =
      CreateFontW(-MulDiv(825, resolution, 7200), 0, 0, 0, FW_NORMAL, 0, 0, 0, 0, 0, 0, 0, 0, L"Tahoma");
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ old = SelectObject(dc, font);
  constexpr UINT kMeasureOneLine = 0x420;
  RECT rect = {};
  DrawTextW(dc, text, -1, &rect, kMeasureOneLine);
  SelectObject(dc, old);
  DeleteDC(dc);
  DeleteObject(font);
  return {rect.right, rect.bottom};
}

TEST_F(Monitors, ShowTheControlAtItsExactSize) {
  for (const int resolution : kResolutions) {
    of_windows = static_cast<UINT>(resolution);
    Host();
    SetExtent({5080, 2540});
    Activate();
    EXPECT_EQ(2 * resolution, WindowSize().cx);
    EXPECT_EQ(resolution, WindowSize().cy);
    EXPECT_EQ(5080, Extent().cx);
    EXPECT_EQ(2540, Extent().cy);
    container_.Close();
  }
}

TEST_F(Monitors, ShowTextAtItsExactSize) {
  for (const int resolution : kResolutions) {
    of_windows = static_cast<UINT>(resolution);
    Host();
    Activate();
    const auto object = container_.Dispatch();
    PutByName(object.Get(), L"WordWrap", Variant::Bool(false));
    PutText(object.Get(), L"Caption", L"A line of text");
    PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
    const SIZE expected = LineSize(L"A line of text", resolution);
    EXPECT_EQ(expected.cx, WindowSize().cx) << resolution;
    EXPECT_EQ(expected.cy, WindowSize().cy) << resolution;
    EXPECT_EQ(MulDiv(expected.cx, 2540, resolution), Extent().cx);
    container_.Close();
  }
}

// Bold and a size come from copies of the control's font, a new font from the host.
TEST_F(Monitors, ShowEveryFontAtTheirResolution) {
  const auto object = ShowAt288(L"<b>H</b>");
  const int bold = InkHeight();
  EXPECT_NEAR(288 * 8.25 / 72 * 0.727, bold, 2) << "a capital's part of the height";
  PutNumber(object.Get(), L"FontSize", 20);
  EXPECT_NEAR(288 * 20.0 / 72 * 0.727, InkHeight(), 2);
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"Font", NewFont(L"Tahoma", 120000, false)));
  EXPECT_NEAR(288 * 12.0 / 72 * 0.727, InkHeight(), 2);
}

// The object has a handle of its own, which is made for the screen.
TEST_F(Monitors, ShowWhatAHostSetsOnTheFontObject) {
  const auto object = ShowAt288(L"H");
  Variant font, twenty;
  ASSERT_EQ(S_OK, GetByName(object.Get(), L"Font", font));
  twenty.vt = VT_CY;
  twenty.cyVal.int64 = 200000;
  ASSERT_EQ(S_OK, PutByName(font.pdispVal, L"Size", twenty));
  EXPECT_NEAR(288 * 20.0 / 72 * 0.727, InkHeight(), 2);
}

TEST_F(Monitors, MayChangeWhileTheControlLives) {
  Host();
  Activate();
  SetWindowPos(window_, nullptr, 0, 0, 300, 150, SWP_NOZORDER);
  const auto object = container_.Dispatch();
  PutNumber(object.Get(), L"ForeColor", 0x0000FF);
  PutText(object.Get(), L"Caption", L"H");
  const int before = InkHeight();
  for (const int resolution : {120, 144, 192, 288, 96}) {
    MoveTo(static_cast<UINT>(resolution));
    EXPECT_NEAR(before * resolution / 96.0, InkHeight(), 2) << resolution;
    EXPECT_EQ(MulDiv(300, 2540, resolution), Extent().cx) << "as many pixels as before";
  }
  EXPECT_EQ(before, InkHeight());
}

// The container goes first, and then tells the control its new place: the size that it has set stays exact.
TEST_F(Monitors, KeepTheExactSizeWhenTheContainerFollows) {
  Host();
  SetExtent({5081, 2541});
  Activate();
  for (const int resolution : {144, 288, 120, 96, 192}) {
    of_windows = static_cast<UINT>(resolution);
    const RECT position = {0, 0, MulDiv(5081, resolution, 2540), MulDiv(2541, resolution, 2540)};
    EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->SetObjectRects(&position, &position));
    EXPECT_EQ(position.right, WindowSize().cx);
    EXPECT_EQ(5081, Extent().cx) << resolution;
    EXPECT_EQ(2541, Extent().cy) << resolution;
  }
}

// The system tells the control first, which has another size until the container follows.
TEST_F(Monitors, GiveTheExactSizeBackWhenTheContainerFollowsLater) {
  Host();
  SetExtent({5081, 2541});
  Activate();
  for (const int resolution : {144, 288, 120, 96, 192}) {
    MoveTo(static_cast<UINT>(resolution));
    EXPECT_NE(5081, Extent().cx);
    const RECT position = {0, 0, MulDiv(5081, resolution, 2540), MulDiv(2541, resolution, 2540)};
    EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->SetObjectRects(&position, &position));
    EXPECT_EQ(5081, Extent().cx) << resolution;
    EXPECT_EQ(2541, Extent().cy) << resolution;
  }
}

TEST_F(Monitors, AreFollowedToAnotherParent) {
  Host();
  Activate();
  SetWindowPos(window_, nullptr, 0, 0, 300, 150, SWP_NOZORDER);
  const auto object = container_.Dispatch();
  PutNumber(object.Get(), L"ForeColor", 0x0000FF);
  PutText(object.Get(), L"Caption", L"H");
  const int before = InkHeight();
  const HWND parent = CreateWindowExW(0, L"Static", L"", WS_POPUP | WS_VISIBLE, 50, 50, 300, 200, nullptr,
                                      nullptr, nullptr, nullptr);
  of_windows = 192;
  SetParent(window_, parent);
  EXPECT_NEAR(2 * before, InkHeight(), 1);
  SetParent(window_, container_.Window());
  DestroyWindow(parent);
}

TEST_F(Monitors, KeepTheirResolutionWhileTheControlIsInactive) {
  of_windows = 192;
  Host();
  SetExtent({2540, 2540});
  Activate();
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(container_.Object())->InPlaceDeactivate());
  SetExtent({5080, 2540});
  Activate();
  EXPECT_EQ(384, WindowSize().cx);
}

// --- Older systems
// ------------------------------------------------------------------------------------------

TEST_F(Monitors, AreAskedWhereWindowsCantBe) {
  has_window_function = false;
  of_windows = 120;
  of_monitors = 192;
  Host();
  SetExtent({2540, 2540});
  Activate();
  EXPECT_EQ(192, WindowSize().cx);
}

TEST_F(Monitors, AreAllTheScreenOnTheOldestSystems) {
  has_window_function = has_monitor_function = false;
  of_windows = of_monitors = 192;
  Host();
  SetExtent({2540, 2540});
  Activate();
  const HDC screen = GetDC(nullptr);
  EXPECT_EQ(GetDeviceCaps(screen, LOGPIXELSX), WindowSize().cx);
  ReleaseDC(nullptr, screen);
}

TEST_F(Monitors, ThatAnswerNothingAreTheScreen) {
  of_windows = of_monitors = 0;
  Host();
  SetExtent({2540, 2540});
  Activate();
  EXPECT_GE(WindowSize().cx, 96);
}

}  // namespace
}  // namespace ocx_test
