// Loads of files that the system, or its user, doesn't let everybody have.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "images/icon_bytes.h"
#include "images/icon_files.h"
#include "images/png_pictures.h"
#include "support/open_files.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

// Tests may run as a user who may do anything; this is somebody else for as long as it lives.
class OrdinaryUser {
 public:
  OrdinaryUser() { became_ = geteuid() == 0 && seteuid(65534) == 0; }
  ~OrdinaryUser() {
    if (became_ && seteuid(0) != 0) std::abort();
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  bool became_;
};

CIconBytes& LoadInto(CIconBytes& image, const std::filesystem::path& path) {
  image.Reset();
  image.LoadFromFile(path.u16string());
  return image;
}

TEST(ImageFiles, ThatMayOnlyBeReadLoadAndAreClosed) {
  const testing::TemporaryFolder folder;
  const auto write = [&](const std::string& name, const std::vector<std::uint8_t>& file) {
    folder.Write(name, std::string(file.begin(), file.end()));
    ASSERT_EQ(chmod(folder.Path(name).c_str(), 0444), 0);
  };
  write("a.png", pictures::Png(16, [](int, int) { return 0xFF102030u; }));
  write("a.ico", icons::FileOf({icons::Image{.bits = 24}}));
  write("a.bmp", pictures::Bmp(16, 16, [](int x, int) { return static_cast<unsigned>(x); }));
  CIconBytes image;
  LoadInto(image, folder.Path("a.bmp"));  // libraries open what they keep
  const int before = CountOpenFiles();
  const OrdinaryUser user;
  ASSERT_EQ(open(folder.Path("a.png").c_str(), O_RDWR | O_CLOEXEC), -1);
  for (const char* name : {"a.png", "a.ico", "a.bmp"}) {
    EXPECT_TRUE(LoadInto(image, folder.Path(name)).HasImage16()) << name;
    EXPECT_EQ(CountOpenFiles(), before) << name;
  }
}

TEST(ImageFiles, ThatMayNotBeReadAndPipesAreNothingAndAreClosed) {
  const testing::TemporaryFolder folder;
  folder.Write("secret.png", "x");
  ASSERT_EQ(chmod(folder.Path("secret.png").c_str(), 0200), 0);
  for (const char* name : {"pipe.png", "pipe.ico", "pipe.bmp"})
    ASSERT_EQ(mkfifo(folder.Path(name).c_str(), 0666), 0);
  const int before = CountOpenFiles();
  CIconBytes image;
  const OrdinaryUser user;
  for (const char* name : {"pipe.png", "pipe.ico", "pipe.bmp", "secret.png"}) {
    EXPECT_FALSE(LoadInto(image, folder.Path(name)).HasImage16());
    EXPECT_EQ(CountOpenFiles(), before) << name;
  }
}

}  // namespace
}  // namespace marklet
