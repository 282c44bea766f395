// The control drawn elsewhere than in its window: zoomed, printed, turned over, far away.
#include <algorithm>
#include <cmath>
#include <string>

#include "activex/container.h"
#include "activex/picture.h"
#include "support/processor_time.h"
#include "support/stretch_share.h"

namespace ocx_test {
namespace {

// The greatest difference of a channel between a drawing at `place` and the picture stretched by that rule.
double WorstDifference(const Picture& drawn, const RECT& place, const Picture& picture) {
  const int width = place.right - place.left, height = place.bottom - place.top;
  double worst = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      double sums[3] = {};
      for (int row = 0; row < picture.Height(); ++row) {
        const double down = marklet::StretchShare(picture.Height(), height, y, row);
        if (down <= 0) continue;
        const int middle = x * picture.Width() / width, reach = picture.Width() / width + 3;
        for (int column = std::max(0, middle - reach); column < std::min(picture.Width(), middle + reach);
             ++column) {
          const double share = down * marklet::StretchShare(picture.Width(), width, x, column);
          for (int channel = 0; channel < 3; ++channel)
            sums[channel] += share * (picture.At(column, row) >> 8 * channel & 0xFF);
        }
      }
      const DWORD pixel = drawn.At(place.left + x, place.top + y);
      for (int channel = 0; channel < 3; ++channel)
        worst = std::max(worst, std::abs(sums[channel] - (pixel >> 8 * channel & 0xFF)));
    }
  return worst;
}

constexpr int kWidth = 200, kHeight = 60;
constexpr double kRounded = 0.501;

class View : public ::testing::Test {
 public:
  View() : own_(kWidth, kHeight) {}

 protected:
  // A control of 200 by 60 with much that is one pixel thin, and its picture.
  void SetUp() override {
    container_.Host();
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    view_ = As<IViewObjectEx>(object_);
    PutNumber(object_.Get(), L"BorderStyle", 1);
    PutText(object_.Get(), L"Caption",
            L"<b>Zoomed</b> <c=FF0000>lines</c> |||||||||| <u>of one pixel</u> <s>each</s> ==== #### "
            L"<i>with small text around them</i>");
    EXPECT_EQ(S_OK, Draw(own_.Dc(), {0, 0, kWidth, kHeight}));
  }
  void TearDown() override {
    view_.Reset();
    object_.Reset();
  }

  HRESULT Draw(HDC dc, const RECTL& bounds, DWORD aspect = DVASPECT_CONTENT) {
    return view_->Draw(aspect, -1, nullptr, nullptr, nullptr, dc, &bounds, nullptr, nullptr, 0);
  }

