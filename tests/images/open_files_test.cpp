// No file stays open after a load, whatever its outcome. Fewer may be: systems have threads of their own.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "images/icon_bytes.h"
#include "images/icon_files.h"
#include "images/png_pictures.h"
#include "platform/system.h"
#include "support/open_files.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::string Text(const Bytes& bytes) { return {bytes.begin(), bytes.end()}; }

// A square one and one that isn't of each kind.
std::vector<std::pair<std::string, Bytes>> Files() {
  const auto opaque = [](int x, int y) { return 0xFF000000u | static_cast<unsigned>(x * 7 + y); };
  const auto plain = [](int x, int y) { return static_cast<unsigned>(x * 7 + y); };
  const auto grey = [](int, int) { return 9; };
  const auto index = [](int, int) { return 0u; };
  return {{"a.png", pictures::Png(16, opaque)},
          {"b.png", pictures::Png(16, opaque, true, 12)},
          {"a.ico", icons::FileOf({icons::Image{.bits = 24}, icons::Image{.width = 32, .height = 32}})},
          {"a.bmp", pictures::Bmp(16, 16, plain)},
          {"b.bmp", pictures::Bmp(16, 12, plain)},
          {"a.gif", pictures::Gif(16, 16, {0xFF0000}, index)},
          {"a.jpg", pictures::Jpeg(16, 16, grey)},
          {"a.cur", icons::FileOf({icons::Image{.bits = 24}}, 2)}};
}

class OpenFileCount : public ::testing::Test {
 protected:
  OpenFileCount() {
    Configuration().message_box = [](std::u16string_view, std::u16string_view) {};
  }
  ~OpenFileCount() override { Configuration().message_box = nullptr; }

  void Load(const std::filesystem::path& path) {
    CIconBytes image;
    image.LoadFromFile(path.u16string());
  }

  const testing::TemporaryFolder folder_;
};

using SlowOpenFileCount = OpenFileCount;

TEST_F(SlowOpenFileCount, DoesNotGrowAfterFilesCutAnywhereAndSpoiltAnywhere) {
  for (const auto& [name, file] : Files()) {  // libraries open what they keep
    folder_.Write(name, Text(file));
    Load(folder_.Path(name));
  }
  const auto before = CountOpenFiles();
  for (const auto& [name, file] : Files()) {
    const std::size_t step = std::max<std::size_t>(1, file.size() / 60);
    for (std::size_t at = 0; at <= file.size(); at += step) {
      Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(at)), spoilt = file;
      if (at < spoilt.size()) spoilt[at] ^= 0xFF;
      for (const Bytes& bytes : {cut, spoilt}) {
        folder_.Write(name, Text(bytes));
        Load(folder_.Path(name));
        ASSERT_LE(CountOpenFiles(), before) << name << " at " << at;
      }
    }
  }
}

TEST_F(OpenFileCount, DoesNotGrowAfterPathsThatAreNoPlainFiles) {
  const auto before = CountOpenFiles();
  for (const char* type : {"png", "ico", "bmp"}) {
    std::filesystem::create_directory(folder_.Path(std::string("folder.") + type));
    for (const std::string name : {"missing.", "folder.", "no such folder/a."}) {
      Load(folder_.Path(name + type));
      EXPECT_LE(CountOpenFiles(), before) << name << type;
    }
  }
  Load("");
  EXPECT_LE(CountOpenFiles(), before);
}

}  // namespace
}  // namespace marklet
