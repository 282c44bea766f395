// Many controls, one after the other and side by side, leave nothing behind.
#include <memory>

#include "activex/container.h"
#include "activex/memory.h"
#include "activex/saving.h"
#include "support/gdi_handles.h"
#include "support/user_handles.h"

namespace ocx_test {
namespace {

constexpr int kWarmUp = 20, kCycles = 200;
// What the session's other programs may do meanwhile. One handle a life would be many times as much.
constexpr int kUserSlack = 10;
// Of the heap, however many lives there were: what a cache or a list may have grown by.
constexpr std::size_t kMostBytes = 4000;

// Everything that takes handles or references: fonts, pictures, contexts, sinks, pictures drawn.
void OneLife(int number) {
  Container container;
  container.Host();
  const ComPtr<IDispatch> object = container.Dispatch();
  Sink events, changes;
  events.ConnectEvents(object.Get());
  changes.ConnectChanges(object.Get());
  PutText(object.Get(), L"Caption", L"&<b>Bold</b> <f=DejaVu Serif>serif</f> <c=FF0000>red</c>");
  PutNumber(object.Get(), L"TextEffect", number % 6);
  PutNumber(object.Get(), L"FontSize", 8 + number % 5);
  container.Activate(number % 2 ? OLEIVERB_UIACTIVATE : OLEIVERB_INPLACEACTIVATE);
  UpdateWindow(container.ControlWindow());
  SendMessageW(container.ControlWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(1, 1));
  Variant font;
  GetByName(object.Get(), L"Font", font);
  PutByName(object.Get(), L"Font", font);
  PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
  const HDC dc = CreateCompatibleDC(nullptr);
  const RECTL bounds = {0, 0, 10, 10};
  As<IViewObject>(object)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr,
                                nullptr, 0);
  DeleteDC(dc);
  CONTROLINFO info = {};
  info.cb = sizeof info;
  As<IOleControl>(object)->GetControlInfo(&info);
  EXPECT_NE(0, info.cAccel) << "a table of keys belongs to a life";
}

TEST(Leaks, ALifeLeavesNoHandleNoMemoryAndNoReference) {
  for (int i = 0; i < kWarmUp; ++i) OneLife(i);
  const int before = marklet::CountGdiHandles(), user_before = marklet::CountUserHandles();
  const auto bytes_before = HeapBytesInUse();
  for (int i = 0; i < kCycles; ++i) OneLife(i);
  EXPECT_EQ(before, marklet::CountGdiHandles());
  EXPECT_GE(user_before + kUserSlack, marklet::CountUserHandles());
  const auto bytes_after = HeapBytesInUse();
  EXPECT_LT(bytes_after, bytes_before + std::size_t{kCycles} * 8) << bytes_before << " to " << bytes_after;
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

// What watched a loaded control's window goes a tenth of a second after the window, so that as many lives
// are on their way out together.
constexpr int kLivesAtOnce = 500;
void LetThunksEnd() {
  for (int round = 0; round < 25; ++round, Sleep(10)) PumpMessages();
}

// A form that makes, saves and unmakes controls all day long, each loaded from what the one before has saved.
void ExpectNothingLeftBy(int lives) {
  Container container;
  Bytes saved;
  const auto live = [&](int number) {
    container.Host();
    const ComPtr<IDispatch> control = container.Dispatch();
    if (!saved.empty()) {
      ASSERT_EQ(S_OK, LoadFromStream(control.Get(), saved));
    }
    PutText(control.Get(), L"Caption", L"&life <b>number</b>");
    PutNumber(control.Get(), L"TextEffect", number % 6);
    container.Activate();
    UpdateWindow(container.ControlWindow());
    saved = SaveToStream(control.Get());
    ASSERT_FALSE(saved.empty());
    container.Close();
    container.log.clear();
    if (number % kLivesAtOnce == kLivesAtOnce - 1) LetThunksEnd();
  };
  for (int i = 0; i < kLivesAtOnce; ++i) live(i);
  const int handles = marklet::CountGdiHandles(), user_handles = marklet::CountUserHandles();
  const auto bytes_before = HeapBytesInUse();
  for (int i = 0; i < lives; ++i) live(i);
  LetThunksEnd();
  EXPECT_EQ(handles, marklet::CountGdiHandles());
  EXPECT_GE(user_handles + kUserSlack, marklet::CountUserHandles());
  const auto bytes_after = HeapBytesInUse();
  EXPECT_LT(bytes_after, bytes_before + kMostBytes) << bytes_before << " to " << bytes_after;
  EXPECT_EQ(nullptr, GetWindow(container.Window(), GW_CHILD));
  EXPECT_EQ(0u, container.SiteReferences());
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

TEST(Leaks, ManyLivesInOneContainerLeaveNothing) { ExpectNothingLeftBy(500); }

// Takes minutes: scripts/test runs it in a step of its own. What is lost so seldom that hundreds of lives
// don't show it shows here.
TEST(Lives, TenThousandInOneContainerLeaveNothing) { ExpectNothingLeftBy(10'000); }

// The counters themselves must be worth something.
TEST(Leaks, TheCounterSeesEveryKindOfUserHandle) {
  constexpr int kMany = 50;
  struct Kind {
    const char* name;
    HANDLE (*make)();
    void (*destroy)(HANDLE);
  };
  const Kind kinds[] = {
      {"hidden window",
       [] {
         return static_cast<HANDLE>(
             CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr));
       },
       [](HANDLE handle) { DestroyWindow(static_cast<HWND>(handle)); }},
      {"message window",
       [] {
         return static_cast<HANDLE>(
             CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, nullptr, nullptr, nullptr));
       },
       [](HANDLE handle) { DestroyWindow(static_cast<HWND>(handle)); }},
      {"menu", [] { return static_cast<HANDLE>(CreatePopupMenu()); },
       [](HANDLE handle) { DestroyMenu(static_cast<HMENU>(handle)); }},
      {"accelerators",
       [] {
         ACCEL key = {FALT, 'k', 1};
         return static_cast<HANDLE>(CreateAcceleratorTableW(&key, 1));
       },
       [](HANDLE handle) { DestroyAcceleratorTable(static_cast<HACCEL>(handle)); }},
      {"icon",
       [] {
         const BYTE mask[32 * 4] = {};
         return static_cast<HANDLE>(CreateIcon(nullptr, 32, 32, 1, 1, mask, mask));
       },
       [](HANDLE handle) { DestroyIcon(static_cast<HICON>(handle)); }},
  };
  for (const Kind& kind : kinds) {
    SCOPED_TRACE(kind.name);
    kind.destroy(kind.make());
    const int before = marklet::CountUserHandles();
    std::vector<HANDLE> handles;
    handles.reserve(kMany);
    for (int i = 0; i < kMany; ++i) handles.push_back(kind.make());
    EXPECT_NEAR(before + kMany, marklet::CountUserHandles(), kUserSlack);
    for (const HANDLE handle : handles) kind.destroy(handle);
    EXPECT_NEAR(before, marklet::CountUserHandles(), kUserSlack);
  }
}

TEST(Leaks, TheCounterSeesAHandle) {
  const int before = marklet::CountGdiHandles();
  const HBRUSH brush = CreateSolidBrush(0x123456);
  EXPECT_EQ(before + 1, marklet::CountGdiHandles());
  DeleteObject(brush);
  EXPECT_EQ(before, marklet::CountGdiHandles());
}

// A setter called from outside paints at once, on a context that must be back when it returns.
TEST(Leaks, ASetterGivesItsContextBack) {
  Container container;
  container.Host();
  container.Activate();
  const auto object = container.Dispatch();
  PutNumber(object.Get(), L"TextEffect", 1);
  const int before = marklet::CountGdiHandles();
  for (int i = 0; i < kCycles; ++i) PutNumber(object.Get(), L"TextEffect", i % 6);
  EXPECT_GE(before + 2, marklet::CountGdiHandles());
}

TEST(Leaks, AnIdleControlHoldsNoDeviceContext) {
  std::vector<std::unique_ptr<Container>> containers;
  for (int i = 0; i < 30; ++i) {
    containers.push_back(std::make_unique<Container>());
    containers.back()->Host();
    containers.back()->Activate();
    PutText(containers.back()->Dispatch().Get(), L"Caption", L"idle");
  }
  for (const auto& container : containers) {
    // A context of the window that is already lent out would make this one differ from a fresh one.
    const HDC dc = GetDC(container->ControlWindow());
    EXPECT_TRUE(dc);
    EXPECT_EQ(GetStockObject(SYSTEM_FONT), GetCurrentObject(dc, OBJ_FONT)) << "a font is still selected";
    ReleaseDC(container->ControlWindow(), dc);
  }
}

TEST(Leaks, ManyControlsSideBySide) {
  const int before = marklet::CountGdiHandles();
  {
    std::vector<ComPtr<IUnknown>> controls;
    for (int i = 0; i < 1000; ++i) {
      controls.push_back(CreateControl());
      As<IPersistStreamInit>(controls.back())->InitNew();
    }
    EXPECT_EQ(S_FALSE, Server::Get().CanUnloadNow());
  }
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  EXPECT_GE(before + 2, marklet::CountGdiHandles());
}

}  // namespace
}  // namespace ocx_test
