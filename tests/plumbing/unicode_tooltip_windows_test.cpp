// The tip window: what it is sent, by number, and what the system's own tooltip makes of it.
#include "plumbing/unicode_tooltip.h"

#include <commctrl.h>
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <span>
#include <utility>
#include <vector>

#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "platform/win32/handles.h"

namespace marklet::plumbing {
namespace {

struct Sent {
  UINT message;
  WPARAM wparam;
  LPARAM lparam;
  std::vector<unsigned char> record;  // the first bytes at lparam, of messages that carry a record
};

// Notes what a window is sent, and passes it on.
class Watch {
 public:
  explicit Watch(::HWND window) : window_(window) {
    seen_.clear();
    former_ = std::bit_cast<WNDPROC>(
        ::SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  ~Watch() { ::SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  // What was sent of the tooltip's own messages since the last call.
  static std::vector<Sent> Take() { return std::exchange(seen_, {}); }

 private:
  static LRESULT CALLBACK Procedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message >= WM_USER && message < WM_USER + 100) {
      Sent sent = {message, wparam, lparam, {}};
      const auto* const bytes = std::bit_cast<const unsigned char*>(lparam);
      if (message == 1074 || message == 1075 || message == 1081) {
        UINT size = 0;
        std::memcpy(&size, bytes, sizeof size);
        sent.record.assign(bytes, bytes + size);
      }
      if (message == 1031) sent.record.assign(bytes, bytes + sizeof(::MSG));
      if (message == 1048) sent.record.assign(bytes, bytes + sizeof(Long));
      seen_.push_back(std::move(sent));
    }
    return ::CallWindowProcW(former_, window, message, wparam, lparam);
  }
  ::HWND window_;
  static inline WNDPROC former_ = nullptr;
  static inline std::vector<Sent> seen_;
};

std::vector<UINT> NumbersOf(const std::vector<Sent>& messages) {
  std::vector<UINT> numbers;
  numbers.reserve(messages.size());
  for (const Sent& sent : messages) numbers.push_back(sent.message);
  return numbers;
}
using Numbers = std::vector<UINT>;

template <typename Value>
Value At(const std::vector<unsigned char>& record, std::size_t offset) {
  Value value = {};
  const auto bytes = std::as_writable_bytes(std::span(&value, 1));
  if (offset + bytes.size() <= record.size()) std::memcpy(bytes.data(), record.data() + offset, bytes.size());
  return value;
}

class UnicodeTooltip : public testing::Test {
 protected:
  UnicodeTooltip() {
    parent_ =
        ::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 10, 10, 200, 100, nullptr, nullptr, nullptr, nullptr);
    tool_ = NewTool(70);
    other_ = NewTool(30);
  }
  ~UnicodeTooltip() override { ::DestroyWindow(parent_); }

  ::HWND NewTool(int width) const {
    return ::CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_NOTIFY, 0, 0, width, 20, parent_,
                             nullptr, nullptr, nullptr);
  }
  LONG Style() const { return ::GetWindowLongW(tip_.TipWindow(), GWL_STYLE); }
  bool HasStyle(LONG bit) const { return (Style() & bit) != 0; }

  ::HWND parent_, tool_, other_;
  CUnicodeTooltip tip_;
};

// --- The window -------------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, IsTheSystemsWindowOwnedByTheParent) {
  tip_.PutBalloon(false);
  ASSERT_TRUE(tip_.Create(tool_));
  wchar_t name[40] = {};
  ::GetClassNameW(tip_.TipWindow(), name, 40);
  EXPECT_STREQ(L"tooltips_class32", name);
  EXPECT_EQ(parent_, ::GetWindow(tip_.TipWindow(), GW_OWNER)) << "a child's top-level window owns it";
  EXPECT_EQ(3, Style() & 0xFF) << "TTS_ALWAYSTIP and TTS_NOPREFIX";
}

TEST_F(UnicodeTooltip, IsABalloonUnlessSaidOtherwise) {
  EXPECT_TRUE(tip_.Balloon());
  ASSERT_TRUE(tip_.Create(parent_));
  EXPECT_EQ(67, Style() & 0xFF);
}

