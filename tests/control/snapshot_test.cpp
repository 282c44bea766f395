// The snapshot behind a transparent control: where it is taken from, and how long it lives.
#include <gtest/gtest.h>

#include <stdexcept>

#include "platform/system.h"
#include "support/fake_host.h"
#include "support/memory_form.h"
#include "support/snapshot_calls.h"

namespace marklet {
namespace {

using testing::FakeHost;
using testing::FormColourAt;
using testing::HostedControl;
using testing::kCopyFromForm;
using testing::kCopyFromFrame;
using testing::MemoryForm;

constexpr Long kTransparent = 0, kOpaque = 1;
constexpr double kTwips = 1, kPixels = 3, kMillimetres = 6;

struct Snapshot : ::testing::Test {
  HostedControl hosted;
  FakeHost& host = hosted.host;
  MemoryForm form;

  void SetUp() override {
    host.parent = form.form;
    host.extender = form.extender;
    host.container = MemoryForm::Window(MemoryForm::kForm);
    hosted.Init();
    hosted.State().Background.reset();
    form.TakeLog();
  }
  void TearDown() override { Configuration() = {}; }

  void Show() { hosted.Set("BackStyle", kTransparent); }
  // From then on a snapshot is seen to be a new one, and the form to be asked.
  void ShowAndMove() {
    Show();
    form.PutAt(100, 100);
    form.TakeLog();
  }
  void ShowInFrame() {
    host.container = MemoryForm::Window(MemoryForm::kFrame);
    form.extender->objects["Container"] = form.frame;
    Show();
  }
  void ScaleMode(double mode) { form.form->numbers["ScaleMode"] = mode; }
  void Resize(double width, double height) {
    host.scale_width = width;
    host.scale_height = height;
    hosted.control.Resize();
  }
  // The whole control shows the form's picture from there.
  void ExpectFormAt(Long x, Long y) {
    for (const auto& [dx, dy] : {std::pair<Long, Long>{0, 0}, {99, 0}, {0, 49}, {99, 49}, {50, 25}}) {
      if (dx >= host.scale_width || dy >= host.scale_height) continue;
      ASSERT_EQ(host.Pixel(dx, dy), FormColourAt(x + dx, y + dy)) << dx << "," << dy;
    }
  }
  bool IsBlank() { return host.Pixel(0, 0) == 0 && host.Pixel(99, 49) == 0 && host.Pixel(50, 25) == 0; }
};

// --- Where it is taken from -------------------------------------------------------------------------------

TEST_F(Snapshot, IsThePartOfTheFormsPictureUnderTheControl) {
  form.PutAt(200, 300);
  Show();
  ExpectFormAt(200, 300);
}

TEST_F(Snapshot, OnAFormInTwipsThePlaceIsConverted) {
  ScaleMode(kTwips);
  form.PutAt(1500, 450);
  Show();
  ExpectFormAt(100, 30);
}

TEST_F(Snapshot, TwipsAreDividedAsIntegersAndTruncated) {
  ScaleMode(kTwips);
  form.PutAt(1514, 29);  // 100.93 and 1.93 pixels
  Show();
  ExpectFormAt(100, 1);
}

TEST_F(Snapshot, TwipsPerPixelAreThoseOfTheScreen) {
  ScaleMode(kTwips);
  host.twips_per_pixel = 10;
  form.PutAt(1500, 450);
  Show();
  ExpectFormAt(150, 45);
}

TEST_F(Snapshot, BothSidesOfTheDivisionAreRoundedBefore) {
  ScaleMode(kTwips);
  host.twips_per_pixel = 1440.0 / 168;  // 8.57, which counts as 9
  form.PutAt(899.5, 90);                // 900
  Show();
  ExpectFormAt(100, 10);
}

TEST_F(Snapshot, OnAFormInPixelsThePlaceIsTakenAsItIs) {
  ScaleMode(kPixels);
  form.PutAt(150, 45);
  Show();
  ExpectFormAt(150, 45);
}

TEST_F(Snapshot, OnAnyOtherScaleThePlaceIsTakenForPixels) {
  ScaleMode(kMillimetres);
  form.PutAt(12.5, 31.5);  // halves to even
  Show();
  ExpectFormAt(12, 32);
}

TEST_F(Snapshot, WithoutAScaleThePlaceIsTakenForPixels) {
  form.form->numbers.erase("ScaleMode");
  form.PutAt(33, 44);
  Show();
  ExpectFormAt(33, 44);
}

TEST_F(Snapshot, WithoutAnExtenderTheCornerOfTheFormIsTaken) {
  host.extender = nullptr;
  Show();
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, WhatLiesOutsideTheFormsPictureIsBlank) {
  form.PutAt(-30, 460);
  Show();
  EXPECT_EQ(host.Pixel(0, 0), 0u);
  EXPECT_EQ(host.Pixel(30, 0), FormColourAt(0, 460));
  EXPECT_EQ(host.Pixel(30, 20), 0u);
}

// It is transparent until InitProperties comes to its BackStyle, and paints before that.
TEST_F(Snapshot, OfANewControlIsTakenWhileItGetsItsDefaults) {
  HostedControl other;
  other.host.parent = form.form;
  other.host.container = host.container;
  other.Init();
  EXPECT_EQ(other.State().BackStyle, kOpaque);
  EXPECT_TRUE(other.State().Background);
}

TEST_F(Snapshot, IsOpaque) {
  Show();
  const PixelView view = hosted.State().Background->View();
  for (Long y = 0; y < view.height; ++y)
    for (Long x = 0; x < view.width; ++x) ASSERT_EQ(view.At(x, y)[3], 255);
}

TEST_F(Snapshot, OnTheFormItselfTheFormIsAskedInOrder) {
  Show();
  EXPECT_EQ(form.log, kCopyFromForm);
}

TEST_F(Snapshot, InAFrameTheFrameIsFoundAmongTheFormsControls) {
  form.PutAt(20, 10);
  ShowInFrame();
  EXPECT_EQ(form.log, kCopyFromFrame);
  ExpectFormAt(20, 10);
}

TEST_F(Snapshot, AFrameWithoutAContextShowsABlankArea) {
  form.frame->handles.erase("hdc");
  host.paint_behind = [](HDC) { return ADD_FAILURE() << "nothing else is tried", true; };
  ShowInFrame();
  EXPECT_TRUE(IsBlank());
  EXPECT_TRUE(hosted.State().Background) << "which is the snapshot from then on";
}

TEST_F(Snapshot, AContainerThatIsNotAmongTheControlsShowsABlankArea) {
  host.container = MemoryForm::Window(0x99);
  Show();
  EXPECT_TRUE(IsBlank());
  EXPECT_EQ(form.form->numbers["AutoRedraw"], 0);
}

// --- AutoRedraw -------------------------------------------------------------------------------------------

TEST_F(Snapshot, AutoRedrawIsPutBackToWhatItWas) {
  for (const double before : {0.0, -1.0}) {
    form.form->numbers["AutoRedraw"] = before;
    hosted.State().Background.reset();
    Show();
    EXPECT_EQ(form.form->numbers["AutoRedraw"], before);
    ExpectFormAt(0, 0);
  }
}

TEST_F(Snapshot, AutoRedrawIsPutBackWhateverFails) {
  for (const char* member :
       {"form.hdc", "form.ScaleMode", "extender.Container", "extender.Left", "extender.Top"}) {
    SCOPED_TRACE(member);
    const auto fail = [member](const std::string& use) {
      if (use == member) throw std::runtime_error("no");
    };
    form.form->on_use = form.extender->on_use = fail;
    hosted.State().Background.reset();
    Show();
    EXPECT_EQ(form.form->numbers["AutoRedraw"], 0);
    EXPECT_EQ(form.log.back(), "form.AutoRedraw=0");
  }
}

TEST_F(Snapshot, AutoRedrawIsPutBackThoughTheCopyFails) {
  form.form->handles["hdc"] = [] { return std::intptr_t{0}; };
  Show();
  EXPECT_EQ(form.form->numbers["AutoRedraw"], 0);
  EXPECT_TRUE(IsBlank());
}

TEST_F(Snapshot, AutoRedrawIsPutBackWhereItWasSetThoughTheFormsWindowIsGone) {
  form.form->on_use = [this](const std::string& use) {
    if (use == "form.hdc") form.form->handles.erase("hwnd");
  };
  Show();
  EXPECT_EQ(form.form->numbers["AutoRedraw"], 0);
}

// --- How long it lives ------------------------------------------------------------------------------------

TEST_F(Snapshot, ServesEveryLaterPaint) {
  Show();
  form.TakeLog();
  hosted.control.RedrawNow();
  hosted.Set("ForeColor", Long{0x00FF00});
  EXPECT_TRUE(form.log.empty());
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, DoesNotFollowTheForm) {
  Show();
  form.picture.Clear(0x123456);
  hosted.control.RedrawNow();
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, StaysWhenTheControlIsMoved) {
  Show();
  form.PutAt(100, 100);
  hosted.control.RedrawNow();
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, OutlivesAnOpaqueTime) {
  Show();
  hosted.Set("BackStyle", kOpaque);
  form.PutAt(100, 100);
  form.TakeLog();
  Show();
  EXPECT_TRUE(form.log.empty());
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, AtRunTimeStaysThroughAShrinkAndARegrowth) {
  Resize(100, 50);
  ShowAndMove();
  Resize(40, 20);
  ExpectFormAt(0, 0);
  EXPECT_EQ(hosted.State().Background->Width(), 100) << "larger than needed";
  Resize(100, 50);
  ExpectFormAt(0, 0);
  EXPECT_TRUE(form.log.empty());
}

TEST_F(Snapshot, AtRunTimeIsTakenAnewForASizeNeverReachedBefore) {
  Resize(100, 50);
  ShowAndMove();
  Resize(100, 51);
  EXPECT_EQ(form.log, kCopyFromForm);
  ExpectFormAt(100, 100);
}

TEST_F(Snapshot, AMarkHigherThanTheSnapshotTakesItAnew) {
  Resize(200, 100);
  Resize(100, 50);
  Show();
  form.PutAt(7, 7);
  Resize(90, 40);
  ExpectFormAt(7, 7);
}

TEST_F(Snapshot, InADesignerIsTakenAnewAtEveryResize) {
  host.ambient.user_mode = false;
  ShowAndMove();
  Resize(40, 20);
  EXPECT_EQ(form.log, kCopyFromForm);
  ExpectFormAt(100, 100);
}

// In each scale of the form, in which the second place is another 40 and 20 pixels on.
TEST_F(Snapshot, InEveryScaleAndModeIsTakenForTheSameReasons) {
  const std::vector<std::string> nothing;
  for (const double mode : {kTwips, kPixels, kMillimetres})
    for (const bool in_designer : {false, true}) {
      SCOPED_TRACE(std::to_string(mode) + (in_designer ? " in a designer" : ""));
      const double unit = mode == kTwips ? 15 : 1;
      ScaleMode(mode);
      host.ambient.user_mode = !in_designer;
      hosted.Set("Caption", std::u16string(u" "));  // without one, a designer outlines it
      hosted.State().Background.reset();
      hosted.State().MaxWidth = hosted.State().MaxHeight = 0;
      Resize(100, 50);
      form.PutAt(30 * unit, 60 * unit);
      hosted.State().Background.reset();
      form.TakeLog();
      Show();
      ExpectFormAt(30, 60);
      EXPECT_EQ(form.TakeLog(), kCopyFromForm);

      form.PutAt(70 * unit, 80 * unit);
      hosted.control.RedrawNow();
      ExpectFormAt(30, 60);
      EXPECT_EQ(form.TakeLog(), nothing) << "moved";

      const auto& if_in_designer = in_designer ? kCopyFromForm : nothing;
      for (const auto& [width, height] : {std::pair{40, 20}, {100, 50}}) {  // shrunk and regrown
        Resize(width, height);
        in_designer ? ExpectFormAt(70, 80) : ExpectFormAt(30, 60);
        EXPECT_EQ(form.TakeLog(), if_in_designer) << width;
      }
      Resize(101, 50);
      ExpectFormAt(70, 80);
      EXPECT_EQ(form.TakeLog(), kCopyFromForm) << "larger than ever";
    }
}

TEST_F(Snapshot, StaysWhenTheSystemsColoursChange) {
  hosted.Set("BackColor", static_cast<Long>(0x8000000F));
  Show();
  form.TakeLog();
  form.PutAt(50, 50);
  const auto before = hosted.State().BackBuffer;
  Configuration().system_colours[15] = 0x00010203;
  hosted.control.PaintControl(nullptr);
  EXPECT_NE(hosted.State().BackBuffer, before) << "the picture is built anew";
  EXPECT_TRUE(form.log.empty());
  ExpectFormAt(0, 0);
}

// --- Calls from inside ------------------------------------------------------------------------------------

TEST_F(Snapshot, TheControlIsNoPartOfIt) {
  CDib24 elsewhere;
  ASSERT_TRUE(elsewhere.Create(100, 50));
  elsewhere.Clear(0x0000FF);
  form.form->on_use = [&](const std::string& use) {
    if (use == "form.hdc") hosted.control.PaintControl(elsewhere.hDC());
  };
  Show();
  EXPECT_EQ(elsewhere.View().At(5, 5)[2], 255) << "nothing is painted meanwhile";
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, ASetterInsideShowsInThePicture) {
  bool done = false;
  form.form->on_use = [&](const std::string& use) {
    if (use != "form.hdc" || std::exchange(done, true)) return;
    hosted.Set("Appearance", Long{0});
    hosted.Set("BorderStyle", Long{1});
  };
  Show();
  EXPECT_EQ(host.Pixel(0, 0), 0u) << "the border";
  EXPECT_EQ(host.Pixel(5, 5), FormColourAt(5, 5));
}

TEST_F(Snapshot, AResizeInsideHasItsSizeInThePicture) {
  host.ambient.user_mode = false;
  bool done = false;
  form.form->on_use = [&](const std::string& use) {
    if (use == "form.hdc" && !std::exchange(done, true)) Resize(60, 30);
  };
  Show();
  EXPECT_EQ(hosted.State().BackBuffer->Width(), 60);
  ExpectFormAt(0, 0);
}

TEST_F(Snapshot, AContainerThatAlwaysResizesComesToAnEnd) {
  host.ambient.user_mode = false;
  int uses = 0;
  form.form->on_use = [&](const std::string& use) {
    if (use == "form.hdc") Resize(60, 30 + ++uses % 2);
  };
  Show();
  EXPECT_LE(uses, 4);
}

TEST_F(Snapshot, APaintMissedInsideIsMadeUpFor) {
  Show();
  hosted.State().Background.reset();
  hosted.State().BackBuffer.reset();
  host.Surface().Clear(0);
  CDib24 elsewhere;
  ASSERT_TRUE(elsewhere.Create(100, 50));
  form.form->on_use = [&](const std::string& use) {
    if (use == "form.hdc") hosted.control.PaintControl(nullptr);
  };
  hosted.control.PaintControl(elsewhere.hDC());
  ExpectFormAt(0, 0);
}

// --- Hosts whose forms keep no picture --------------------------------------------------------------------

struct Behind : ::testing::Test {
  HostedControl hosted;
  FakeHost& host = hosted.host;
  COLORREF colour = 0x112233;
  bool is_for_good = true;

