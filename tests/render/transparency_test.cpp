// Transparent controls in pictures: with alpha, and in front of what the caller gives.
#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>

#include "images/png_pictures.h"
#include "render/picture.h"
#include "render/png_writer.h"
#include "render/render_control.h"
#include "render/run.h"
#include "render/transparent_words.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using testing::kWordsSize;
using testing::WordsOn;

TEST(Transparency, AlphaIsExactWhereEveryChannelAgrees) {
  Picture on_black{4, 1, {10, 20, 30, 0, 0, 0, 40, 80, 20, 200, 100, 50}};
  Picture on_white{4, 1, {10, 20, 30, 255, 255, 255, 167, 207, 147, 201, 101, 51}};
  const Picture both = WithAlpha(on_black, on_white);
  EXPECT_EQ(both.alpha, (std::vector<std::uint8_t>{255, 0, 128, 254}));
  EXPECT_EQ(std::vector(both.rgb.begin(), both.rgb.begin() + 9),
            (std::vector<std::uint8_t>{10, 20, 30, 0, 0, 0, 80, 159, 40}));
}

TEST(Transparency, AnEmptyTransparentControlIsClear) {
  RenderedControl control(kWordsSize, {{"BackStyle", "TRANSPARENT"}}, 1);
  const Picture alone = control.PictureOfItself();
  EXPECT_EQ(alone.alpha, std::vector<std::uint8_t>(std::size_t{90} * 40, 0));
}

TEST(Transparency, AColourLiesBehind) {
  const Picture picture = WordsOn("#336699");
  EXPECT_EQ(picture.rgb[0], 0x33);
  EXPECT_EQ(picture.rgb[1], 0x66);
  EXPECT_EQ(picture.rgb[2], 0x99);
  EXPECT_TRUE(picture.alpha.empty());
}

struct TransparencyFiles : ::testing::Test {
  testing::TemporaryFolder folder;
  std::ostringstream out, err;

  int Run(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"-o", folder.File("out.png")});
    return RunMarkletRender(arguments, out, err);
  }
  // The colour type of the written file.
  int Type() { return folder.Read("out.png")[25]; }
};

TEST_F(TransparencyFiles, OnlyATransparentControlWithNothingBehindHasAlpha) {
  ASSERT_EQ(Run({"Caption=x"}), 0);
  EXPECT_EQ(Type(), 2);
  ASSERT_EQ(Run({"Caption=x", "BackStyle=TRANSPARENT"}), 0);
  EXPECT_EQ(Type(), 6);
  ASSERT_EQ(Run({"Caption=x", "BackStyle=TRANSPARENT", "--behind", "#102030"}), 0);
  EXPECT_EQ(Type(), 2);
}

TEST_F(TransparencyFiles, APictureLiesBehindFromTheControlsCornerOn) {
  const auto bytes =
      pictures::Bmp(30, 20, [](int x, int y) { return static_cast<std::uint32_t>(x << 16 | y << 8); });
  const std::string file = folder.Write("behind.bmp", std::string(bytes.begin(), bytes.end()));
  const Picture picture =
      PictureOf(RenderedControl({40, 40}, {{"BackStyle", "TRANSPARENT"}}, 1, {{}, false, file}).Surface());
  for (Long y = 0; y < 40; ++y)
    for (Long x = 0; x < 40; ++x) {
      const auto pixel = picture.Row(y).subspan(static_cast<std::size_t>(x) * 3, 3);
      const bool inside = x < 30 && y < 20;
      ASSERT_EQ(pixel[0], inside ? x : 255);
      ASSERT_EQ(pixel[1], inside ? y : 255);
      ASSERT_EQ(pixel[2], inside ? 0 : 255);
    }
}

TEST_F(TransparencyFiles, APngLiesBehindToo) {
  Picture photo{2, 1, {1, 2, 3, 200, 100, 50}};
  const auto bytes = EncodePng(photo, 3780);
  const std::string file = folder.Write("behind.png", std::string(bytes.begin(), bytes.end()));
  const Picture picture =
      PictureOf(RenderedControl({2, 1}, {{"BackStyle", "TRANSPARENT"}}, 1, {{}, false, file}).Surface());
  EXPECT_EQ(picture.rgb, photo.rgb);
}

TEST_F(TransparencyFiles, WhatCannotLieBehindIsRefused) {
  EXPECT_EQ(Run({"Caption=x", "--behind", folder.File("none.png")}), 2);
  EXPECT_EQ(Run({"Caption=x", "--behind", folder.Write("text.png", "no picture")}), 2);
  EXPECT_EQ(Run({"Caption=x", "--behind", "#12"}), 2);
  EXPECT_EQ(Run({"--sheet", "a.json", "--behind", "#FFFFFF"}), 2);
}

}  // namespace
}  // namespace marklet
