// What the page paints on its strip.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "bitmaps/colour.h"
#include "bitmaps/pixels.h"
#include "imagelist/fake_page.h"
#include "imagelist/prp_image.h"
#include "images/png_pictures.h"
#include "platform/system.h"
#include "platform/theme.h"
#include "support/processor_time.h"
#include "support/temporary_folder.h"
#include "theme/color_xp.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

// Writes down how it is drawn, and leaves a pixel at its corner.
struct Witness final : CIconBytes {
  explicit Witness(Lines& lines) : log(lines) {}
  Lines& log;
  bool fails = false;
  void Render(HDC dc, Long size_index, Long depth_index, Long x, Long y, bool enabled, OLE_COLOR background,
              Long further) override {
    char line[100];
    std::snprintf(line, sizeof line, "%d %d at %d,%d %s %08X %d", size_index, depth_index, x, y,
                  enabled ? "enabled" : "grey", static_cast<unsigned>(background), further);
    log.push_back(line);
    if (fails) throw std::runtime_error("Render");
    MoveToEx(dc, x, y);
    LineTo(dc, x + 1, y);
  }
};

class ImageStrip : public ::testing::Test {
 protected:
  ImageStrip() {
    view_.page = &page_;
    view_.selected = label_;
    Configuration().system_colours[COLOR_BTNFACE] = MakeRgb(200, 190, 170);
  }
  ~ImageStrip() override { Configuration() = {}; }

  std::shared_ptr<Witness> Add(ImageCollection& list) {
    auto image = std::make_shared<Witness>(drawn_);
    const std::string key = "k" + std::to_string(list.Count());
    image->PutKey(std::u16string(key.begin(), key.end()));
    list.Add(image->Key(), image);
    return image;
  }
  // The strip as the window gets it, with room around.
  CDib24& Picture() {
    picture_.Create(view_.strip.cx + 3, view_.strip.cy + 2);
    page_.PaintStrip(picture_.hDC());
    GdiFlush();
    return picture_;
  }
  // From the top left corner.
  COLORREF At(Long x, Long y) { return ColourAt(picture_, x, picture_.Height() - 1 - y); }
  static COLORREF Band(COLORREF first, COLORREF second, Long y, Long height) {
    const float t = static_cast<float>(static_cast<double>(y) / height);
    return BlendColours(first, second, RoundHalfEven((1.0 - t) * 255));
  }

  testing::FakePageView view_;
  prpImage page_{view_};
  std::shared_ptr<testing::LabelObject> label_ = std::make_shared<testing::LabelObject>();
  Lines drawn_;
  CDib24 picture_;
};

TEST_F(ImageStrip, IsNothingBeforeItIsShown) {
  Picture();
  EXPECT_EQ(At(0, 0), 0u);
}

TEST_F(ImageStrip, IsAFramedGradientInTheColoursOfNoScheme) {
  page_.SelectionChanged();
  Picture();
  const ThemeColours colours = ThemeColoursOf(u"", nullptr);
  for (Long y = 0; y < 29; ++y) {
    for (Long x = 0; x < 333; ++x) {
      const bool frame = x == 0 || y == 0 || x == 332 || y == 28;
      ASSERT_EQ(At(x, y), frame ? colours[2] : Band(colours[11], colours[12], y, 29)) << x << ',' << y;
    }
  }
  EXPECT_EQ(At(333, 0), 0u) << "nothing beside it";
  EXPECT_EQ(At(0, 29), 0u) << "nor below";
}

TEST_F(ImageStrip, HasTheColoursOfAHiddenListsScheme) {
  const testing::FixedSystem system(5, 1);
  ConfiguredTheme() = {.active = true, .names = ThemeConfiguration::Names{u"", u"No such scheme", u""}};
  const auto hidden = std::make_shared<testing::HiddenObject>();
  hidden->host.window = reinterpret_cast<HWND>(0x10);
  const ThemeColours colours = hidden->list.ThemeColors();
  ASSERT_NE(colours, ThemeColoursOf(u"", nullptr)) << "themed";
  view_.selected = hidden;
  page_.SelectionChanged();
  Picture();
  EXPECT_EQ(At(0, 0), colours[2]);
  EXPECT_EQ(At(1, 1), Band(colours[11], colours[12], 1, 29));
  ConfiguredTheme().reset();
}

