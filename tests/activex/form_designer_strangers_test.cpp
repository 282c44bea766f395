// The sample designer with controls that aren't ours, and beside another designer.
#include "activex/form_bench.h"  // first: it wants the system's headers whole

#include "activex/strange_control.h"
#include "support/gdi_handles.h"
#include "support/user_handles.h"

namespace ocx_test {
namespace {

class FormDesignerOfStrangers : public ::testing::Test {
 protected:
  void TearDown() override {
    bench_.End();
    EXPECT_EQ(0, StrangeControl::alive);
  }
  std::wstring Told() { return bench_.answers.told.empty() ? L"" : bench_.answers.told.back(); }

  Path path_;
  StrangeClass class_;
  Bench bench_{96, {{kStrangeId, L"Stranger"}}};
};

TEST_F(FormDesignerOfStrangers, SaysThatOneCantBeCreated) {
  class_.how.creation = E_FAIL;
  bench_.Do(designer::kPlace);
  EXPECT_EQ(0u, Told().find(L"The control Stranger can't be created."));
  class_.how = {};
  class_.how.init_new = E_OUTOFMEMORY;
  bench_.Do(designer::kPlace);
  EXPECT_EQ(2u, bench_.answers.told.size());
  EXPECT_TRUE(bench_.Controls().empty());
  EXPECT_EQ(0, StrangeControl::alive) << "one that was begun is taken back";
  EXPECT_FALSE(bench_.Get().IsDirty());
}

TEST_F(FormDesignerOfStrangers, HoldsOneWithoutAWindow) {
  Element& element = bench_.Place();
  EXPECT_FALSE(element.Window());
  EXPECT_TRUE(bench_.answers.told.empty());
  UpdateWindow(bench_.Get().Form().Window());
  bench_.Drag(20, 20, 60, 60);
  EXPECT_EQ(56, element.GetPlace().left);
  bench_.Key(VK_DELETE);
  EXPECT_EQ(0, StrangeControl::alive);
}

TEST_F(FormDesignerOfStrangers, ListsPropertiesWithoutCategoriesUnderOne) {
  bench_.Place();
  const auto rows = bench_.Rows();
  ASSERT_FALSE(rows.empty());
  EXPECT_EQ(L"Misc", rows[0]);
  EXPECT_EQ(0, std::count(rows.begin(), rows.end(), L"Appearance") - 1) << "the property";
  EXPECT_TRUE(bench_.SelectRow(L"Caption"));
  ASSERT_TRUE(bench_.SelectRow(L"ImageKey"));
  EXPECT_FALSE(IsWindowVisible(bench_.Item(PropertyGrid::kMore))) << "it names no page";
  bench_.Do(designer::kShowPages);
  EXPECT_EQ(L"Stranger1 has no property pages.", bench_.Get().Status());
}

TEST_F(FormDesignerOfStrangers, ListsNothingOfOneThatDescribesNothing) {
  class_.how.has_types = false;
  bench_.Place();
  EXPECT_TRUE(bench_.Rows().empty());
  EXPECT_EQ(nullptr, bench_.Editor());
}

TEST_F(FormDesignerOfStrangers, LetsOneGoThatClosesItself) {
  bench_.Place();
  bench_.Place();
  class_.last->CloseItself();
  EXPECT_EQ(2u, bench_.Controls().size()) << "while it calls";
  PumpMessages();
  EXPECT_EQ(1u, bench_.Controls().size());
  EXPECT_EQ(nullptr, bench_.Get().Form().Selected());
  EXPECT_TRUE(bench_.Rows().empty());
  EXPECT_EQ(L"Stranger2 has closed itself.", bench_.Get().Status());
  EXPECT_EQ(1, StrangeControl::alive);
}

TEST_F(FormDesignerOfStrangers, LetsOneGoThatClosesItselfWhileAPropertyIsSet) {
  class_.how.closes_in_put = true;
  bench_.Place();
  bench_.Type(L"Caption", L"farewell");
  PumpMessages();
  EXPECT_TRUE(bench_.Controls().empty());
  EXPECT_EQ(0, StrangeControl::alive);
}

TEST_F(FormDesignerOfStrangers, SaysThatOneCantBeSavedAndKeepsTheOlderFile) {
  bench_.answers.file = path_.Get();
  bench_.Place();
  bench_.Do(designer::kSaveForm);
  const auto before = path_.Bytes();
  EXPECT_FALSE(before.empty());
  class_.how.save = E_FAIL;
  bench_.Place();
  bench_.Do(designer::kSaveForm);
  EXPECT_EQ(0u, Told().find(L"Stranger2 can't be saved."));
  EXPECT_EQ(before, path_.Bytes());
  EXPECT_TRUE(bench_.Get().IsDirty());
  bench_.Do(designer::kRun);
  EXPECT_EQ(2u, bench_.answers.told.size());
  EXPECT_FALSE(bench_.Get().Running());
}

TEST_F(FormDesignerOfStrangers, SaysThatOneCantBeLoadedAndKeepsTheForm) {
  bench_.answers.file = path_.Get();
  bench_.Place();
  bench_.Place();
  bench_.Do(designer::kSaveForm);
  bench_.Key(VK_DELETE);
  class_.how.load = E_FAIL;
  EXPECT_FALSE(bench_.Get().Open(path_.Get()));
  EXPECT_EQ(0u, Told().find(L"Stranger1 can't be loaded."));
  EXPECT_EQ(1u, bench_.Controls().size());
  EXPECT_EQ(1, StrangeControl::alive);
  EXPECT_TRUE(bench_.Get().IsDirty()) << "as before";
}

TEST_F(FormDesignerOfStrangers, SaysThatOneCantRun) {
  bench_.Place();
  bench_.Do(designer::kRun);
  EXPECT_EQ(0u, Told().find(L"Stranger1 can't run."));
  EXPECT_FALSE(bench_.Get().Running());
  EXPECT_TRUE(IsWindowEnabled(bench_.Get().Window()));
  EXPECT_EQ(1, StrangeControl::alive);
}

// --- More than one ----------------------------------------------------------------------------------------

class FormDesigners : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, Server::Get().Register()); }
  void TearDown() override { Server::Get().Unregister(); }
};

TEST_F(FormDesigners, WorkBesideEachOther) {
  Bench one, other;
  Element& first = one.Place();
  Element& second = other.Place();
  one.Type(L"Caption", L"one");
  other.Type(L"Caption", L"other");
  EXPECT_EQ(L"one", GetText(&first.Dispatch(), L"Caption"));
  EXPECT_EQ(L"other", GetText(&second.Dispatch(), L"Caption"));
  one.End();
  other.Drag(20, 20, 60, 60);
  EXPECT_EQ(56, second.GetPlace().left);
}

TEST_F(FormDesigners, LeaveNothing) {
  const auto use = [] {
    Bench bench;
    bench.Place();
    bench.SelectRow(L"BackColor");
    bench.SelectRow(L"Caption");
    bench.Key(VK_RIGHT);
    PumpMessages();
  };
  use();
  PumpMessages();
  const int gdi = marklet::CountGdiHandles(), user = marklet::CountUserHandles();
  for (int i = 0; i < 5; ++i) use();
  PumpMessages();
  EXPECT_LE(marklet::CountGdiHandles(), gdi + 2);
  EXPECT_LE(marklet::CountUserHandles(), user + 4);
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

}  // namespace
}  // namespace ocx_test
