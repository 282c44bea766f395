// The pointer's way in and out, the tip, and the messages that a loaded control answers beyond its window.
#include <algorithm>
#include <string>

#include "activex/container.h"
#include "activex/import_patch.h"
#include "activex/picture.h"
#include "activex/saving.h"
#include "activex/server_copy.h"

#include <commctrl.h>

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;
constexpr UINT kXButtonDown = 523, kXButtonUp = 524, kXButtonDoubleClick = 525;

// A control that was loaded, as from a saved form, in a container on the screen.
class Loaded {
 public:
  explicit Loaded(bool user_mode = true, bool activate_first = false) {
    container.ambients.user_mode = user_mode;
    container.HostObject(CreateControl());
    if (activate_first) Activate();
    MemoryBag bag;
    EXPECT_EQ(S_OK, LoadFromBag(container.Object(), bag));
    if (!activate_first) Activate();
    EXPECT_EQ(S_OK, events.ConnectEvents(container.Object()));
    PumpMessages();
  }
  ~Loaded() { events.Disconnect(); }

  void Activate() { EXPECT_EQ(S_OK, container.Activate()); }
  HWND Window() const { return container.ControlWindow(); }
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessageW(Window(), message, wparam, lparam);
  }
  bool IsSubclassed() { return Send(WM_ERASEBKGND) == -1; }

  Container container;
  Sink events;
};

void MovePointer(int x, int y) { SetCursorPos(x, y); }
void MoveOver(HWND window, int x, int y) {
  POINT place = {x, y};
  ClientToScreen(window, &place);
  MovePointer(place.x, place.y);
}

// Handles messages until the log holds an event, for two seconds at most.
bool WaitFor(const Sink& events, const char* event) {
  for (int round = 0; round < 200; ++round) {
    PumpMessages();
    if (std::count(events.log.begin(), events.log.end(), event) > 0) return true;
    Sleep(10);
  }
  return false;
}

void Wait(int milliseconds) {
  for (int waited = 0; waited < milliseconds; waited += 10) {
    PumpMessages();
    Sleep(10);
  }
}

BOOL CALLBACK AddTip(HWND window, LPARAM list) {
  wchar_t name[32] = {};
  GetClassNameW(window, name, 32);
  if (std::wstring(name) == L"tooltips_class32")
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
  return TRUE;
}

std::vector<HWND> Tips() {
  std::vector<HWND> tips;
  EnumThreadWindows(GetCurrentThreadId(), AddTip, reinterpret_cast<LPARAM>(&tips));
  return tips;
}

std::wstring TextOf(HWND tip) {
  wchar_t text[200] = {};
  TTTOOLINFOW info = {};
  info.cbSize = static_cast<UINT>(sizeof info - sizeof(void*));
  info.lpszText = text;
  return SendMessageW(tip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&info)) ? text : L"";
}

// --- In and out -------------------------------------------------------------------------------------------

TEST(Hover, TheRealPointerComesInMovesAndLeaves) {
  MovePointer(900, 900);
  Loaded control;
  MoveOver(control.Window(), 5, 6);
  ASSERT_TRUE(WaitFor(control.events, "MouseMove(0,0,5,6)"));
  EXPECT_EQ("MouseEnter", control.events.log.front());
  MoveOver(control.Window(), 7, 8);
  ASSERT_TRUE(WaitFor(control.events, "MouseMove(0,0,7,8)"));
  EXPECT_EQ(1, std::count(control.events.log.begin(), control.events.log.end(), "MouseEnter"));
  control.events.log.clear();
  MovePointer(900, 900);
  ASSERT_TRUE(WaitFor(control.events, "MouseLeave"));
  EXPECT_EQ(Log{"MouseLeave"}, control.events.log);
  control.events.log.clear();
  MoveOver(control.Window(), 5, 6);
  ASSERT_TRUE(WaitFor(control.events, "MouseMove(0,0,5,6)"));
  EXPECT_EQ("MouseEnter", control.events.log.front()) << "again";
  MovePointer(900, 900);
}

TEST(Hover, OfANewControlBeginsOnceAndNeverEnds) {
  MovePointer(900, 900);
  Container container;
  Sink events;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
  for (int entry = 0; entry < 2; ++entry) {
    MoveOver(container.ControlWindow(), 5, 6);
    ASSERT_TRUE(WaitFor(events, "MouseMove(0,0,5,6)"));
    EXPECT_EQ(entry == 0, events.log.front() == "MouseEnter");
    events.log.clear();
    MovePointer(900, 900);
    Wait(200);
    EXPECT_EQ(Log{}, events.log);
  }
  events.Disconnect();
}

