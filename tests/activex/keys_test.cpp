// The keyboard between the container and the control: the access key, key messages, the focus.
#include <set>
#include <string>

#include "activex/container.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

// Keys that are down, as the thread's key state has them.
class KeysDown {
 public:
  KeysDown(std::initializer_list<int> keys) {
    GetKeyboardState(former_);
    BYTE state[256] = {};
    for (const int key : keys) state[key] = 0x80;
    SetKeyboardState(state);
  }
  ~KeysDown() { SetKeyboardState(former_); }
  KeysDown(const KeysDown&) = delete;
  KeysDown& operator=(const KeysDown&) = delete;

 private:
  BYTE former_[256] = {};
};

class Keys : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = container_.Dispatch();
  }

  CONTROLINFO Info() {
    CONTROLINFO info = {};
    info.cb = sizeof info;
    EXPECT_EQ(S_OK, As<IOleControl>(object_)->GetControlInfo(&info));
    return info;
  }
  std::vector<ACCEL> Table() {
    const CONTROLINFO info = Info();
    std::vector<ACCEL> table(info.cAccel);
    if (!table.empty()) {
      EXPECT_EQ(info.cAccel, CopyAcceleratorTableW(info.hAccel, table.data(), info.cAccel));
    }
    return table;
  }
  // The entries that stand for what is typed, not for keys.
  std::set<WORD> Characters() {
    std::set<WORD> characters;
    for (const ACCEL& entry : Table())
      if ((entry.fVirt & FVIRTKEY) == 0) characters.insert(entry.key);
    return characters;
  }
  // Whether the container would take a message for the control's key.
  bool Matches(UINT message, WPARAM key, LPARAM flags = 0x20000001) {
    const CONTROLINFO info = Info();
    MSG sent = {};
    sent.hwnd = container_.Window();
    sent.message = message;
    sent.wParam = key;
    sent.lParam = flags;
    return info.hAccel && IsAccelerator(info.hAccel, info.cAccel, &sent, nullptr);
  }

  Container container_;
  ComPtr<IDispatch> object_;
};

// --- The access key ---------------------------------------------------------------------------------------

TEST_F(Keys, TheAccessKeyWorksWithAndWithoutCapsLock) {
  for (const wchar_t* caption : {L"&total", L"&Total"}) {
    PutText(object_.Get(), L"Caption", caption);
    const KeysDown alt({VK_MENU});
    EXPECT_TRUE(Matches(WM_SYSCHAR, L't'));
    EXPECT_TRUE(Matches(WM_SYSCHAR, L'T')) << "with Caps Lock or Shift";
    EXPECT_FALSE(Matches(WM_SYSCHAR, L's'));
    EXPECT_FALSE(Matches(WM_SYSCHAR, L'S'));
  }
}

TEST_F(Keys, TheAccessKeyWorksForHostsThatLookAtTheKeyDownMessage) {
  for (const wchar_t* caption : {L"&total", L"&Total"}) {
    PutText(object_.Get(), L"Caption", caption);
    {
      const KeysDown alt({VK_MENU});
      EXPECT_TRUE(Matches(WM_SYSKEYDOWN, 'T'));
      EXPECT_FALSE(Matches(WM_SYSKEYDOWN, 'S'));
    }
    {
      const KeysDown both({VK_MENU, VK_SHIFT});
      EXPECT_TRUE(Matches(WM_SYSKEYDOWN, 'T'));
    }
    {
      const KeysDown ctrl({VK_CONTROL});
      EXPECT_FALSE(Matches(WM_KEYDOWN, 'T', 1));
    }
    const KeysDown none({});
    EXPECT_FALSE(Matches(WM_KEYDOWN, 'T', 1)) << "typing is no access key";
    EXPECT_FALSE(Matches(WM_CHAR, 't', 1));
    EXPECT_FALSE(Matches(WM_CHAR, 'T', 1));
  }
}

// The characters from "p" to "z" share their numbers with F1 to F11, those from "a" with the number pad.
TEST_F(Keys, NoAccessKeyIsAKeyOfAnotherMeaning) {
  for (wchar_t letter = L'a'; letter <= L'z'; ++letter) {
    const wchar_t caption[] = {L'&', letter, L'o', 0};
    PutText(object_.Get(), L"Caption", caption);
    std::multiset<int> shifts;
    for (const ACCEL& entry : Table()) {
      EXPECT_EQ(FALT, entry.fVirt & (FALT | FCONTROL)) << "with Alt alone";
      if ((entry.fVirt & FVIRTKEY) == 0) continue;
      shifts.insert(entry.fVirt & FSHIFT);
      EXPECT_EQ(letter - L'a' + L'A', entry.key);
    }
    EXPECT_EQ((std::multiset<int>{0, FSHIFT}), shifts) << "its key, without Shift and with it";
  }
}

TEST_F(Keys, ALetterIsAKeyWhateverTheKeyboardHasOnIt) {
  PutText(object_.Get(), L"Caption", L"&\x00E9tage");
  EXPECT_EQ((std::set<WORD>{0xC9, 0xE9}), Characters()) << "in both cases";
}