TEST_F(UnicodeTooltip, IsMadeOnce) {
  ASSERT_TRUE(tip_.Create(parent_));
  const ::HWND window = tip_.TipWindow();
  EXPECT_TRUE(tip_.Create(parent_));
  EXPECT_EQ(window, tip_.TipWindow());
}

TEST_F(UnicodeTooltip, EndsWithItsObject) {
  ::HWND window = nullptr;
  {
    CUnicodeTooltip tip;
    ASSERT_TRUE(tip.Create(parent_));
    window = tip.TipWindow();
    EXPECT_TRUE(::IsWindow(window));
  }
  EXPECT_FALSE(::IsWindow(window));
}

TEST_F(UnicodeTooltip, CastsTheShadowOfItsClassFromXpOn) {
  Configuration().version = OSVERSIONINFOA{5, 0, 2};
  ForgetOsTests();
  ASSERT_TRUE(tip_.Create(parent_));
  const auto shadow = [&] { return (::GetClassLongA(tip_.TipWindow(), GCL_STYLE) & 0x20000) != 0; };
  ::SetClassLongA(tip_.TipWindow(), GCL_STYLE,
                  static_cast<LONG>(::GetClassLongA(tip_.TipWindow(), GCL_STYLE) & ~0x20000u));
  tip_.Create(parent_);
  EXPECT_FALSE(shadow()) << "not before";
  Configuration().version = OSVERSIONINFOA{5, 1, 2};
  ForgetOsTests();
  tip_.Create(parent_);
  EXPECT_TRUE(shadow());
  Configuration() = {};
  ForgetOsTests();
}

TEST_F(UnicodeTooltip, WithoutAWindowNothingHappens) {
  EXPECT_FALSE(tip_.AddTool(tool_, parent_, u"text", u"first title"));
  EXPECT_EQ(u"first title", tip_.Title()) << "it is kept";
  EXPECT_FALSE(tip_.RemoveTool(tool_));
  tip_.SetToolText(tool_, u"other");
  EXPECT_EQ(u"", tip_.GetToolText(tool_));
  EXPECT_EQ(0, tip_.ToolCount());
  EXPECT_EQ(0, tip_.BackColor());
  EXPECT_EQ(0, tip_.TextColor());
  EXPECT_EQ(0, tip_.DelayTime(3));
  tip_.PutMargin(0, 5);
  EXPECT_EQ(0, tip_.Margin(0));
  tip_.PutMaxWidth(100);
  EXPECT_EQ(0, tip_.MaxWidth());
  tip_.PutTitle(u"title");
  EXPECT_EQ(u"title", tip_.Title());
  EXPECT_EQ(nullptr, tip_.TipWindow());
}

TEST_F(UnicodeTooltip, WithoutAParentThatIsThereThereIsNoWindow) {
  const ::HWND gone = NewTool(5);
  ::DestroyWindow(gone);
  EXPECT_FALSE(tip_.Create(gone));
  EXPECT_EQ(nullptr, tip_.TipWindow());
}

// --- Balloon ----------------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, FalseTurnsTheBalloonOver) {
  tip_.PutBalloon(false);
  ASSERT_TRUE(tip_.Create(parent_));
  ASSERT_FALSE(HasStyle(64));
  tip_.PutBalloon(false);
  EXPECT_TRUE(HasStyle(64)) << "a plain tip becomes a balloon";
  EXPECT_FALSE(tip_.Balloon()) << "whatever the window shows";
  tip_.PutBalloon(false);
  EXPECT_FALSE(HasStyle(64));
  tip_.PutBalloon(true);
  EXPECT_TRUE(HasStyle(64));
  tip_.PutBalloon(true);
  EXPECT_TRUE(HasStyle(64)) << "true sets it";
}

// --- Title ------------------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, ATitleIsSentWithItsIcon) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  tip_.PutTitle(u"Заголовок");
  tip_.PutTitleIcon(2);
  const auto sent = Watch::Take();
  ASSERT_EQ((Numbers{1057, 1057}), NumbersOf(sent));
  EXPECT_EQ(0u, sent[0].wparam);
  EXPECT_EQ(2u, sent[1].wparam);
  EXPECT_EQ(u"Заголовок", tip_.Title());
  EXPECT_EQ(2, tip_.TitleIcon());
}