TEST(Hover, IsTheDesigners) {
  for (const bool dead : {false, true}) {
    Loaded control;
    control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
    control.events.log.clear();
    (dead ? control.container.ambients.ui_dead : control.container.ambients.user_mode) = dead;
    for (const UINT message : {UINT{WM_MOUSEMOVE}, UINT{WM_MOUSELEAVE}, kXButtonDown, kXButtonUp})
      control.Send(message, MK_XBUTTON1, MAKELPARAM(5, 6));
    EXPECT_EQ(Log{}, control.events.log);
  }
}

TEST(Hover, EndsWithTheWindowAndBeginsAnewOverTheNextOne) {
  MovePointer(900, 900);
  Loaded control;
  PutText(control.container.Dispatch().Get(), L"UniToolTipText", L"tip");
  control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  EXPECT_EQ(1u, Tips().size());
  ASSERT_EQ(S_OK, As<IOleInPlaceObject>(control.container.Object())->InPlaceDeactivate());
  EXPECT_EQ(0u, Tips().size());
  control.events.log.clear();
  ASSERT_EQ(S_OK, control.container.Activate());
  EXPECT_TRUE(control.IsSubclassed()) << "the new window is too";
  control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  EXPECT_EQ((Log{"MouseEnter", "MouseMove(0,0,5,6)"}), control.events.log);
}

// What a handler may do to the control that calls it.
struct Deed {
  const char* name;
  void (*run)(Container& container);
};
const Deed kDeeds[] = {
    {"release",
     [](Container& container) {
       As<IOleObject>(container.Object())->Close(OLECLOSE_NOSAVE);
       As<IOleObject>(container.Object())->SetClientSite(nullptr);
       container.Drop();
     }},
    {"close", [](Container& container) { container.Close(); }},
    {"deactivate",
     [](Container& container) { As<IOleInPlaceObject>(container.Object())->InPlaceDeactivate(); }},
    {"destroy the parent", [](Container& container) { DestroyWindow(container.Window()); }},
    {"resize",
     [](Container& container) {
       const RECT place = {0, 0, 33, 44};
       As<IOleInPlaceObject>(container.Object())->SetObjectRects(&place, &place);
     }},
    {"load again",
     [](Container& container) {
       MemoryBag bag;
       LoadFromBag(container.Object(), bag);
     }},
};

TEST(Hover, HandlersMayEndTheControl) {
  for (const char* const when : {"MouseEnter", "MouseMove(0,0,5,6)", "MouseLeave"})
    for (const Deed& deed : kDeeds) {
      SCOPED_TRACE(std::string(deed.name) + " inside " + when);
      Loaded control;
      PutText(control.container.Dispatch().Get(), L"UniToolTipText", L"tip");
      int done = 0;
      control.events.on_event = [&](const std::string& event) {
        if (event != when || done++ > 0) return;
        control.events.Disconnect();
        deed.run(control.container);
      };
      const HWND window = control.Window();
      SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
      SendMessageW(window, WM_MOUSELEAVE, 0, 0);
      EXPECT_EQ(1, done);
      control.events.on_event = nullptr;
      PumpMessages();
    }
  Wait(150);  // the thunks go
  EXPECT_EQ(0u, Tips().size());
}

// --- The tip ----------------------------------------------------------------------------------------------

TEST(HoverTip, HoldsItsTextInAnyScriptAndGoesWithIt) {
  MovePointer(900, 900);
  Loaded control;
  const ComPtr<IDispatch> object = control.container.Dispatch();
  control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  EXPECT_EQ(0u, Tips().size()) << "no text, no tip";
  PutText(object.Get(), L"UniToolTipText", L"\u039A\u03B1\u03BB \u4F60\u597D");
  EXPECT_EQ(0u, Tips().size()) << "until the next entry";
  control.Send(WM_MOUSELEAVE);
  control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  ASSERT_EQ(1u, Tips().size());
  EXPECT_EQ(L"\u039A\u03B1\u03BB \u4F60\u597D", TextOf(Tips()[0]));
  EXPECT_EQ(0, GetWindowLongW(Tips()[0], GWL_STYLE) & TTS_BALLOON);
  PutText(object.Get(), L"UniToolTipText", L"other");
  EXPECT_EQ(L"other", TextOf(Tips()[0]));
  PutText(object.Get(), L"UniToolTipText", L"");
  EXPECT_EQ(0u, Tips().size());
}

// --- Subclassing ------------------------------------------------------------------------------------------

TEST(Subclassing, BeginsWithLoadAndWindowWhicheverComesFirst) {
  EXPECT_TRUE(Loaded(true, false).IsSubclassed());
  EXPECT_TRUE(Loaded(true, true).IsSubclassed());
  EXPECT_FALSE(Loaded(false, false).IsSubclassed()) << "not in a designer";
  EXPECT_FALSE(Loaded(false, true).IsSubclassed());
}

TEST(Subclassing, IsNotForANewControl) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  EXPECT_EQ(1, SendMessageW(container.ControlWindow(), WM_ERASEBKGND, 0, 0));
}