  void SetUp() override {
    hosted.Init();
    hosted.State().Background.reset();
    host.asked_behind = 0;
    host.paint_behind = [this](HDC dc) {
      const HBRUSH brush = CreateSolidBrush(colour);
      FillRect(dc, {0, 0, 1000, 1000}, brush);
      DeleteObject(brush);
      return is_for_good;
    };
  }
  void Show() { hosted.Set("BackStyle", kTransparent); }
};

TEST_F(Behind, TheHostDrawsIt) {
  Show();
  EXPECT_EQ(host.Pixel(99, 49), 0x112233u);
}

TEST_F(Behind, TheHostIsAskedOnce) {
  Show();
  colour = 0;
  hosted.control.RedrawNow();
  EXPECT_EQ(host.asked_behind, 1);
  EXPECT_EQ(host.Pixel(0, 0), 0x112233u);
}

TEST_F(Behind, WhatIsNotKnownForGoodIsAskedForAtTheNextPaint) {
  is_for_good = false;
  Show();
  EXPECT_EQ(host.Pixel(0, 0), 0x112233u) << "shown as it is";
  EXPECT_FALSE(hosted.State().Background);
  colour = 0x445566;
  is_for_good = true;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Pixel(0, 0), 0x445566u);
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.asked_behind, 2);
}