TEST_F(Keys, AKeyThatNeedsShiftIsFoundWithShift) {
  PutText(object_.Get(), L"Caption", L"a && b");
  const SHORT scan = VkKeyScanW(L'&');
  ASSERT_NE(-1, scan);
  ASSERT_EQ(1, HIBYTE(scan)) << "on this keyboard";
  {
    const KeysDown both({VK_MENU, VK_SHIFT});
    EXPECT_TRUE(Matches(WM_SYSKEYDOWN, LOBYTE(scan)));
    EXPECT_TRUE(Matches(WM_SYSCHAR, L'&'));
  }
  const KeysDown alt({VK_MENU});
  EXPECT_FALSE(Matches(WM_SYSKEYDOWN, LOBYTE(scan))) << "that is another character";
}

// There are such on keyboards of many languages, and the characters that Ctrl types everywhere.
TEST_F(Keys, ACharacterThatTakesMoreThanShiftIsNoKeyWithAlt) {
  constexpr wchar_t kTypedWithCtrl = 3;
  ASSERT_EQ(2, HIBYTE(VkKeyScanW(kTypedWithCtrl)));
  const wchar_t caption[] = {L'&', kTypedWithCtrl, 0};
  PutText(object_.Get(), L"Caption", caption);
  EXPECT_EQ(std::set<WORD>{kTypedWithCtrl}, Characters());
  for (const ACCEL& entry : Table()) EXPECT_EQ(0, entry.fVirt & FVIRTKEY);
}

// The scan knows no markup, and a doubled ampersand is a key.
TEST_F(Keys, TheAccessKeyIsTheOneThatTheScanFinds) {
  const std::pair<const wchar_t*, std::set<WORD>> kCaptions[] = {
      {L"Save &As", {L'a', L'A'}},           {L"&One &Two", {L'o', L'O'}}, {L"a && b", {L'&'}},
      {L"<f=A&b>face</f> &c", {L'b', L'B'}}, {L"& blank", {L' '}},         {L"&7", {L'7'}}};
  for (const auto& [caption, key] : kCaptions) {
    PutText(object_.Get(), L"Caption", caption);
    EXPECT_EQ(key, Characters()) << caption;
    EXPECT_EQ(0u, Info().dwFlags) << "neither Enter nor Esc is the control's";
  }
}

TEST_F(Keys, ThereIsNoneWithoutMnemonics) {
  PutText(object_.Get(), L"Caption", L"&Total");
  EXPECT_EQ(1, container_.Count("OnControlInfoChanged"));
  EXPECT_NE(0, Info().cAccel);
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"UseMnemonic", Variant::Bool(false)));
  EXPECT_EQ(0, Info().cAccel);
  EXPECT_EQ(L"&Total", GetText(object_.Get(), L"Caption"));
}

TEST_F(Keys, ThereIsNoTableWithoutAnAccessKey) {
  for (const wchar_t* caption : {L"none", L"at the end &", L""}) {
    PutText(object_.Get(), L"Caption", caption);
    const CONTROLINFO info = Info();
    EXPECT_EQ(0, info.cAccel);
    EXPECT_EQ(nullptr, info.hAccel);
  }
}

TEST_F(Keys, ItsPressIsTakenInEveryForm) {
  PutText(object_.Get(), L"Caption", L"&Total");
  Sink events;
  ASSERT_EQ(S_OK, events.ConnectEvents(object_.Get()));
  const auto control = As<IOleControl>(object_);
  for (const UINT message : {WM_SYSKEYDOWN, WM_SYSCHAR, WM_KEYDOWN, WM_CHAR}) {
    MSG sent = {};
    sent.hwnd = container_.Window();
    sent.message = message;
    sent.wParam = 'T';
    EXPECT_EQ(S_OK, control->OnMnemonic(&sent));
  }
  EXPECT_EQ(S_OK, control->OnMnemonic(nullptr));
  EXPECT_EQ(Log{}, events.log) << "what follows is the container's focus logic";
}

// --- Key messages -----------------------------------------------------------------------------------------

class KeyMessages : public Keys {
 protected:
  void SetUp() override {
    Keys::SetUp();
    ASSERT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
    active_ = As<IOleInPlaceActiveObject>(object_);
    message_.hwnd = container_.ControlWindow();
    message_.message = WM_KEYDOWN;
    message_.wParam = VK_TAB;
    container_.log.clear();
  }

  ComPtr<IOleInPlaceActiveObject> active_;
  MSG message_ = {};
};

TEST_F(KeyMessages, ReachTheSiteWithTheirModifiers) {
  struct Case {
    std::initializer_list<int> down;
    const char* call;
  };
  const Case cases[] = {{{}, "TranslateAccelerator(0)"},
                        {{VK_SHIFT}, "TranslateAccelerator(1)"},
                        {{VK_CONTROL}, "TranslateAccelerator(2)"},
                        {{VK_MENU}, "TranslateAccelerator(4)"},
                        {{VK_SHIFT, VK_CONTROL, VK_MENU}, "TranslateAccelerator(7)"}};
  for (const Case& c : cases) {
    const KeysDown down(c.down);
    container_.log.clear();
    EXPECT_EQ(S_FALSE, active_->TranslateAccelerator(&message_));
    EXPECT_EQ(Log{c.call}, container_.log);
  }
}

