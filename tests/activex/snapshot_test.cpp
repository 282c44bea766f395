// A transparent control on a form that keeps a picture of itself: where its snapshot is taken from, and how
// long it lives.
#include "activex/form.h"
#include "activex/other_system_colour.h"
#include "activex/picture.h"
#include "activex/saving.h"
#include "platform/system_colours.h"
#include "support/snapshot_calls.h"

namespace ocx_test {
namespace {

using marklet::testing::kCopyFromForm;
using marklet::testing::kCopyFromFrame;

constexpr int kTwips = 1, kPixels = 3, kMillimetres = 6;

int TwipsPerPixel() {
  const HDC screen = GetDC(nullptr);
  const int result = 1440 / GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return result;
}

class Snapshot : public ::testing::Test {
 protected:
  void SetUp() override { Start(true); }
  void TearDown() override { Stop(); }
  void Start(bool user_mode) {
    container_.ambients.user_mode = user_mode;
    container_.Host();
    form_ = std::make_unique<Form>(container_);
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    form_->log.clear();
  }
  void Stop() {
    object_.Reset();
    container_.Close();
    form_.reset();
  }

  void Show() { PutNumber(object_.Get(), L"BackStyle", 0); }
  void Hide() { PutNumber(object_.Get(), L"BackStyle", 1); }
  void Redraw() { PutNumber(object_.Get(), L"TextEffect", 0); }
  void Size(int width, int height) {
    const RECT position = {10, 20, 10 + width, 20 + height};
    EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&position, &container_.clip));
  }
  // The whole control shows the form's picture from there.
  void ExpectFormAt(int x, int y) {
    RECT client = {};
    GetClientRect(container_.ControlWindow(), &client);
    Picture picture(client.right, client.bottom);
    SendMessageW(container_.ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()),
                 PRF_CLIENT);
    for (int dy = 0; dy < client.bottom; ++dy)
      for (int dx = 0; dx < client.right; ++dx)
        ASSERT_EQ(Form::ColourAt(x + dx, y + dy), picture.At(dx, dy)) << dx << "," << dy;
  }
  int CountOf(DWORD colour) {
    Picture picture(200, 60);
    SendMessageW(container_.ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()),
                 PRF_CLIENT);
    return picture.Count(colour);
  }

  Container container_;
  std::unique_ptr<Form> form_;
  ComPtr<IDispatch> object_;
};

TEST_F(Snapshot, OnAFormInPixelsThePlaceIsTakenAsItIs) {
  form_->ScaleMode(kPixels);
  form_->PutAt(200, 300);
  Show();
  ExpectFormAt(200, 300);
}

TEST_F(Snapshot, OnAFormInTwipsThePlaceIsConvertedAndTruncated) {
  form_->ScaleMode(kTwips);
  form_->PutAt(100 * TwipsPerPixel() + TwipsPerPixel() - 1, 30 * TwipsPerPixel());
  Show();
  ExpectFormAt(100, 30);
}

TEST_F(Snapshot, OnAnyOtherScaleThePlaceIsTakenForPixels) {
  form_->ScaleMode(kMillimetres);
  form_->PutAt(55, 66);
  Show();
  ExpectFormAt(55, 66);
}

TEST_F(Snapshot, ThePlaceMayComeInAnyNumericType) {
  for (const VARTYPE type : {VT_I2, VT_I4, VT_UI1, VT_UI2, VT_UI4, VT_I8, VT_R4, VT_R8, VT_CY, VT_DECIMAL}) {
    Variant left(120), top(40);
    ASSERT_EQ(S_OK, VariantChangeType(&left, &left, 0, type));
    ASSERT_EQ(S_OK, VariantChangeType(&top, &top, 0, type));
    form_->PutAt(left, top);
    // Past any size before.
    static int grown = 60;
    Size(200, ++grown);
    Show();
    SCOPED_TRACE(type);
    ExpectFormAt(120, 40);
  }
}

TEST_F(Snapshot, TheFormIsAskedInOrder) {
  Show();
  EXPECT_EQ(kCopyFromForm, form_->log);
}

