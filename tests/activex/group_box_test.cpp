// Group boxes among the neighbours of controls: found wherever they come from, at a cost that doesn't grow
// with the form.
#include <memory>
#include <optional>
#include <vector>

#include "activex/container.h"
#include "activex/import_patch.h"
#include "activex/server_copy.h"

namespace ocx_test {
namespace {

constexpr RECT kPlace = {20, 30, 80, 60};

class GroupBoxes : public ::testing::Test {
 protected:
  void SetUp() override {
    Server::Get();
    form_ = NewForm();
  }
  void TearDown() override {
    for (const auto& control : controls_) {
      control->frame_window = nullptr;
      control->Close();
    }
    controls_.clear();
    DestroyWindow(form_);
  }

  static HWND NewForm() {
    return CreateWindowExW(0, L"Static", L"", WS_POPUP, 0, 0, 300, 200, nullptr, nullptr, nullptr, nullptr);
  }
  static HWND NewButton(HWND parent, DWORD style = 0) {
    return CreateWindowExW(0, L"Button", L"", WS_CHILD | WS_VISIBLE | style, 5, 5, 150, 100, parent, nullptr,
                           nullptr, nullptr);
  }
  // A new control on the form.
  void Place(const RECT& place = kPlace) {
    controls_.push_back(std::make_unique<Container>());
    Container& container = *controls_.back();
    container.frame_window = form_;
    container.position = container.clip = place;
    container.HostObject(MakeControl());
    EXPECT_EQ(S_OK, container.Activate());
  }
  // Whether a new control counts on a group box where it stands.
  bool IsSeen() {
    Place();
    return (GetWindowLongPtrW(controls_.back()->ControlWindow(), GWL_STYLE) & WS_CLIPSIBLINGS) == 0;
  }

  virtual ComPtr<IUnknown> MakeControl() { return CreateControl(); }

  HWND form_ = nullptr;
  std::vector<std::unique_ptr<Container>> controls_;
};

TEST_F(GroupBoxes, AreSeenWheneverTheyComeAndUntilTheyGo) {
  EXPECT_FALSE(IsSeen());
  NewButton(form_);
  EXPECT_FALSE(IsSeen()) << "a button of another kind";
  const HWND box = NewButton(form_, BS_GROUPBOX);
  EXPECT_TRUE(IsSeen());
  MoveWindow(box, 100, 5, 50, 50, FALSE);
  EXPECT_FALSE(IsSeen());
  MoveWindow(box, 5, 5, 50, 50, FALSE);
  EXPECT_TRUE(IsSeen());
  DestroyWindow(box);
  EXPECT_FALSE(IsSeen());
}

TEST_F(GroupBoxes, MayComeFromAnotherParentAndGoToIt) {
  const HWND other = NewForm(), box = NewButton(other, BS_GROUPBOX);
  NewButton(form_);
  EXPECT_FALSE(IsSeen());
  SetParent(box, form_);
  ASSERT_EQ(box, GetWindow(form_, GW_CHILD)) << "above all others";
  EXPECT_TRUE(IsSeen());
  SetParent(NewButton(other), form_);
  EXPECT_TRUE(IsSeen()) << "between two buttons";
  SetParent(box, other);
  EXPECT_FALSE(IsSeen());
  DestroyWindow(other);
}

TEST_F(GroupBoxes, MayHaveBeenButtonsOfAnotherKind) {
  const HWND button = NewButton(form_);
  EXPECT_FALSE(IsSeen());
  SendMessageW(button, BM_SETSTYLE, BS_GROUPBOX, FALSE);
  EXPECT_TRUE(IsSeen());
}

TEST_F(GroupBoxes, OfEachFormAreItsOwn) {
  NewButton(form_, BS_GROUPBOX);
  EXPECT_TRUE(IsSeen());
  const HWND first = form_;
  form_ = NewForm();
  EXPECT_FALSE(IsSeen());
  form_ = first;
  EXPECT_TRUE(IsSeen());
  DestroyWindow(GetParent(controls_[1]->ControlWindow()));
}

// --- What it costs ----------------------------------------------------------------------------------------

int steps = 0;
DWORD now = 0;  // milliseconds
HWND WINAPI CountedFindWindow(HWND parent, HWND after, LPCWSTR name, LPCWSTR title) {
  ++steps;
  return FindWindowExW(parent, after, name, title);
}
DWORD WINAPI StoppedTickCount() { return now; }

// With a server that asks this test for windows and the time.
class SearchForGroupBoxes : public GroupBoxes {
 protected:
  void SetUp() override {
    GroupBoxes::SetUp();
    ASSERT_TRUE(server_.Load());
    patch_.emplace(server_.Module(), std::vector<Replacement>{{"FindWindowExW", Address(CountedFindWindow)},
                                                              {"GetTickCount", Address(StoppedTickCount)}});
    ASSERT_EQ(2u, patch_->Count());
    for (int i = 0; i < kButtons; ++i) NewButton(form_);
    steps = 0;
  }
  void TearDown() override {
    GroupBoxes::TearDown();
    EXPECT_EQ(S_OK, server_.CanUnloadNow());
    patch_.reset();
    server_.Unload();
  }
  ComPtr<IUnknown> MakeControl() override { return server_.CreateControl(); }

  static constexpr int kButtons = 100;

 private:
  ServerCopy server_{L"groups.ocx"};
  std::optional<ImportPatch> patch_;
};

// Each step goes through all buttons: a form of 300 of them and 300 controls took half a minute.
TEST_F(SearchForGroupBoxes, IsOneForAllControlsOfAForm) {
  constexpr int kControls = 10;
  for (int i = 0; i < kControls; ++i) {
    Place({160, 20 * i, 220, 20 * i + 18});
    PutNumber(controls_.back()->Dispatch().Get(), L"BackStyle", 0);
    UpdateWindow(controls_.back()->ControlWindow());
  }
  EXPECT_GT(steps, kButtons);
  EXPECT_LE(steps, kButtons + 1 + 4 * kControls);
}

TEST_F(SearchForGroupBoxes, FindsOneThatWasPutBetweenOthersASecondLater) {
  EXPECT_FALSE(IsSeen());
  const HWND box = NewButton(form_, BS_GROUPBOX);
  SetWindowPos(box, GetWindow(form_, GW_CHILD), 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
  now += 1001;
  EXPECT_TRUE(IsSeen());
}

}  // namespace
}  // namespace ocx_test