  Container container_;
  ComPtr<IDispatch> object_;
  ComPtr<IViewObjectEx> view_;
  Picture own_;
};

// --- Zoom -------------------------------------------------------------------------------------------------

TEST_F(View, IsSmoothAtEveryZoom) {
  own_.Save(L"zoom 100.bmp");
  for (const int percent : {25, 50, 75, 90, 100, 150, 200, 300}) {
    const int width = kWidth * percent / 100, height = kHeight * percent / 100;
    Picture zoomed(width + 20, height + 20);
    ASSERT_EQ(S_OK, Draw(zoomed.Dc(), {10, 10, 10 + width, 10 + height}));
    EXPECT_LE(WorstDifference(zoomed, {10, 10, 10 + width, 10 + height}, own_), kRounded) << percent << " %";
    EXPECT_EQ(kUntouched, zoomed.At(9, 10));
    EXPECT_EQ(kUntouched, zoomed.At(10 + width, 9 + height));
    EXPECT_EQ(kUntouched, zoomed.At(9 + width, 10 + height));
    zoomed.Save((L"zoom " + std::to_wstring(percent) + L".bmp").c_str());
  }
}

TEST_F(View, StretchesEachAxisByItself) {
  Picture wide(500, 30);
  ASSERT_EQ(S_OK, Draw(wide.Dc(), {0, 0, 500, 30}));
  EXPECT_LE(WorstDifference(wide, {0, 0, 500, 30}, own_), kRounded);
}

// --- Other units
// --------------------------------------------------------------------------------------------

TEST_F(View, TakesTheUnitsOfTheContext) {
  Picture zoomed(400, 200);
  SetMapMode(zoomed.Dc(), MM_ANISOTROPIC);
  SetWindowExtEx(zoomed.Dc(), 1000, -1000, nullptr);  // upwards
  SetViewportExtEx(zoomed.Dc(), 100, 100, nullptr);
  SetViewportOrgEx(zoomed.Dc(), 20, 150, nullptr);
  ASSERT_EQ(S_OK, Draw(zoomed.Dc(), {100, 1000, 1100, 700}));
  EXPECT_LE(WorstDifference(zoomed, {30, 50, 130, 80}, own_), kRounded);
  EXPECT_EQ(kUntouched, zoomed.At(29, 50));
  EXPECT_EQ(kUntouched, zoomed.At(130, 79));
  POINT origin = {};
  GetViewportOrgEx(zoomed.Dc(), &origin);
  EXPECT_EQ(20, origin.x) << "the context is as it was";
  EXPECT_EQ(MM_ANISOTROPIC, GetMapMode(zoomed.Dc()));
}

TEST_F(View, ScalesWithTheTransform) {
  Picture zoomed(400, 200);
  SetGraphicsMode(zoomed.Dc(), GM_ADVANCED);
  const XFORM transform = {0.5f, 0, 0, 0.5f, 7, 9};
  SetWorldTransform(zoomed.Dc(), &transform);
  ASSERT_EQ(S_OK, Draw(zoomed.Dc(), {0, 0, kWidth, kHeight}));
  EXPECT_LE(WorstDifference(zoomed, {7, 9, 107, 39}, own_), kRounded);
}

TEST_F(View, IsTurnedOverWithItsBounds) {
  Picture turned(kWidth, kHeight);
  ASSERT_EQ(S_OK, Draw(turned.Dc(), {kWidth, 0, 0, kHeight}));
  int different = 0;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) different += turned.At(x, y) != own_.At(kWidth - 1 - x, y);
  EXPECT_EQ(0, different);
  ASSERT_EQ(S_OK, Draw(turned.Dc(), {0, kHeight, kWidth, 0}));
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) different += turned.At(x, y) != own_.At(x, kHeight - 1 - y);
  EXPECT_EQ(0, different);
}

// --- Bounds
// -------------------------------------------------------------------------------------------------

TEST_F(View, DrawsNothingIntoEmptyBoundsAndFarOutside) {
  Picture picture(100, 50);
  for (const RECTL& bounds :
       {RECTL{10, 10, 10, 40}, RECTL{10, 10, 60, 10}, RECTL{0, 0, 0, 0}, RECTL{100, 0, 300, 60},
        RECTL{-200, -60, 0, 0}, RECTL{2000000, 2000000, 2000200, 2000060},
        RECTL{-2147483647, 0, -2147483000, 60}})
    EXPECT_EQ(S_OK, Draw(picture.Dc(), bounds)) << bounds.left;
  EXPECT_EQ(100 * 50, picture.Count(kUntouched));
}

// Of a picture as large as a house only what is seen costs anything.
TEST_F(View, DrawsThePartThatIsSeenOfABigPicture) {
  PutNumber(object_.Get(), L"BackColor", 0x00FF00);
  PutText(object_.Get(), L"Caption", L"");
  Picture picture(100, 50);
  const double start = marklet::ProcessorSeconds();
  EXPECT_EQ(S_OK, Draw(picture.Dc(), {-1000000, -1000000, 1000000, 1000000}));
  EXPECT_EQ(100 * 50, picture.Count(0x00FF00));
  EXPECT_LT(marklet::ProcessorSeconds() - start, 2);
}

TEST_F(View, IsCutByTheClipOfTheContext) {
  Picture picture(400, 120), whole(400, 120);
  ASSERT_EQ(S_OK, Draw(whole.Dc(), {0, 0, 400, 120}));
  IntersectClipRect(picture.Dc(), 37, 11, 90, 101);
  ASSERT_EQ(S_OK, Draw(picture.Dc(), {0, 0, 400, 120}));
  int different = 0;
  for (int y = 0; y < 120; ++y)
    for (int x = 0; x < 400; ++x) {
      const bool inside = x >= 37 && x < 90 && y >= 11 && y < 101;
      different += picture.At(x, y) != (inside ? whole.At(x, y) : kUntouched);
    }
  EXPECT_EQ(0, different);
}