TEST_F(Snapshot, AFrameIsFoundAmongTheFormsControlsByTheirEnumeratorOrByIndex) {
  for (const bool has_enumerator : {true, false}) {
    Container container;
    container.Host();
    Form form(container);
    form.controls->has_enumerator = has_enumerator;
    form.UseFrame();
    EXPECT_EQ(S_OK, container.Activate());
    form.log.clear();
    // The label has no window.
    PutNumber(container.Dispatch().Get(), L"BackStyle", 0);
    auto expected = kCopyFromFrame;
    std::erase(expected, "label.hwnd");
    EXPECT_EQ(expected, form.log) << has_enumerator;
    container.Close();
  }
}

TEST_F(Snapshot, AFrameWithoutAContextShowsABlankArea) {
  form_->UseFrame();
  form_->frame->members.erase("hdc");
  Show();
  EXPECT_EQ(200 * 60, CountOf(0x000000));
}

TEST_F(Snapshot, AutoRedrawIsPutBackToWhatItWas) {
  for (const bool before : {true, false}) {
    form_->form_redraws = before;
    Size(200, before ? 61 : 62);
    Show();
    EXPECT_EQ(before, form_->form_redraws);
    ExpectFormAt(0, 0);
  }
}

TEST_F(Snapshot, AutoRedrawIsPutBackThoughTheCopyFails) {
  for (const char* member : {"hdc", "scalemode"}) {
    form_->form->members[member].get = [](VARIANT&) { return E_FAIL; };
    Show();
    EXPECT_FALSE(form_->form_redraws);
  }
}

TEST_F(Snapshot, AContextThatIsNoneCopiesNothing) {
  form_->form->Put("hdc", Variant(0));
  Show();
  EXPECT_EQ(200 * 60, CountOf(0x000000));
  EXPECT_FALSE(form_->form_redraws);
}

// --- How long it lives ------------------------------------------------------------------------------------

TEST_F(Snapshot, ServesEveryLaterPaintWhereverTheControlGoes) {
  Show();
  form_->log.clear();
  form_->PutAt(100, 100);
  Redraw();
  const RECT moved = {50, 60, 250, 120};
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&moved, &container_.clip));
  ExpectFormAt(0, 0);
  Hide();
  Show();
  ExpectFormAt(0, 0);
  EXPECT_TRUE(form_->log.empty());
}

TEST_F(Snapshot, AtRunTimeOnlyASizeNeverReachedBeforeTakesItAnew) {
  Show();
  form_->PutAt(100, 100);
  form_->log.clear();
  Size(90, 30);
  ExpectFormAt(0, 0);
  Size(200, 60);
  ExpectFormAt(0, 0);
  EXPECT_TRUE(form_->log.empty());
  Size(200, 61);
  ExpectFormAt(100, 100);
  EXPECT_EQ(kCopyFromForm, form_->log);
}

TEST_F(Snapshot, InADesignerEverySizeTakesItAnew) {
  container_.ambients.user_mode = false;
  As<IOleControl>(object_)->OnAmbientPropertyChange(DISPID_AMBIENT_USERMODE);
  Show();
  form_->PutAt(100, 100);
  form_->log.clear();
  PutText(object_.Get(), L"Caption", L"");
  Size(90, 30);
  EXPECT_EQ(kCopyFromForm, form_->log);
}

