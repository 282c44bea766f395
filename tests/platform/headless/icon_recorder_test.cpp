// Icons as a recorder sees them.
#include "platform/headless/recorder/recorder.h"
#include "platform/icon.h"
#include "platform/test_picture.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

struct RecordedIcons : testing::Test {
  static ObjectRef Bitmap() {
    std::uint8_t* bits = nullptr;
    return ObjectRef(CreateDIBSection(nullptr, 4, 4, 32, bits));
  }
  ObjectRef mask = Bitmap(), colours = Bitmap();
};

TEST_F(RecordedIcons, AreLinesAndCanBeMadeAgain) {
  const Recorder recorder;
  const PictureRef picture = OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get()));
  PictureHandle(picture);
  EXPECT_EQ(recorder.Lines(), (Lines{"CreateIconIndirect(bitmap(4x4x32),bitmap(4x4x32))",
                                     "OleCreatePictureIndirect()", "DestroyIcon()", "PictureHandle()"}));
  recorder.Replay();
}

// Not every system has it so.
TEST(HeadlessIcons, GoByTheirAlphaWhereTheyHaveAny) {
  std::uint8_t *bits = nullptr, *mask_bits = nullptr;
  const ObjectRef colours(CreateDIBSection(nullptr, 3, 1, 32, bits));
  const ObjectRef mask(CreateDIBSection(nullptr, 3, 1, 32, mask_bits));
  constexpr std::uint8_t kColours[] = {9, 9, 9, 0, 255, 255, 255, 128, 48, 32, 16, 255};
  std::copy(std::begin(kColours), std::end(kColours), bits);
  std::fill_n(mask_bits, 12, std::uint8_t{255});
  TestPicture paper(3, 1);
  EXPECT_TRUE(RenderPicture(OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get())),
                            paper.Context()));
  EXPECT_EQ(paper.Colours(), (std::vector<COLORREF>{0, MakeRgb(128, 128, 128), MakeRgb(16, 32, 48)}));
}

TEST_F(RecordedIcons, CanBeMadeToFail) {
  Recorder recorder;
  recorder.Fail("CreateIconIndirect", 1);
  recorder.Fail("OleCreatePictureIndirect");
  IconRef icon = CreateIconIndirect(mask.get(), colours.get());
  ASSERT_NE(icon, nullptr);
  EXPECT_EQ(CreateIconIndirect(mask.get(), colours.get()), nullptr);
  EXPECT_EQ(OleCreatePictureIndirect(std::move(icon)), nullptr);
}

}  // namespace
}  // namespace marklet