TEST_F(UnicodeTooltip, NoTitleAndNoIconAreNotSent) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  tip_.PutTitleIcon(0);
  tip_.Create(parent_);
  EXPECT_EQ(Numbers{}, NumbersOf(Watch::Take()));
}

TEST_F(UnicodeTooltip, ATitleThatComesWithAToolIsShownFromTheNextChangeOn) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"text", u"title"));
  for (const Sent& sent : Watch::Take()) EXPECT_NE(1057u, sent.message);
  EXPECT_EQ(u"title", tip_.Title());
  tip_.PutTitleIcon(0);
  EXPECT_EQ(Numbers{1057}, NumbersOf(Watch::Take()));
}

// --- Tools ------------------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, AToolIsAddedByItsRecordAndRelayedOnce) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"text", u""));
  const auto sent = Watch::Take();
  ASSERT_EQ((Numbers{1037, 1074, 1031}), NumbersOf(sent));

  const std::vector<unsigned char>& record = sent[1].record;
  constexpr std::size_t kPointer = sizeof(void*);
  ASSERT_EQ(kPointer == 4 ? 44u : 64u, record.size()) << "without the field that later systems added";
  EXPECT_EQ(273u, At<UINT>(record, 4));
  EXPECT_EQ(parent_, At<::HWND>(record, 8));
  EXPECT_EQ(tool_, At<::HWND>(record, 8 + kPointer));
  const auto rect = At<::RECT>(record, 8 + 2 * kPointer);
  EXPECT_EQ((std::array<LONG, 4>{0, 0, 70, 20}),
            (std::array<LONG, 4>{rect.left, rect.top, rect.right, rect.bottom}));
  EXPECT_EQ(0u, At<std::uintptr_t>(record, 24 + 2 * kPointer)) << "no instance";
  EXPECT_NE(0u, At<std::uintptr_t>(record, 24 + 3 * kPointer)) << "the text";
  EXPECT_EQ(0u, At<std::uintptr_t>(record, 24 + 4 * kPointer));

  const auto relayed = At<::MSG>(sent[2].record, 0);
  EXPECT_EQ(0u, sent[2].wparam);
  EXPECT_EQ(tip_.TipWindow(), relayed.hwnd);
  EXPECT_EQ(1031u, relayed.message);
  EXPECT_EQ(0u, relayed.wParam);
  EXPECT_EQ(513, relayed.lParam);
}

TEST_F(UnicodeTooltip, ACentredToolSaysSo) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  EXPECT_FALSE(tip_.Centered());
  tip_.PutCentered(true);
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"text", u""));
  EXPECT_EQ(275u, At<UINT>(Watch::Take()[1].record, 4));
}

TEST_F(UnicodeTooltip, KeepsTextsOfAnyScript) {
  ASSERT_TRUE(tip_.Create(parent_));
  for (const std::u16string text : {u"plain", u"Καλημέρα, κόσμε", u"Здравствуй, мир", u"שלום, עולם",
                                    u"你好，世界", u"สวัสดีชาวโลก", u"\U0001F600 beyond the first plane"}) {
    const ::HWND tool = NewTool(10);
    ASSERT_TRUE(tip_.AddTool(tool, parent_, text, u""));
    EXPECT_EQ(text, tip_.GetToolText(tool));
    tip_.SetToolText(tool, text + text);
    EXPECT_EQ(text + text, tip_.GetToolText(tool));
  }
}

TEST_F(UnicodeTooltip, AddedTwiceKeepsTheFirstText) {
  ASSERT_TRUE(tip_.Create(parent_));
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"first", u""));
  const Watch watch(tip_.TipWindow());
  EXPECT_FALSE(tip_.AddTool(tool_, parent_, u"second", u""));
  EXPECT_EQ((Numbers{1037, 1082}), NumbersOf(Watch::Take())) << "it is looked for and found, no more";
  EXPECT_EQ(1, tip_.ToolCount());
  EXPECT_EQ(u"first", tip_.GetToolText(tool_));
  tip_.SetToolText(tool_, u"second");
  EXPECT_EQ(u"second", tip_.GetToolText(tool_));
}