// In each scale of the form, in which the second place is another 40 and 20 pixels on.
TEST_F(Snapshot, InEveryScaleAndModeItIsTakenForTheSameReasons) {
  const LateObject::Log nothing;
  for (const int mode : {kTwips, kPixels, kMillimetres})
    for (const bool in_designer : {false, true}) {
      SCOPED_TRACE(std::to_string(mode) + (in_designer ? " in a designer" : ""));
      const int unit = mode == kTwips ? TwipsPerPixel() : 1;
      Stop();
      Start(!in_designer);
      PutText(object_.Get(), L"Caption", L" ");  // without one, a designer outlines it
      form_->ScaleMode(mode);
      form_->PutAt(30 * unit, 60 * unit);
      form_->log.clear();
      Show();
      ExpectFormAt(30, 60);
      EXPECT_EQ(kCopyFromForm, std::exchange(form_->log, {}));

      form_->PutAt(70 * unit, 80 * unit);
      const RECT moved = {50, 60, 250, 120};
      EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&moved, &container_.clip));
      ExpectFormAt(30, 60);
      EXPECT_EQ(nothing, std::exchange(form_->log, {})) << "moved";

      const auto& if_in_designer = in_designer ? kCopyFromForm : nothing;
      for (const auto& [width, height] : {std::pair{90, 30}, {200, 60}}) {  // shrunk and regrown
        Size(width, height);
        in_designer ? ExpectFormAt(70, 80) : ExpectFormAt(30, 60);
        EXPECT_EQ(if_in_designer, std::exchange(form_->log, {})) << width;
      }
      Size(201, 60);
      ExpectFormAt(70, 80);
      EXPECT_EQ(kCopyFromForm, std::exchange(form_->log, {})) << "larger than ever";
    }
}

// The border of a transparent control is shaded from the button face.
TEST_F(Snapshot, StaysWhenASystemColourChangesBetweenTwoPaintsAndTheBorderFollows) {
  Show();
  PutNumber(object_.Get(), L"BorderStyle", 1);
  const auto picture = [this] {
    auto drawn = std::make_unique<Picture>(200, 60);
    SendMessageW(container_.ControlWindow(), WM_PRINTCLIENT, reinterpret_cast<WPARAM>(drawn->Dc()),
                 PRF_CLIENT);
    return drawn;
  };
  const auto before = picture();
  form_->PutAt(100, 100);
  form_->log.clear();
  const OtherSystemColour colour(marklet::COLOR_BTNFACE);
  const auto after = picture();
  EXPECT_NE(before->At(0, 0), after->At(0, 0));
  EXPECT_EQ(Form::ColourAt(2, 2), after->At(2, 2));
  EXPECT_TRUE(form_->log.empty());
}

TEST_F(Snapshot, AnythingMayHappenWhileItIsTaken) {
  using Act = void (*)(Container&);
  const Act acts[] = {
      [](Container& c) { As<IOleInPlaceObject>(c.Object())->InPlaceDeactivate(); },
      [](Container& c) { As<IOleObject>(c.Object())->SetClientSite(nullptr); },
      [](Container& c) { c.Close(); },
      [](Container& c) { c.Drop(); },
      [](Container& c) { DestroyWindow(c.ControlWindow()); },
      [](Container& c) { PutText(c.Dispatch().Get(), L"Caption", L"inside"); },
      [](Container& c) { UpdateWindow(c.ControlWindow()); },
      [](Container& c) {
        const RECT rect = {0, 0, 300, 200};
        As<IOleInPlaceObject>(c.Object())->SetObjectRects(&rect, &rect);
      },
  };
  for (const char* use : {"form.hwnd", "form.AutoRedraw=1", "form.hdc", "extender.Left", "form.AutoRedraw=0"})
    for (const Act act : acts) {
      Container container;
      container.Host();
      Form form(container);
      EXPECT_EQ(S_OK, container.Activate());
      ComPtr<IDispatch> object = container.Dispatch();
      bool done = false;
      const auto once = [&](const std::string& what) {
        if (what != use || std::exchange(done, true)) return;
        act(container);
      };
      form.form->on_use = form.extender->on_use = once;
      PutNumber(object.Get(), L"BackStyle", 0);
      EXPECT_TRUE(done);
      EXPECT_FALSE(form.form_redraws);
      form.form->on_use = form.extender->on_use = nullptr;
      PutText(object.Get(), L"Caption", L"after");
      EXPECT_EQ(L"after", GetText(object.Get(), L"Caption"));
      object.Reset();
      if (container.Object()) container.Close();
    }
  PumpMessages();
}

}  // namespace
}  // namespace ocx_test
