#include "platform/file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace marklet {
namespace {

namespace fs = std::filesystem;

using Bytes = std::vector<std::uint8_t>;

// A folder of its own for each test, gone afterwards.
class File : public testing::Test {
 protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() /
              (std::string("marklet-file-") + testing::UnitTest::GetInstance()->current_test_info()->name());
    fs::remove_all(folder_);
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }

  fs::path Make(const fs::path& name, const Bytes& bytes) {
    std::ofstream(folder_ / name, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return folder_ / name;
  }

  fs::path folder_;
  Bytes bytes_ = {1, 2, 3};
};

TEST_F(File, IsReadWhole) {
  const Bytes content = {0, 13, 10, 26, 255, 0};
  const fs::path path = Make("plain.bin", content);
  EXPECT_TRUE(ReadWholeFile(path.u16string(), bytes_));
  EXPECT_EQ(bytes_, content);
  EXPECT_TRUE(ReadOrCreateFile(path.u16string(), bytes_));
  EXPECT_EQ(bytes_, content);
}

// The start is all that is looked at for the question.
TEST_F(File, IsReadOnWhenItsStartIsWanted) {
  Bytes content(1000, 7);
  content[0] = 'M';
  const std::u16string path = Make("long.bin", content).u16string();
  const auto begins_so = [](std::span<const std::uint8_t> start) {
    return start.size() == kFileStart && start[0] == 'M' && start.back() == 7;
  };
  EXPECT_TRUE(ReadWholeFile(path, bytes_, begins_so));
  EXPECT_EQ(bytes_, content);
  EXPECT_TRUE(ReadOrCreateFile(path, bytes_, begins_so));
  EXPECT_EQ(bytes_, content);
  const auto begins_otherwise = [](std::span<const std::uint8_t> start) { return start[0] == 'X'; };
  EXPECT_FALSE(ReadWholeFile(path, bytes_, begins_otherwise));
  EXPECT_TRUE(bytes_.empty());
  EXPECT_FALSE(ReadOrCreateFile(path, bytes_, begins_otherwise));
}

TEST_F(File, OfFewBytesIsItsOwnStart) {
  const std::u16string path = Make("short.bin", {5, 6}).u16string();
  EXPECT_TRUE(
      ReadWholeFile(path, bytes_, [](std::span<const std::uint8_t> start) { return start.size() == 2; }));
  EXPECT_EQ(bytes_, (Bytes{5, 6}));
  EXPECT_TRUE(ReadWholeFile(Make("empty", {}).u16string(), bytes_,
                            [](std::span<const std::uint8_t> start) { return start.empty(); }));
}

TEST_F(File, OfNoBytesIsRead) {
  EXPECT_TRUE(ReadWholeFile(Make("empty", {}).u16string(), bytes_));
  EXPECT_TRUE(bytes_.empty());
}

TEST_F(File, MissingIsRefusedOrCreatedEmpty) {
  const fs::path path = folder_ / "missing.png";
  EXPECT_FALSE(ReadWholeFile(path.u16string(), bytes_));
  EXPECT_TRUE(bytes_.empty());
  EXPECT_FALSE(fs::exists(path));
  EXPECT_TRUE(ReadOrCreateFile(path.u16string(), bytes_));
  EXPECT_TRUE(bytes_.empty());
  EXPECT_TRUE(fs::exists(path));
  EXPECT_EQ(fs::file_size(path), 0u);
}

TEST_F(File, InAMissingFolderIsRefused) {
  EXPECT_FALSE(ReadOrCreateFile((folder_ / "no" / "such.png").u16string(), bytes_));
}

TEST_F(File, WithoutWritePermissionIsRead) {
  const fs::path path = Make("readonly.png", {7, 8});
  fs::permissions(path, fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                  fs::perm_options::remove);
  EXPECT_TRUE(ReadOrCreateFile(path.u16string(), bytes_));
  EXPECT_EQ(bytes_, (Bytes{7, 8}));
  fs::permissions(path, fs::perms::owner_write, fs::perm_options::add);
}

TEST_F(File, NamesBeyondAsciiWork) {
  const fs::path path = Make(fs::path(u"b\u00EDld \u4E2D\U0001F600.png"), {5});
  EXPECT_TRUE(ReadOrCreateFile(path.u16string(), bytes_));
  EXPECT_EQ(bytes_, (Bytes{5}));
  EXPECT_TRUE(ReadWholeFile(path.u16string(), bytes_));
  EXPECT_EQ(bytes_, (Bytes{5}));
}

TEST_F(File, ThatIsAFolderIsRefused) {
  EXPECT_FALSE(ReadWholeFile(folder_.u16string(), bytes_));
  EXPECT_FALSE(ReadOrCreateFile(folder_.u16string(), bytes_));
}

TEST_F(File, PathsThatNoFileCanHaveAreRefused) {
  EXPECT_FALSE(ReadOrCreateFile(u"", bytes_));
  const fs::path path = Make("cut", {5});
  EXPECT_FALSE(ReadOrCreateFile(path.u16string() + std::u16string(u"\0x", 2), bytes_));
}

// Nothing holds the file open after a call: it can go, or be written anew.
TEST_F(File, IsClosedAgain) {
  const fs::path path = Make("gone.png", {1});
  ReadOrCreateFile(path.u16string(), bytes_);
  EXPECT_TRUE(fs::remove(path));
  EXPECT_FALSE(fs::exists(path));
}

}  // namespace
}  // namespace marklet