TEST_F(KeyMessages, AreHandledWhenTheSiteSaysSo) {
  container_.accelerator_answer = S_OK;
  EXPECT_EQ(S_OK, active_->TranslateAccelerator(&message_));
  for (const HRESULT answer : {S_FALSE, E_NOTIMPL, E_FAIL}) {
    container_.accelerator_answer = answer;
    EXPECT_EQ(S_FALSE, active_->TranslateAccelerator(&message_)) << "it goes on to its window";
  }
  container_.missing = {SiteInterface::ControlSite};
  EXPECT_EQ(S_FALSE, active_->TranslateAccelerator(&message_));
  EXPECT_EQ(E_POINTER, active_->TranslateAccelerator(nullptr));
}

// A container may hand what it is asked about to its active object.
TEST_F(KeyMessages, DoNotGoInCircles) {
  container_.on_call = [&](const std::string& call) {
    if (call.starts_with("TranslateAccelerator")) {
      EXPECT_EQ(S_FALSE, active_->TranslateAccelerator(&message_));
    }
  };
  EXPECT_EQ(S_FALSE, active_->TranslateAccelerator(&message_));
  EXPECT_EQ(1, container_.Count("TranslateAccelerator(0)"));
}

TEST_F(KeyMessages, MayBeTheControlsLast) {
  container_.on_call = [&](const std::string& call) {
    if (call.starts_with("TranslateAccelerator")) container_.Close();
  };
  container_.accelerator_answer = S_OK;
  IOleInPlaceActiveObject* const raw = active_.Get();
  active_.Reset();
  object_.Reset();
  EXPECT_EQ(S_OK, raw->TranslateAccelerator(&message_));
  EXPECT_FALSE(container_.Object());
}

// --- The focus --------------------------------------------------------------------------------------------

class Focus : public Keys {
 protected:
  void SetUp() override {
    Keys::SetUp();
    ASSERT_EQ(S_OK, container_.Activate());
    window_ = container_.ControlWindow();
    SetFocus(container_.Window());
    container_.log.clear();
  }
  Log FocusCalls() const {
    Log calls;
    for (const std::string& call : container_.log)
      if (call.starts_with("OnFocus")) calls.push_back(call);
    return calls;
  }

  HWND window_ = nullptr;
};

TEST_F(Focus, TheSiteHearsOfItComingAndGoing) {
  SetFocus(window_);
  EXPECT_EQ(Log{"OnFocus"}, container_.log);
  SetFocus(container_.Window());
  EXPECT_EQ((Log{"OnFocus", "OnFocus(lost)"}), container_.log);
}

TEST_F(Focus, TheSiteHearsOfItWithTheUserInterface) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  EXPECT_EQ((Log{"OnUIActivate", "OnFocus", "SetActiveObject"}), container_.log);
}

TEST_F(Focus, TheSiteHearsOfItsEndWhenTheControlIsHiddenOrGoes) {
  SetFocus(window_);
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
  EXPECT_EQ((Log{"OnFocus", "OnFocus(lost)"}), FocusCalls());
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  container_.log.clear();
  container_.Close();
  EXPECT_EQ(Log{"OnFocus(lost)"}, FocusCalls());
}

TEST_F(Focus, IsKeptToItselfWithoutAControlSite) {
  container_.missing = {SiteInterface::ControlSite};
  SetFocus(window_);
  EXPECT_EQ(window_, GetFocus());
  EXPECT_EQ(Log{}, FocusCalls());
}

TEST_F(Focus, TheControlMayEndWhenTheSiteHearsOfIt) {
  for (const char* when : {"OnFocus", "OnFocus(lost)"}) {
    Container container;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    bool once = true;
    container.on_call = [&](const std::string& call) {
      if (call != when || !once) return;
      once = false;
      container.Close();
    };
    container.Activate(OLEIVERB_UIACTIVATE);
    SetFocus(container.Window());
    EXPECT_FALSE(container.Object()) << when;
    EXPECT_EQ(0u, container.SiteReferences());
  }
}

TEST_F(Focus, TheUserInterfaceMayEndWhenTheSiteHearsOfIt) {
  container_.on_call = [&](const std::string& call) {
    if (call == "OnFocus") As<IOleInPlaceObject>(object_)->UIDeactivate();
  };
  container_.Activate(OLEIVERB_UIACTIVATE);
  container_.on_call = nullptr;
  EXPECT_EQ(container_.Count("OnUIActivate"), container_.Count("OnUIDeactivate"));
  EXPECT_EQ(0, container_.Count("SetActiveObject")) << "it is the container's active object no more";
}

}  // namespace
}  // namespace ocx_test
