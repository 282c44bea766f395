// The messages of its window that a loaded control answers.
#include <algorithm>
#include <bit>
#include <string>

#include "activex/import_patch.h"
#include "activex/loaded.h"
#include "activex/picture.h"
#include "activex/server_copy.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;
constexpr UINT kXButtonDown = 523, kXButtonUp = 524, kXButtonDoubleClick = 525;

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

// What a window's procedure was when the control subclassed it, and the messages that it gets.
class OwnProcedure {
 public:
  explicit OwnProcedure(HWND window) {
    seen_.clear();
    former_ = std::bit_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  static auto Count(UINT message) { return std::count(seen_.begin(), seen_.end(), message); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    seen_.push_back(message);
    return CallWindowProcW(former_, window, message, wparam, lparam);
  }
  static inline WNDPROC former_ = nullptr;
  static inline std::vector<UINT> seen_;
};

TEST(Subclassing, TheWindowsOwnProcedureNeverErasesAndHearsOfTheRest) {
  Container container;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, container.Activate());
  const OwnProcedure own(container.ControlWindow());
  MemoryBag bag;
  ASSERT_EQ(S_OK, LoadFromBag(container.Object(), bag));
  const auto send = [&](UINT message) { return SendMessageW(container.ControlWindow(), message, 0, 0); };
  EXPECT_EQ(-1, send(WM_ERASEBKGND));
  EXPECT_EQ(0, own.Count(WM_ERASEBKGND));
  for (const UINT message : {675u, 794u, 791u, 792u, 14u, 61u}) {
    send(message);
    EXPECT_EQ(1, own.Count(message)) << message;
  }
}

// The picture's border is shaded from the container's colour, which each new picture asks for.
TEST(Subclassing, AChangeOfTheVisualStyleAloneRepaintsNothing) {
  Loaded control;
  PutNumber(control.container.Dispatch().Get(), L"BorderStyle", 1);
  UpdateWindow(control.Window());
  int built = 0;
  control.container.on_read = [&](const std::string& what) { built += what == "member"; };
  control.Send(WM_THEMECHANGED);
  EXPECT_FALSE(GetUpdateRect(control.Window(), nullptr, FALSE));
  InvalidateRect(control.Window(), nullptr, FALSE);
  UpdateWindow(control.Window());
  EXPECT_EQ(0, built) << "nor does it at the next paint";
  PutText(control.container.Dispatch().Get(), L"Caption", L"other");
  EXPECT_GT(built, 0);
  control.container.on_read = nullptr;
}

TEST(Subclassing, TheTextsLengthIsThatOfTheMarkup) {
  Loaded control;
  PutText(control.container.Dispatch().Get(), L"Caption", L"<b>x</b> \u03B1");
  EXPECT_EQ(10, control.Send(WM_GETTEXTLENGTH));
  DefWindowProcW(control.Window(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"other"));
  EXPECT_EQ(10, control.Send(WM_GETTEXTLENGTH)) << "whatever the window has";
}

TEST(Subclassing, TheTextItselfIsTheWindows) {
  Loaded control;
  PutText(control.container.Dispatch().Get(), L"Caption", L"<b>x</b> \u03B1");
  wchar_t text[20] = {};
  EXPECT_EQ(10, DefWindowProcW(control.Window(), WM_GETTEXT, 20, reinterpret_cast<LPARAM>(text)));
  EXPECT_STREQ(L"<b>x</b> \u03B1", text);
  DefWindowProcW(control.Window(), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"other"));
  EXPECT_EQ(3, control.Send(WM_GETTEXT, 4, reinterpret_cast<LPARAM>(text)));
  EXPECT_STREQ(L"oth", text) << "and goes no further than there is room";
}

// The words through which a window is subclassed. Nobody hands them out, but they are memory of this process
// that names the window and the first message that is asked for.
LONG_PTR* BlockOf(HWND window) {
  constexpr int kWindow = 2, kBeforeTable = 108;
  MEMORY_BASIC_INFORMATION region = {};
  for (char* at = nullptr; VirtualQuery(at, &region, sizeof region) != 0; at += region.RegionSize) {
    at = static_cast<char*>(region.BaseAddress);
    if (region.State != MEM_COMMIT || region.Type != MEM_PRIVATE ||
        region.BaseAddress != region.AllocationBase ||
        (region.Protect != PAGE_READWRITE && region.Protect != PAGE_EXECUTE_READWRITE))
      continue;
    auto* const words = reinterpret_cast<LONG_PTR*>(at);
    if (words[kWindow] == reinterpret_cast<LONG_PTR>(window) && words[kBeforeTable] == 1 &&
        words[kBeforeTable + 1] == WM_ERASEBKGND)
      return words;
  }
  return nullptr;
}

