// Pictures and messages as a recorder sees them.
#include "platform/host_picture.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "bitmaps/pixel_context.h"
#include "platform/headless/recorder/recorder.h"
#include "platform/system.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

std::string WriteBmp(const testing::TemporaryFolder& folder) {
  const auto bytes = pictures::Bmp(2, 2, [](int, int) { return 0xFFFFFFu; });
  return folder.Write("a.bmp", std::string(bytes.begin(), bytes.end()));
}

TEST(RecordedPictures, AreLinesAndNothingElse) {
  const testing::TemporaryFolder folder;
  const std::string path = WriteBmp(folder);
  const PixelContext context(2, 2, 24);
  const Recorder recorder;
  const PictureRef picture = LoadPicture(folder.Path("a.bmp").u16string());
  PictureSize(picture);
  RenderPicture(picture, context.Get());
  MessageBoxW(u"text", u"title", MB_ICONEXCLAMATION);
  EXPECT_EQ(recorder.Lines(), (Lines{"LoadPicture(\"" + path + "\")", "RenderPicture()",
                                     "MessageBoxW(\"text\",\"title\",0x30)"}));
}

TEST(RecordedPictures, CanBeMadeToFail) {
  const testing::TemporaryFolder folder;
  WriteBmp(folder);
  const std::u16string path = folder.Path("a.bmp").u16string();
  const PixelContext context(2, 2, 24);
  Recorder recorder;
  recorder.Fail("LoadPicture", 1);
  recorder.Fail("RenderPicture");
  const PictureRef picture = LoadPicture(path);
  EXPECT_NE(picture, nullptr);
  EXPECT_EQ(LoadPicture(path), nullptr);
  EXPECT_FALSE(RenderPicture(picture, context.Get()));
  EXPECT_EQ(context.At(0, 0)[0], 0);
}

TEST(RecordedPictures, AMessageBoxCanBeMadeToFail) {
  int shown = 0;
  Configuration().message_box = [&](std::u16string_view, std::u16string_view) { ++shown; };
  Recorder recorder;
  recorder.Fail("MessageBoxW");
  EXPECT_EQ(MessageBoxW(u"text", u"title", MB_ICONEXCLAMATION), 0);
  Configuration().message_box = nullptr;
  EXPECT_EQ(shown, 0);
  EXPECT_EQ(MessageBoxW(u"text", u"title", MB_ICONEXCLAMATION), 0) << "there is no screen";
}

TEST(RecordedPictures, LeaveNoFileOpen) {
  const auto open_files = [] {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
  };
  const testing::TemporaryFolder folder;
  WriteBmp(folder);
  LoadPicture(folder.Path("a.bmp").u16string());
  const auto before = open_files();
  const PictureRef picture = LoadPicture(folder.Path("a.bmp").u16string());
  EXPECT_EQ(open_files(), before);
}

}  // namespace
}  // namespace marklet
