// The sample container, from which users start.
#include "examples/shared/control.h"  // first: it wants the system's headers whole

#include "activex/memory.h"
#include "activex/server.h"

namespace ocx_test {
namespace {

class ExampleForm : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(S_OK, Server::Get().Register());
    window_ =
        CreateWindowExW(0, L"Static", L"", WS_POPUP, 50, 50, 300, 200, nullptr, nullptr, nullptr, nullptr);
  }
  void TearDown() override {
    DestroyWindow(window_);
    Server::Get().Unregister();
  }

  // A control in its place on the form, used and taken away.
  void UseControl() {
    example::Control control(window_, {10, 10, 150, 60});
    control.Set(L"Caption", L"<b>a</b> caption");
    control.Set(L"TextEffect", LONG{1});
    control.Set(L"AutoSize", true);
    control.Move({20, 20, 170, 80});
  }

  HWND window_ = nullptr;
};

TEST_F(ExampleForm, ShowsAControl) {
  example::Control control(window_, {10, 20, 150, 60});
  const HWND shown = GetWindow(window_, GW_CHILD);
  ASSERT_TRUE(shown);
  RECT rect = {};
  GetClientRect(shown, &rect);
  EXPECT_EQ(140, rect.right);
  EXPECT_EQ(40, rect.bottom);
}

TEST_F(ExampleForm, LeavesNothingOfItsControls) {
  constexpr int kControls = 200;
  for (int i = 0; i < kControls; ++i) UseControl();
  EXPECT_EQ(nullptr, GetWindow(window_, GW_CHILD));
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  const auto before = HeapBytesInUse();
  for (int i = 0; i < kControls; ++i) UseControl();
  // The question ends what still waits a tenth of a second after its window.
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
  // The least that a control can leave is far more.
  const auto after = HeapBytesInUse();
  EXPECT_LT(after, before + std::size_t{kControls} * 8) << before << " to " << after;
}

}  // namespace
}  // namespace ocx_test
