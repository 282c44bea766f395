// Text with alpha. Here all three channels of a pixel cover alike, which a platform's own text needn't.
#include <gtest/gtest.h>

#include "render/picture.h"
#include "render/render_control.h"
#include "render/transparent_words.h"

namespace marklet {
namespace {

using testing::kWords;
using testing::kWordsSize;
using testing::WordsOn;

int Composed(int colour, int behind, int alpha) {
  return (colour * alpha + behind * (255 - alpha) + 127) / 255;
}

TEST(Transparency, ThePictureWithAlphaShowsOnBlackAndWhiteWhatIsDrawnThere) {
  RenderedControl control(kWordsSize, kWords, 1);
  const Picture alone = control.PictureOfItself();
  const Picture on_black = WordsOn("#000000"), on_white = WordsOn("#FFFFFF");
  ASSERT_EQ(alone.alpha.size() * 3, on_black.rgb.size());
  int opaque = 0, clear = 0, between = 0;
  for (std::size_t at = 0; at < alone.rgb.size(); ++at) {
    const int alpha = alone.alpha[at / 3];
    opaque += alpha == 255;
    clear += alpha == 0;
    between += alpha > 0 && alpha < 255;
    // A step where rounding makes the channels tell different alphas; whole pixels are exact.
    const int step = alpha == 0 || alpha == 255 ? 0 : 1;
    ASSERT_NEAR(Composed(alone.rgb[at], 0, alpha), on_black.rgb[at], step);
    ASSERT_NEAR(Composed(alone.rgb[at], 255, alpha), on_white.rgb[at], step);
  }
  EXPECT_GT(opaque, 300);
  EXPECT_GT(clear, 3000);
  EXPECT_GT(between, 100);
}

}  // namespace
}  // namespace marklet
