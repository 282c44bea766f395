// Several apartments that come to the server at the same time, each with a first control of its own.
#include <atomic>
#include <memory>
#include <vector>

#include "activex/container.h"
#include "activex/server_copy.h"

namespace ocx_test {
namespace {

constexpr int kThreads = 4;
constexpr int kReloads = 60;

// Lets threads go on when all of them are there, as nearly at once as can be: they don't sleep before.
class Barrier {
 public:
  explicit Barrier(int threads) : missing_(threads) {}
  void Pass() {
    --missing_;
    while (missing_ > 0) YieldProcessor();
  }

 private:
  std::atomic<int> missing_;
};

// What one apartment saw of its first control.
struct FirstControl {
  HRESULT activated = E_FAIL;
  bool had_window = false;
  bool painted = false;
};

FirstControl ActivateAfter(Barrier& barrier, const ServerCopy& server) {
  const Apartment apartment;
  Container container;
  EXPECT_TRUE(container.Window());
  container.HostObject(server.CreateControl());
  FirstControl result;
  barrier.Pass();
  result.activated = container.Activate();
  result.had_window = container.ControlWindow() != nullptr;
  result.painted = UpdateWindow(container.ControlWindow()) != FALSE;
  container.Close();
  return result;
}

// The module is new at each load, and nothing of the one before may be in the way.
TEST(Threads, AllActivateTheirFirstControlsTogetherAfterEveryLoad) {
  Server::Get();
  ServerCopy server(L"threads.ocx");
  for (int reload = 0; reload < kReloads; ++reload) {
    SCOPED_TRACE(reload);
    ASSERT_TRUE(server.Load());
    Barrier barrier(kThreads);
    std::vector<FirstControl> controls(kThreads);
    {
      std::vector<std::unique_ptr<HostThread>> threads;
      threads.reserve(kThreads);
      for (FirstControl& control : controls)
        threads.push_back(std::make_unique<HostThread>([&] { control = ActivateAfter(barrier, server); }));
      for (const auto& thread : threads) ASSERT_TRUE(thread->Join());
    }
    for (const FirstControl& control : controls) {
      EXPECT_EQ(S_OK, control.activated);
      EXPECT_TRUE(control.had_window);
      EXPECT_TRUE(control.painted);
    }
    EXPECT_EQ(S_OK, server.CanUnloadNow());
    server.Unload();
    ASSERT_FALSE(server.IsLoaded());
  }
}

}  // namespace
}  // namespace ocx_test