TEST_F(ImageStrip, IsBlankForAnObjectThatOwnsNoImages) {
  page_.SelectionChanged();
  view_.selected = std::make_shared<testing::NoOwner>();
  page_.SelectionChanged();
  Picture();
  for (const Long x : {0, 100, 332}) EXPECT_EQ(At(x, 10), MakeRgb(200, 190, 170));
}

TEST_F(ImageStrip, ShowsFifteenImagesFromSixOn) {
  for (int i = 0; i < 16; ++i) Add(label_->Images());
  page_.SelectionChanged();
  Lines expected;
  for (int i = 0; i < 15; ++i)
    expected.push_back("0 4 at " + std::to_string(6 + 21 * i) + ",6 enabled 8000000F 0");
  EXPECT_EQ(drawn_, expected);
  drawn_.clear();
  page_.Navigate(PageButton::Next);
  EXPECT_EQ(drawn_, Lines{"0 4 at 6,6 enabled 8000000F 0"});
}

TEST_F(ImageStrip, MarksTheSelectedImageBehindIt) {
  for (int i = 0; i < 3; ++i) Add(label_->Images());
  page_.SelectionChanged();
  page_.StripPressed(30 * 15);
  Picture();
  const ThemeColours colours = ThemeColoursOf(u"", nullptr);
  const auto strip = [&](Long y) { return Band(colours[11], colours[12], y, 29); };
  // From 23 on, 23 wide; from 2 on, 25 high, and one band more than there is room for.
  EXPECT_EQ(At(22, 10), strip(10));
  EXPECT_EQ(At(46, 10), strip(10));
  EXPECT_EQ(At(30, 1), strip(1));
  EXPECT_EQ(At(30, 27), colours[16]);
  for (Long y = 3; y < 26; ++y) EXPECT_EQ(At(44, y), Band(colours[8], colours[16], y - 2, 25)) << y;
  for (const Long x : {23, 45}) EXPECT_EQ(At(x, 10), colours[7]);
  for (const Long y : {2, 26}) EXPECT_EQ(At(30, y), colours[7]);
  EXPECT_EQ(At(27, 6), 0u) << "the image over it";
}

TEST_F(ImageStrip, GoesOnAfterAnImageThatFails) {
  Add(label_->Images())->fails = true;
  Add(label_->Images());
  page_.SelectionChanged();
  EXPECT_EQ(drawn_.size(), 2u);
}

TEST_F(ImageStrip, KeepsItsFlowsWithoutASurface) {
  Add(label_->Images());
  for (const SIZE size : {SIZE{0, 0}, SIZE{-1, 29}, SIZE{2147483647, 2147483647}}) {
    view_.strip = size;
    view_.Type(u"");
    page_.SelectionChanged();
    page_.StripPressed(6 * 15);
    EXPECT_EQ(view_.key, u"k0");
    EXPECT_TRUE(view_.enabled[PageButton::DeleteAll]);
  }
  CDib24 target;
  ASSERT_TRUE(target.Create(4, 4));
  page_.PaintStrip(target.hDC());
}

// A paint takes under 5 ms; the limit leaves room for the sanitizers and a busy machine.
TEST_F(ImageStrip, OfAThousandImagesPaintsAtOnceOnEveryPage) {
  const testing::TemporaryFolder folder;
  const auto png =
      pictures::Png(16, [](int x, int y) { return static_cast<std::uint32_t>(x << 28 | y * 9); });
  folder.Write("a.png", std::string(png.begin(), png.end()));
  CIconBytes loaded;
  loaded.LoadFromFile(folder.Path("a.png").u16string());
  for (int i = 0; i < 1000; ++i) {
    const auto image = std::make_shared<CIconBytes>();
    image->SetBytes(0, 4, loaded.GetBytes(0, 4));
    const std::string key = "k" + std::to_string(i);
    image->PutKey(std::u16string(key.begin(), key.end()));
    label_->Images().Add(image->Key(), image);
  }
  page_.SelectionChanged();
  const double before = ProcessorSeconds();
  constexpr int kPages = 1000 / 15;
  for (int i = 0; i < kPages; ++i) page_.Navigate(PageButton::Next);
  const double each = (ProcessorSeconds() - before) / kPages;
  EXPECT_LT(each, 0.005);
  page_.StripPressed((6 + 9 * 21) * 15);
  EXPECT_EQ(view_.key, u"k999");
  EXPECT_TRUE(loaded.HasImage16());
}

}  // namespace
}  // namespace marklet