TEST_F(UnicodeTooltip, AnEmptyTextShowsNothingUntilThereIsOne) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"", u""));
  EXPECT_EQ(0u, At<std::uintptr_t>(Watch::Take()[1].record, 24 + 3 * sizeof(void*)))
      << "no text, not an empty one";
  EXPECT_EQ(u"", tip_.GetToolText(tool_));
  tip_.SetToolText(tool_, u"now");
  EXPECT_EQ(u"now", tip_.GetToolText(tool_));
}

TEST_F(UnicodeTooltip, AToolIsFoundAmongOthersAndRemoved) {
  ASSERT_TRUE(tip_.Create(parent_));
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"one", u""));
  ASSERT_TRUE(tip_.AddTool(other_, parent_, u"two, which is longer", u""));
  EXPECT_EQ(2, tip_.ToolCount());
  EXPECT_EQ(u"one", tip_.GetToolText(tool_));
  EXPECT_EQ(u"two, which is longer", tip_.GetToolText(other_));
  const Watch watch(tip_.TipWindow());
  EXPECT_TRUE(tip_.RemoveTool(tool_));
  const auto sent = Watch::Take();
  EXPECT_EQ((Numbers{1037, 1082, 1075}), NumbersOf(sent));
  EXPECT_EQ(tool_, At<::HWND>(sent.back().record, 8 + sizeof(void*)));
  EXPECT_FALSE(tip_.RemoveTool(tool_));
  EXPECT_EQ(1, tip_.ToolCount());
  EXPECT_EQ(u"two, which is longer", tip_.GetToolText(other_));
}

TEST_F(UnicodeTooltip, AToolWithoutATextTakesNoPartInThoseOfOthers) {
  ASSERT_TRUE(tip_.Create(parent_));
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"", u""));
  ASSERT_TRUE(tip_.AddTool(other_, parent_, u"text", u""));
  const ::HWND third = NewTool(5);
  ASSERT_TRUE(tip_.AddTool(third, parent_, u"", u""));
  EXPECT_EQ(u"", tip_.GetToolText(tool_));
  EXPECT_EQ(u"text", tip_.GetToolText(other_)) << "the one before it has none";
  EXPECT_EQ(u"", tip_.GetToolText(third)) << "the one before it has one";
}

TEST_F(UnicodeTooltip, ATextForAnUnknownToolStillBringsTheTipToTheTop) {
  ASSERT_TRUE(tip_.Create(parent_));
  ::SetWindowPos(tip_.TipWindow(), std::bit_cast<::HWND>(LONG_PTR{-2}), 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  const auto topmost = [&] { return (::GetWindowLongW(tip_.TipWindow(), GWL_EXSTYLE) & WS_EX_TOPMOST) != 0; };
  ASSERT_FALSE(topmost());
  const Watch watch(tip_.TipWindow());
  tip_.SetToolText(other_, u"text");
  EXPECT_TRUE(topmost());
  EXPECT_EQ(Numbers{1037}, NumbersOf(Watch::Take()));
  EXPECT_FALSE(::IsWindowVisible(tip_.TipWindow()));
}

TEST_F(UnicodeTooltip, ATextLeavesTheActiveWindowActive) {
  ::ShowWindow(parent_, SW_SHOW);
  ::SetActiveWindow(parent_);
  ASSERT_EQ(parent_, ::GetActiveWindow());
  ASSERT_TRUE(tip_.Create(parent_));
  ASSERT_TRUE(tip_.AddTool(tool_, parent_, u"text", u""));
  tip_.SetToolText(tool_, u"other");
  EXPECT_EQ(parent_, ::GetActiveWindow());
}

TEST_F(UnicodeTooltip, ATextIsReadUpToItsFirstNul) {
  EXPECT_EQ(u"one", TextToFirstNul(std::u16string_view(u"one\0two", 7)));
  EXPECT_EQ(u" one ", TextToFirstNul(std::u16string_view(u" one \0", 6)));
  EXPECT_EQ(u"", TextToFirstNul(std::u16string_view(u"\0one", 4)));
  EXPECT_EQ(u"one two", TextToFirstNul(u"  one two  ")) << "without one, blanks go";
  EXPECT_EQ(u"", TextToFirstNul(u"   "));
  EXPECT_EQ(u"", TextToFirstNul(u""));
}

// --- Attributes -------------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, EveryAttributeIsOneMessage) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  tip_.PutBackColor(0x123456);
  EXPECT_EQ(0x123456, tip_.BackColor());
  tip_.PutDelayTime(3, 700);
  EXPECT_EQ(700, tip_.DelayTime(3));
  tip_.PutDelayTime(7, 800);
  EXPECT_EQ(800, tip_.DelayTime(3 + 8)) << "only the two lowest bits say which";
  tip_.ToolCount();
  tip_.MaxWidth();
  const auto sent = Watch::Take();
  EXPECT_EQ((Numbers{1043, 1046, 1027, 1045, 1027, 1045, 1037, 1049}), NumbersOf(sent));
  EXPECT_EQ(0x123456u, sent[0].wparam);
  EXPECT_EQ(3u, sent[4].wparam);
}