TEST_F(Behind, AFormWithoutAllOfTheMembersCountsAsSuchAHost) {
  for (const char* missing : {"hwnd", "AutoRedraw"}) {
    MemoryForm form;
    form.form->numbers.erase(missing);
    form.form->handles.erase(missing);
    host.parent = form.form;
    hosted.State().Background.reset();
    Show();
    EXPECT_EQ(host.Pixel(0, 0), 0x112233u) << missing;
    EXPECT_TRUE(form.log.empty()) << "nothing of it is read or set";
  }
}

TEST_F(Behind, AHostThatFailsIsAskedAgain) {
  const auto works = host.paint_behind;
  host.paint_behind = [](HDC) -> bool { throw std::runtime_error("no"); };
  Show();
  host.paint_behind = works;
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Pixel(0, 0), 0x112233u);
}

TEST_F(Behind, ACopyElsewhereCanStandBeforeAnotherBackground) {
  Show();
  const auto snapshot = hosted.State().Background;
  const auto picture = hosted.State().BackBuffer;
  const auto other = std::make_shared<CDib32>();
  ASSERT_TRUE(other->Create(100, 50));
  other->Clear(0x778899);
  CDib24 target;
  ASSERT_TRUE(target.Create(100, 50));
  hosted.control.PaintOver(target.hDC(), other);
  EXPECT_EQ(target.View().At(3, 3)[0], 0x77);
  EXPECT_EQ(hosted.State().Background, snapshot);
  EXPECT_EQ(hosted.State().BackBuffer, picture);
  EXPECT_EQ(host.Pixel(3, 3), 0x112233u);
}

TEST_F(Behind, ASetterCalledWhileACopyIsDrawnElsewhereIsSeenInTheControlsOwnPicture) {
  Show();
  const auto other = std::make_shared<CDib32>();
  ASSERT_TRUE(other->Create(100, 50));
  hosted.Set("Caption", std::u16string(u"x"));
  host.on_enabled_asked = [&] {
    host.on_enabled_asked = nullptr;
    hosted.Set("Appearance", Long{0});
    hosted.Set("BorderStyle", Long{1});
  };
  CDib24 target;
  ASSERT_TRUE(target.Create(100, 50));
  hosted.control.PaintOver(target.hDC(), other);
  hosted.control.PaintControl(nullptr);
  EXPECT_EQ(host.Pixel(0, 0), 0u);
  EXPECT_EQ(host.Pixel(50, 40), 0x112233u) << "in front of its own background";
}

}  // namespace
}  // namespace marklet