TEST(Subclassing, ASecondLoadLeavesItAsItIs) {
  Loaded control;
  MemoryBag bag;
  ASSERT_EQ(S_OK, LoadFromBag(control.container.Object(), bag));
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(control.IsSubclassed());
}

TEST(Subclassing, TheTextsLengthIsThatOfTheMarkup) {
  Loaded control;
  PutText(control.container.Dispatch().Get(), L"Caption", L"<b>x</b> \u03B1");
  EXPECT_EQ(10, control.Send(WM_GETTEXTLENGTH));
  wchar_t text[20] = {};
  EXPECT_EQ(10, DefWindowProcW(control.Window(), WM_GETTEXT, 20, reinterpret_cast<LPARAM>(text)));
  EXPECT_STREQ(L"<b>x</b> \u03B1", text) << "the window gives the text itself";
}

TEST(Subclassing, PrintsWhateverPartsAreAskedFor) {
  Loaded control;
  PutNumber(control.container.Dispatch().Get(), L"BackColor", 0x204080);
  for (const UINT message : {WM_PRINT, WM_PRINTCLIENT})
    for (const LPARAM parts : {LPARAM{PRF_CLIENT}, LPARAM{0}, LPARAM{PRF_NONCLIENT}}) {
      const HDC dc = CreateCompatibleDC(nullptr);
      const HBITMAP bitmap = CreateBitmap(20, 20, 1, 32, nullptr);
      const HGDIOBJ former = SelectObject(dc, bitmap);
      control.Send(message, reinterpret_cast<WPARAM>(dc), parts);
      EXPECT_EQ(0x204080u, GetPixel(dc, 15, 15)) << message << ' ' << parts;
      SelectObject(dc, former);
      DeleteObject(bitmap);
      DeleteDC(dc);
    }
}

// --- Extended buttons -------------------------------------------------------------------------------------

BOOL WINAPI AnswerWindowsXp(OSVERSIONINFOA* version) {
  version->dwMajorVersion = 5;
  version->dwMinorVersion = 1;
  version->dwPlatformId = VER_PLATFORM_WIN32_NT;
  return TRUE;
}

// Each thread has its own answers of the system's tests, the first of which is no.
TEST(ExtendedButtons, AreHeardFromTheSecondControlOnWhereTheSystemIsOfTheirFamily) {
  const ImportPatch patch(Server::Get().Module(), {{"GetVersionExA", Address(&AnswerWindowsXp)}});
  ASSERT_TRUE(RunOnThread([] {
    const Apartment apartment;
    {
      Loaded first;
      first.Send(kXButtonDown, MK_XBUTTON1, MAKELPARAM(30, 45));
      EXPECT_EQ(Log{}, first.events.log);
      Loaded second;
      const LPARAM place = MAKELPARAM(30, 45);
      EXPECT_EQ(1, second.Send(kXButtonDown, MK_XBUTTON1 | MK_SHIFT, place));
      EXPECT_EQ(1, second.Send(kXButtonUp, MK_CONTROL, place));
      EXPECT_EQ(1, second.Send(kXButtonDown, MK_XBUTTON2, place));
      EXPECT_EQ(1, second.Send(kXButtonUp, 0, MAKELPARAM(0, 0)));
      EXPECT_EQ(1, second.Send(kXButtonDown, MK_XBUTTON1 | MK_XBUTTON2 | MK_LBUTTON, place));
      // The vertical position stays in the horizontal one, and both are taken for twips.
      EXPECT_EQ((Log{"MouseDown(4,4,196610,3)", "MouseUp(4,8,196610,3)", "MouseDown(8,0,196610,3)",
                     "MouseUp(8,0,0,0)", "MouseDown(16,0,196610,3)"}),
                second.events.log);
      second.events.log.clear();
      EXPECT_EQ(1, second.Send(kXButtonDown, MK_XBUTTON1, MAKELPARAM(15, -15)));
      EXPECT_EQ(Log{"MouseDown(4,0,-65535,4368)"}, second.events.log) << "above the control";
      second.events.log.clear();
      EXPECT_EQ(1, second.Send(kXButtonDoubleClick, MK_XBUTTON1, place));
      for (const UINT message : {171u, 172u, 173u}) EXPECT_EQ(1, second.Send(message, 0, 0x10000));
      EXPECT_EQ(Log{}, second.events.log) << "neither double clicks nor presses outside the client area";
      second.container.ambients.user_mode = false;
      second.Send(kXButtonDown, MK_XBUTTON1, place);
      second.Send(kXButtonUp, 0, place);
      EXPECT_EQ(Log{}, second.events.log) << "the designer's";
    }
    Wait(250);  // the thunks end on the thread that made them
  }));
}

}  // namespace
}  // namespace ocx_test