// A large one is drawn in several pieces, a part of it in one.
TEST_F(View, HasNoSeamsWhereItIsLarge) {
  Picture whole(2400, 1200), part(2400, 1200);
  const RECT inside = {100, 450, 500, 650};
  IntersectClipRect(part.Dc(), inside.left, inside.top, inside.right, inside.bottom);
  ASSERT_EQ(S_OK, Draw(whole.Dc(), {0, 0, 2400, 1200}));
  ASSERT_EQ(S_OK, Draw(part.Dc(), {0, 0, 2400, 1200}));
  int different = 0, ink = 0;
  for (int y = inside.top; y < inside.bottom; ++y)
    for (int x = inside.left; x < inside.right; ++x) {
      different += whole.At(x, y) != part.At(x, y);
      ink += part.At(x, y) != part.At(inside.left, inside.top);
    }
  EXPECT_EQ(0, different);
  EXPECT_GT(ink, 1000);
}

int asked = 0;
BOOL STDMETHODCALLTYPE StopAtTheSecond(ULONG_PTR most) { return static_cast<ULONG_PTR>(++asked) < most; }

TEST_F(View, StopsWhenItIsToldTo) {
  Picture page(2400, 1200);
  const RECTL bounds = {0, 0, 2400, 1200};
  asked = 0;
  EXPECT_EQ(E_ABORT, view_->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, page.Dc(), &bounds, nullptr,
                                 StopAtTheSecond, 2));
  EXPECT_EQ(2, asked);
  EXPECT_NE(kUntouched, page.At(1200, 5));
  EXPECT_EQ(kUntouched, page.At(1200, 1190));
  EXPECT_EQ(S_OK, view_->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, page.Dc(), &bounds, nullptr,
                              StopAtTheSecond, 1000));
  EXPECT_EQ(0, page.Count(kUntouched));
}

// --- Print
// --------------------------------------------------------------------------------------------------

// A page in hundredths of a millimetre, as a metafile has it, that comes out at one pixel for each of the
// device.
class Page {
 public:
  Page(int width, int height) : place_{0, 0, width, height} {
    const HDC screen = GetDC(nullptr);
    const auto units = [screen](int pixels, int size, int resolution) {
      return MulDiv(pixels, GetDeviceCaps(screen, size) * 100, GetDeviceCaps(screen, resolution));
    };
    const RECT frame = {0, 0, units(width, HORZSIZE, HORZRES), units(height, VERTSIZE, VERTRES)};
    dc_ = CreateEnhMetaFileW(screen, nullptr, &frame, nullptr);
    ReleaseDC(nullptr, screen);
  }
  HDC Dc() const { return dc_; }
  void PlayOn(const Picture& picture) {
    const HENHMETAFILE metafile = CloseEnhMetaFile(dc_);
    EXPECT_TRUE(PlayEnhMetaFile(picture.Dc(), metafile, &place_));
    DeleteEnhMetaFile(metafile);
  }

 private:
  RECT place_;
  HDC dc_;
};

TEST_F(View, IsPrintedIntoAMetafileAtEveryZoom) {
  Page page(640, 480);
  const RECT places[] = {
      {20, 10, 120, 40}, {140, 10, 290, 55}, {20, 70, 220, 130}, {20, 150, 320, 240}, {20, 260, 420, 380}};
  for (const RECT& place : places)
    ASSERT_EQ(S_OK, Draw(page.Dc(), {place.left, place.top, place.right, place.bottom}, DVASPECT_DOCPRINT));
  Picture printed(640, 480);
  page.PlayOn(printed);
  printed.Save(L"page.bmp");
  for (const RECT& place : places)
    EXPECT_LE(WorstDifference(printed, place, own_), kRounded) << place.right - place.left << " wide";
}

// A poster: the record holds the picture as it is instead of a hundred million pixels.
TEST_F(View, KeepsARecordSmall) {
  const HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  ASSERT_EQ(S_OK, Draw(dc, {0, 0, 20000, 6000}));
  const HENHMETAFILE metafile = CloseEnhMetaFile(dc);
  EXPECT_LT(GetEnhMetaFileBits(metafile, 0, nullptr), 100000u);
  DeleteEnhMetaFile(metafile);
}

// Its pixels aren't those of any device: who plays it turns them.
TEST_F(View, IsRecordedAsItIsWhereItIsTurned) {
  for (const bool turned : {true, false}) {
    const HDC dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
    SetGraphicsMode(dc, GM_ADVANCED);
    const XFORM quarter = {0, 1, -1, 0, 900, 0};
    if (turned) {
      ASSERT_TRUE(SetWorldTransform(dc, &quarter));
    }
    ASSERT_EQ(S_OK, Draw(dc, {0, 0, 1500, 450}));
    const HENHMETAFILE metafile = CloseEnhMetaFile(dc);
    const UINT bytes = GetEnhMetaFileBits(metafile, 0, nullptr);
    EXPECT_EQ(turned, bytes < 100000u) << bytes;
    DeleteEnhMetaFile(metafile);
  }
}

