// What drawing and loading an image asks of the platform.
#include <gtest/gtest.h>

#include <string>

#include "bitmaps/pixel_context.h"
#include "images/icon_bytes.h"
#include "images/png_pictures.h"
#include "markup/played_system.h"
#include "platform/headless/recorder/recorder.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

void Put(CIconBytes& image, Long size_index, Long depth_index) {
  const Long channels = depth_index == 4 ? 4 : 3, size = SizeFromIndex(size_index);
  ByteArray entry{{{0, channels}, {0, size}, {0, size}}, {}};
  entry.bytes.assign(
      static_cast<std::size_t>(channels) * static_cast<std::size_t>(size) * static_cast<std::size_t>(size),
      200);
  image.SetBytes(size_index, depth_index, std::move(entry));
}

void Draw(CIconBytes& image, const PixelContext& paper, Long size_index) {
  image.Render(paper.Get(), size_index, 4, 0, 0, true, 0, 0);
}

// An image of one size needs one surface, and another when it is resampled. That compositing in software
// needs one more is its own matter.
TEST(RenderedImageCalls, MakeNoSurfaceThatIsNotNeeded) {
  const PlayedSystem system(generation::kWindows2000);
  for (const Long depth : {3, 4}) {
    CIconBytes image;
    Put(image, 1, depth);
    const PixelContext paper(64, 64, 24);
    Draw(image, paper, 1);  // the first answer to the question for the system is no
    Recorder recorder;
    Draw(image, paper, 1);
    EXPECT_EQ(recorder.Lines("CreateDIBSection").size(), 1u) << depth;
    EXPECT_EQ(recorder.Lines("AlphaBlend").size(), depth == 4 ? 1u : 0u);
    recorder.Clear();
    Draw(image, paper, 2);
    EXPECT_EQ(recorder.Lines("CreateDIBSection").size(), 2u) << depth;
  }
}

TEST(RenderedImageCalls, OfAnImageThatHoldsNothingAreNone) {
  CIconBytes image;
  const PixelContext paper(64, 64, 24);
  const Recorder recorder;
  for (Long index = 0; index < 8; ++index) Draw(image, paper, index);
  EXPECT_EQ(recorder.Lines(), Lines{});
}

TEST(RenderedImageCalls, MayFailOneAfterTheOther) {
  for (const Long depth : {3, 4})
    for (const char* operation :
         {"CreateDIBSection", "CreateCompatibleDC", "PixelsOf", "AlphaBlend", "SelectObject"})
      for (int good_calls = 0; good_calls < 6; ++good_calls) {
        CIconBytes image;
        Put(image, 1, depth);
        const PixelContext paper(64, 64, 24);
        Recorder recorder;
        recorder.Fail(operation, good_calls);
        for (const Long index : {1, 2}) Draw(image, paper, index);
        EXPECT_EQ(paper.At(63, 63)[0], 0) << operation;
      }
}

TEST(LoadedImageCalls, ShowAnExclamationMarkOverAPictureThatIsNotSquare) {
  const testing::TemporaryFolder folder;
  const auto bmp = pictures::Bmp(20, 21, [](int, int) { return 0x123456u; });
  const auto png = pictures::Png(
      20, [](int, int) { return 0xFF123456u; }, true, 21);
  folder.Write("a.bmp", std::string(bmp.begin(), bmp.end()));
  folder.Write("a.png", std::string(png.begin(), png.end()));
  CIconBytes image;
  const Recorder recorder;
  for (const char* name : {"a.bmp", "a.png"}) image.LoadFromFile(folder.Path(name).u16string());
  EXPECT_EQ(
      recorder.Lines("MessageBoxW"),
      (Lines{"MessageBoxW(\"This image is not supported. Images must have equal width and height.\","
             "\"Corvane Image Renderer\",0x30)",
             "MessageBoxW(\"This image is not supported. PNG images must have equal width and height.\","
             "\"Corvane PNG Decoder\",0x30)"}));
}

TEST(KeptPictureCalls, MayFailOneAfterTheOther) {
  const testing::TemporaryFolder folder;
  const auto bmp = pictures::Bmp(20, 20, [](int, int) { return 0x123456u; });
  folder.Write("a.bmp", std::string(bmp.begin(), bmp.end()));
  CIconBytes image;
  image.LoadFromFile(folder.Path("a.bmp").u16string());
  for (const char* operation : {"PictureHandle", "GetObjectA", "CreateDIBSection", "CreateCompatibleDC"})
    for (int good_calls = 0; good_calls < 3; ++good_calls) {
      const PixelContext paper(64, 64, 24);
      Recorder recorder;
      recorder.Fail(operation, good_calls);
      image.RenderPicture(paper.Get(), 32, 0, 0);
      EXPECT_EQ(paper.At(63, 63)[0], 0) << operation;
    }
}

TEST(LoadedImageCalls, ThatFailLeaveTheImageAsItIs) {
  const testing::TemporaryFolder folder;
  const auto bmp = pictures::Bmp(20, 20, [](int, int) { return 0x123456u; });
  folder.Write("a.bmp", std::string(bmp.begin(), bmp.end()));
  CIconBytes image;
  Put(image, 0, 3);
  const ByteArray before = image.GetBytes(0, 3);
  for (const char* operation : {"LoadPicture", "CreateDIBSection", "CreateCompatibleDC"}) {
    Recorder recorder;
    recorder.Fail(operation);
    image.LoadFromFile(folder.Path("a.bmp").u16string());
    EXPECT_EQ(image.GetBytes(0, 3), before) << operation;
  }
}

}  // namespace
}  // namespace marklet