// Added to the messages that come after the window's own procedure, it copies the caption over the window's
// text, without a NUL and whatever room there is.
TEST(Subclassing, TheHandlerOfTheTextWaitsForItsMessage) {
  constexpr int kAfterTable = 141;
  Loaded control;
  PutText(control.container.Dispatch().Get(), L"Caption", L"<b>x</b>");
  LONG_PTR* const block = BlockOf(control.Window());
  ASSERT_TRUE(block);
  LONG_PTR* const after = block + kAfterTable;
  after[++after[0]] = WM_GETTEXT;
  wchar_t text[20];
  const auto ask = [&](WPARAM room) {
    std::fill_n(text, 19, L'.');
    text[19] = 0;
    // The window takes texts in the system's code page, so that nothing stands between this and the handler.
    return SendMessageA(control.Window(), WM_GETTEXT, room, reinterpret_cast<LPARAM>(text));
  };
  EXPECT_EQ(3, ask(3));
  EXPECT_STREQ(L"<b>x</b>...........", text);
  EXPECT_EQ(9, ask(20)) << "with the NUL that isn't copied";
  EXPECT_EQ(0, std::wstring(text).find(L"<b>x</b>"));
}

TEST(Subclassing, PrintsWhateverPartsAreAskedFor) {
  Loaded control;
  PutNumber(control.container.Dispatch().Get(), L"BackColor", 0x204080);
  for (const UINT message : {WM_PRINT, WM_PRINTCLIENT})
    for (const LPARAM parts : {LPARAM{PRF_CLIENT}, LPARAM{0}, LPARAM{PRF_NONCLIENT}}) {
      const Picture picture(20, 20);
      control.Send(message, reinterpret_cast<WPARAM>(picture.Dc()), parts);
      EXPECT_EQ(0x804020u, picture.At(15, 15)) << message << ' ' << parts;
    }
}

TEST(Subclassing, ANewControlPrintsNothingWhenItsClientAreaIsNotAskedFor) {
  Container container;
  container.Host();
  ASSERT_EQ(S_OK, container.Activate());
  for (const LPARAM parts : {LPARAM{0}, LPARAM{PRF_NONCLIENT}}) {
    const Picture picture(20, 20);
    SendMessageW(container.ControlWindow(), WM_PRINT, reinterpret_cast<WPARAM>(picture.Dc()), parts);
    EXPECT_EQ(kUntouched, picture.At(15, 15)) << parts;
  }
}

LONG_PTR WINAPI RefuseToSet(HWND, int, LONG_PTR) { return 0; }

// The name was once for a line in a log.
TEST(Subclassing, WhereThePlatformRefusesTheNameIsReadAndTheControlGoesOn) {
  for (const bool refused : {false, true}) {
    const std::vector<Replacement> refusal = {{"SetWindowLongPtrA", Address(&RefuseToSet)},
                                              {"SetWindowLongA", Address(&RefuseToSet)}};
    const ImportPatch patch(Server::Get().Module(), refused ? refusal : std::vector<Replacement>());
    Container container;
    Sink events;
    container.HostObject(CreateControl());
    MemoryBag bag;
    ASSERT_EQ(S_OK, LoadFromBag(container.Object(), bag));
    int reads = 0;
    container.on_read = [&](const std::string& what) {
      reads += what == "ambient " + std::to_string(DISPID_AMBIENT_DISPLAYNAME);
    };
    ASSERT_EQ(S_OK, container.Activate());
    container.on_read = nullptr;
    EXPECT_EQ(refused ? 1 : 0, reads);
    ASSERT_EQ(S_OK, events.ConnectEvents(container.Object()));
    const HWND window = container.ControlWindow();
    EXPECT_EQ(refused ? 1 : -1, SendMessageW(window, WM_ERASEBKGND, 0, 0));
    SendMessageW(window, WM_MOUSEMOVE, 0, MAKELPARAM(5, 6));
    SendMessageW(window, WM_MOUSELEAVE, 0, 0);
    Log expected = {"MouseEnter", "MouseMove(0,0,5,6)"};
    if (!refused) expected.emplace_back("MouseLeave");
    EXPECT_EQ(expected, events.log);
    EXPECT_FALSE(FindWindowExW(window, nullptr, L"Static", nullptr)) << "nothing failed half way";
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
