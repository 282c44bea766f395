// Outputs that are no files of their own.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <sstream>

#include "render/run.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

namespace fs = std::filesystem;

struct RunDevices : ::testing::Test {
  testing::TemporaryFolder folder;
  std::ostringstream out, err;
  int RunTo(const std::string& file) { return RunMarkletRender({"Caption=x", "-o", file}, out, err); }
};

TEST_F(RunDevices, AreWrittenToAndNotReplaced) {
  EXPECT_EQ(RunTo("/dev/null"), 0) << err.str();
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(RunDevices, ThatAreFullAreTold) {
  EXPECT_EQ(RunTo("/dev/full"), 2);
  EXPECT_EQ(err.str(), "marklet-render: can't write \"/dev/full\"\n");
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}

// While it lives, no file grows beyond a few bytes.
class TinyFiles {
 public:
  TinyFiles() : former_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit tiny = {16, former_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tiny);
  }
  ~TinyFiles() {
    setrlimit(RLIMIT_FSIZE, &former_);
    std::signal(SIGXFSZ, former_handler_);
  }
  TinyFiles(const TinyFiles&) = delete;
  TinyFiles& operator=(const TinyFiles&) = delete;

 private:
  rlimit former_{};
  void (*former_handler_)(int);
};

TEST_F(RunDevices, WithoutRoomForThePictureLeaveNothingHalfWritten) {
  folder.Write("old.png", "old");
  int code = 0;
  {
    const TinyFiles tiny;
    code = RunTo(folder.File("new.png")) + RunTo(folder.File("old.png"));
  }
  EXPECT_EQ(code, 2 + 2);
  EXPECT_EQ(folder.Entries(), 1);
  EXPECT_EQ(folder.Read("old.png"), "old");
}

TEST_F(RunDevices, ALinkLeadsToTheFileThatIsReplaced) {
  folder.Write("real.png", "old");
  fs::create_symlink(folder.Path("real.png"), folder.Path("link.png"));
  EXPECT_EQ(RunTo(folder.File("link.png")), 0) << err.str();
  EXPECT_TRUE(fs::is_symlink(folder.Path("link.png")));
  EXPECT_TRUE(folder.Read("real.png").starts_with("\x89PNG"));
  EXPECT_EQ(folder.Entries(), 2);
}

TEST_F(RunDevices, ALinkToNothingIsReplaced) {
  fs::create_symlink(folder.Path("nothing.png"), folder.Path("link.png"));
  EXPECT_EQ(RunTo(folder.File("link.png")), 0) << err.str();
  EXPECT_TRUE(folder.Read("link.png").starts_with("\x89PNG"));
}

}  // namespace
}  // namespace marklet