// --- Aspects
// ------------------------------------------------------------------------------------------------

TEST_F(View, DrawsTheAspectsThatHaveAnExtent) {
  for (DWORD aspect = 1; aspect <= 64; aspect *= 2) {
    SIZEL of_object = {}, of_view = {};
    const HRESULT answer = view_->GetExtent(aspect, -1, nullptr, &of_view);
    const bool is_shown = aspect != DVASPECT_THUMBNAIL && aspect != DVASPECT_ICON && aspect != 64;
    EXPECT_EQ(is_shown ? S_OK : DV_E_DVASPECT, answer) << aspect;
    EXPECT_EQ(answer, As<IOleObject>(object_)->GetExtent(aspect, &of_object)) << aspect;
    EXPECT_EQ(of_object.cx, of_view.cx);
    Picture picture(kWidth, kHeight);
    EXPECT_EQ(answer, Draw(picture.Dc(), {0, 0, kWidth, kHeight}, aspect)) << aspect;
    RECTL rect = {};
    EXPECT_EQ(answer, view_->GetRect(aspect, &rect)) << aspect;
    const bool is_drawn = is_shown && aspect != DVASPECT_TRANSPARENT;
    EXPECT_EQ(is_drawn ? 0 : kWidth * kHeight, picture.Count(kUntouched)) << aspect;
    EXPECT_EQ(is_drawn, rect.right == of_view.cx && rect.right > 0) << aspect;
  }
}

// What a target device says of itself is in its context already; the record, which callers fill in as they
// please, isn't read.
TEST_F(View, LooksAndMeasuresTheSameForEveryTargetDevice) {
  DVTARGETDEVICE device = {};
  device.tdSize = sizeof device;
  device.tdDriverNameOffset = device.tdExtDevmodeOffset = 0xFFFF;  // far outside
  const HDC screen = GetDC(nullptr);
  const RECTL bounds = {0, 0, kWidth, kHeight};
  for (const DWORD aspect : {DVASPECT_CONTENT, DVASPECT_DOCPRINT}) {
    Picture picture(kWidth, kHeight);
    EXPECT_EQ(S_OK,
              view_->Draw(aspect, -1, nullptr, &device, screen, picture.Dc(), &bounds, nullptr, nullptr, 0));
    EXPECT_LE(WorstDifference(picture, {0, 0, kWidth, kHeight}, own_), kRounded) << aspect;
    SIZEL plain = {}, targeted = {};
    EXPECT_EQ(S_OK, view_->GetExtent(aspect, -1, nullptr, &plain));
    EXPECT_EQ(S_OK, view_->GetExtent(aspect, -1, &device, &targeted));
    EXPECT_EQ(plain.cx, targeted.cx);
    EXPECT_EQ(plain.cy, targeted.cy);
  }
  ReleaseDC(nullptr, screen);
}

TEST_F(View, IsDrawnInOneOfTwoPasses) {
  const RECT bounds = {0, 0, kWidth, kHeight};
  for (const long style : {1L, 0L}) {
    PutNumber(object_.Get(), L"BackStyle", style);
    for (const DWORD aspect : {DWORD{DVASPECT_OPAQUE}, DWORD{DVASPECT_TRANSPARENT}}) {
      const bool is_there = (aspect == DVASPECT_OPAQUE) == (style == 1);
      Picture picture(kWidth, kHeight);
      EXPECT_EQ(S_OK, Draw(picture.Dc(), {0, 0, kWidth, kHeight}, aspect));
      EXPECT_EQ(is_there ? 0 : kWidth * kHeight, picture.Count(kUntouched)) << style << " " << aspect;
      DWORD hit = 7;
      EXPECT_EQ(S_OK, view_->QueryHitPoint(aspect, &bounds, POINT{5, 5}, 0, &hit));
      EXPECT_EQ(static_cast<DWORD>(is_there ? HITRESULT_HIT : HITRESULT_OUTSIDE), hit);
      EXPECT_EQ(S_OK, view_->QueryHitRect(aspect, &bounds, &bounds, 0, &hit));
      EXPECT_EQ(static_cast<DWORD>(is_there ? HITRESULT_HIT : HITRESULT_OUTSIDE), hit);
    }
  }
}

}  // namespace
}  // namespace ocx_test