TEST_F(UnicodeTooltip, ReadingTheTextColourSendsTheMessageThatSetsIt) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  tip_.PutTextColor(0x0000FF);
  EXPECT_EQ(0x0000FF, ::SendMessageW(tip_.TipWindow(), TTM_GETTIPTEXTCOLOR, 0, 0));
  Watch::Take();
  EXPECT_EQ(0, tip_.TextColor()) << "the result of a setting, not the colour";
  EXPECT_EQ(Numbers{1044}, NumbersOf(Watch::Take()));
}

TEST_F(UnicodeTooltip, MarginsAreSetASideAtATime) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  for (Long side = 0; side < 4; ++side) tip_.PutMargin(side, 10 + side);
  EXPECT_EQ((Numbers{1051, 1050, 1051, 1050, 1051, 1050, 1051, 1050}), NumbersOf(Watch::Take()));
  for (Long side = 0; side < 4; ++side) EXPECT_EQ(10 + side, tip_.Margin(side));
  tip_.PutMargin(4, 99);
  tip_.PutMargin(-1, 99);
  EXPECT_EQ(0, tip_.Margin(4));
  EXPECT_EQ(0, tip_.Margin(-1));
  ::RECT margin = {};
  ::SendMessageW(tip_.TipWindow(), TTM_GETMARGIN, 0, reinterpret_cast<LPARAM>(&margin));
  EXPECT_EQ((std::array<LONG, 4>{10, 11, 12, 13}),
            (std::array<LONG, 4>{margin.left, margin.top, margin.right, margin.bottom}));
}

// Where the width is to stand, its address does.
TEST_F(UnicodeTooltip, TheMaximumWidthIsSentByItsAddress) {
  ASSERT_TRUE(tip_.Create(parent_));
  const Watch watch(tip_.TipWindow());
  for (const auto& [given, expected] : {std::pair{300, 300}, {1, 1}, {0, -1}, {-7, -1}}) {
    tip_.PutMaxWidth(given);
    const auto sent = Watch::Take();
    ASSERT_EQ(Numbers{1048}, NumbersOf(sent));
    EXPECT_EQ(expected, At<Long>(sent[0].record, 0)) << given;
  }
}

// --- As users see it --------------------------------------------------------------------------------------

TEST_F(UnicodeTooltip, ShowsTheTextWhileThePointerRestsOnTheTool) {
  tip_.PutBalloon(false);
  ::ShowWindow(parent_, SW_SHOWNOACTIVATE);
  ASSERT_TRUE(tip_.Create(tool_));
  ASSERT_TRUE(tip_.AddTool(tool_, tool_, u"", u""));
  tip_.SetToolText(tool_, u"Καλημέρα");
  tip_.PutDelayTime(TTDT_INITIAL, 1);
  ::POINT place = {5, 5};
  ::ClientToScreen(tool_, &place);
  ::SetCursorPos(place.x, place.y);
  ::SendMessageW(tool_, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5));
  for (int round = 0; round < 200 && !::IsWindowVisible(tip_.TipWindow()); ++round) {
    ::MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) ::DispatchMessageW(&message);
    ::Sleep(5);
  }
  EXPECT_TRUE(::IsWindowVisible(tip_.TipWindow()));
  wchar_t shown[40] = {};
  ::GetWindowTextW(tip_.TipWindow(), shown, 40);
  EXPECT_EQ(u"Καλημέρα", std::u16string(win32::Wrap(shown)));
}

}  // namespace
}  // namespace marklet::plumbing
