// The pointer's way in and out, the hover picture and the tip.
#include <algorithm>
#include <bit>
#include <string>

#include "activex/bitmap_file.h"
#include "activex/deeds.h"
#include "activex/image_owner.h"
#include "activex/loaded.h"
#include "activex/picture.h"
#include "platform/types.h"

#include <commctrl.h>

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;
constexpr UINT kXButtonDown = 523, kXButtonUp = 524;

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

BOOL CALLBACK AddTip(HWND window, LPARAM list) {
  wchar_t name[32] = {};
  GetClassNameW(window, name, 32);
  if (std::wstring(name) == L"tooltips_class32") std::bit_cast<std::vector<HWND>*>(list)->push_back(window);
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

// --- The hover picture ------------------------------------------------------------------------------------

constexpr COLORREF kPlain = 0x0000A0, kHovered = 0xA00000;  // red and blue

// Which of the two images a window shows.
std::string ShownIn(HWND window) {
  RECT client = {};
  GetClientRect(window, &client);
  const Picture picture(client.right, client.bottom);
  const HDC dc = GetDC(window);
  BitBlt(picture.Dc(), 0, 0, client.right, client.bottom, dc, 0, 0, marklet::SRCCOPY);
  ReleaseDC(window, dc);
  std::string shown;
  if (picture.Count(0xA00000) == 64) shown += "plain";
  if (picture.Count(0x0000A0) == 64) shown += "hovered";
  return shown;
}

// Puts both images into a control.
void PutImages(IDispatch* object) {
  const BitmapFile plain(L"", kPlain), hovered(L"", kHovered);
  ASSERT_TRUE(LoadImageFile(object, plain.Path(), L"plain"));
  ASSERT_TRUE(LoadImageFile(object, hovered.Path(), L"hovered"));
  PutText(object, L"ImageKey", L"plain");
  PutText(object, L"ImageKeyhover", L"hovered");
}

TEST(HoverPicture, IsShownBeforeMouseEnterAndHasGoneBeforeMouseLeave) {
  MovePointer(900, 900);
  Loaded control;
  const ComPtr<IDispatch> object = control.container.Dispatch();
  PutImages(object.Get());
  EXPECT_EQ("plain", ShownIn(control.Window()));
  Log seen;
  control.events.on_event = [&](const std::string& event) {
    seen.push_back(event + ' ' + ShownIn(control.Window()));
  };
  for (int entry = 0; entry < 2; ++entry) {
    control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
    EXPECT_EQ("hovered", ShownIn(control.Window()));
    control.Send(WM_MOUSELEAVE);
    EXPECT_EQ("plain", ShownIn(control.Window()));
    EXPECT_EQ((Log{"MouseEnter hovered", "MouseMove(0,0,5,6) hovered", "MouseLeave plain"}), seen);
    seen.clear();
  }
  PutText(object.Get(), L"ImageKeyhover", L"");
  control.Send(WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  EXPECT_EQ("plain", ShownIn(control.Window())) << "without an image of its own";
}

TEST(HoverPicture, OfANewControlStays) {
  MovePointer(900, 900);
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  PutImages(container.Dispatch().Get());
  SendMessageW(container.ControlWindow(), WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
  SendMessageW(container.ControlWindow(), WM_MOUSELEAVE, 0, 0);
  EXPECT_EQ("hovered", ShownIn(container.ControlWindow())) << "it isn't subclassed";
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

}  // namespace
}  // namespace ocx_test
