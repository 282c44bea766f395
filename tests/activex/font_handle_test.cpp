// The font object of a host draws with its own handle, whatever size it shows and however it comes to the
// control.
#include <algorithm>
#include <functional>
#include <iterator>
#include <string>

#include "activex/container.h"
#include "activex/saving.h"
#include "support/gdi_handles.h"

namespace ocx_test {
namespace {

constexpr UINT kMeasure = 0x0420;  // one line, no drawing; the seam has the names
constexpr wchar_t kText[] = L"Quick brown fox, WAVE and Ty";
// The machine's own, and those that it has in other sizes than were asked for.
constexpr const wchar_t* kFaces[] = {L"Tahoma", L"DejaVu Sans", L"MS Sans Serif"};
constexpr long kSizes[] = {82500,  90000,  100000, 110000,
                           120000, 142500, 180000};  // ten-thousandths of a point

// Black on white, top down.
class Canvas {
 public:
  Canvas() : dc_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, kWidth, -kHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    pixels_ = static_cast<const DWORD*>(bits);
    SelectObject(dc_, bitmap_);
    const RECT all = {0, 0, kWidth, kHeight};
    FillRect(dc_, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  }
  ~Canvas() {
    DeleteDC(dc_);
    DeleteObject(bitmap_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC Context() const { return dc_; }

  // What isn't white.
  RECT Ink() const {
    GdiFlush();
    RECT ink = {kWidth, kHeight, 0, 0};
    for (LONG y = 0; y < kHeight; ++y)
      for (LONG x = 0; x < kWidth; ++x)
        if ((pixels_[y * kWidth + x] & 0xFFFFFF) != 0xFFFFFF)
          ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                 std::max(ink.bottom, y + 1)};
    return ink;
  }

  static constexpr LONG kWidth = 600, kHeight = 80;

 private:
  HDC dc_;
  HBITMAP bitmap_;
  const DWORD* pixels_;
};

HFONT HandleOf(const Variant& font) {
  HFONT handle = nullptr;
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->get_hFont(&handle));
  return handle;
}

RECT InkWith(HFONT font) {
  const Canvas canvas;
  const HGDIOBJ old_font = SelectObject(canvas.Context(), font);
  TextOutW(canvas.Context(), 0, 0, kText, static_cast<int>(std::size(kText) - 1));
  SelectObject(canvas.Context(), old_font);
  return canvas.Ink();
}

RECT InkOf(IUnknown* control) {
  const Canvas canvas;
  const RECTL bounds = {0, 0, Canvas::kWidth, Canvas::kHeight};
  EXPECT_EQ(S_OK, As<IViewObject>(control)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr,
                                                 canvas.Context(), &bounds, nullptr, nullptr, 0));
  return canvas.Ink();
}

SIZE ExtentWith(HFONT font) {
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ old_font = SelectObject(dc, font);
  RECT rect = {};
  DrawTextW(dc, kText, -1, &rect, kMeasure);
  SelectObject(dc, old_font);
  DeleteDC(dc);
  return {rect.right, rect.bottom};
}

// A caption and colours to look at.
void Prepare(Container& container) {
  const RECT rect = {0, 0, Canvas::kWidth, Canvas::kHeight};
  container.position = container.clip = rect;
  container.ambients.back_color = 0xFFFFFF;
  container.ambients.fore_color = 0;
}
void ShowText(Container& container) {
  const auto object = container.Dispatch();
  EXPECT_EQ(S_OK, container.Activate());
  PutNumber(object.Get(), L"BackColor", 0xFFFFFF);
  PutNumber(object.Get(), L"ForeColor", 0);
  EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
  PutText(object.Get(), L"Caption", kText);
}

// The ways of a host's font to the control.
struct Way {
  const char* name;
  void (*give)(Container& container, const Variant& font);
};
const Way kWays[] = {
    {"by its setter",
     [](Container& container, const Variant& font) {
       container.Host();
       EXPECT_EQ(S_OK, PutByName(container.Dispatch().Get(), L"Font", font));
     }},
    {"as the ambient one",
     [](Container& container, const Variant& font) {
       container.ambients.font = font.pdispVal;
       container.Host();
     }},
    {"from a bag",
     [](Container& container, const Variant& font) {
       MemoryBag bag;
       bag.Put(L"Font", font);
       const ComPtr<IUnknown> control = CreateControl();
       EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
       container.HostObject(control);
     }},
};

void ForEveryFont(const std::function<void(const Way& way, const Variant& font)>& body) {
  for (const Way& way : kWays)
    for (const wchar_t* face : kFaces)
      for (const long size : kSizes) {
        SCOPED_TRACE(::testing::Message() << way.name << ": " << face << " at " << size / 10000.0);
        body(way, NewFont(face, size, false));
      }
}

void ExpectSameInk(const RECT& expected, const RECT& got) {
  EXPECT_EQ(expected.right - expected.left, got.right - got.left);
  EXPECT_EQ(expected.bottom - expected.top, got.bottom - got.top);
}

TEST(FontHandle, OfAHostsObjectDrawsAndMeasuresAtEverySize) {
  ForEveryFont([](const Way& way, const Variant& font) {
    Container container;
    Prepare(container);
    way.give(container, font);
    ShowText(container);
    const RECT expected = InkWith(HandleOf(font));
    ASSERT_LT(0, expected.right);
    ExpectSameInk(expected, InkOf(container.Object()));
    EXPECT_EQ(S_OK, PutByName(container.Dispatch().Get(), L"AutoSize", Variant::Bool(true)));
    RECT client = {};
    GetClientRect(container.ControlWindow(), &client);
    const SIZE extent = ExtentWith(HandleOf(font));
    EXPECT_EQ(extent.cx, client.right);
    EXPECT_EQ(extent.cy, client.bottom);
  });
}

// A host that gives a font and asks for it back measures with what it gets.
TEST(FontHandle, OfTheObjectThatTheControlShowsIsTheOneThatDraws) {
  ForEveryFont([](const Way& way, const Variant& font) {
    Container container;
    Prepare(container);
    way.give(container, font);
    ShowText(container);
    Variant shown;
    ASSERT_EQ(S_OK, GetByName(container.Dispatch().Get(), L"Font", shown));
    ExpectSameInk(InkWith(HandleOf(shown)), InkOf(container.Object()));
  });
}

TEST(FontHandle, FollowsWhatTheHostSetsOnTheObject) {
  Container container;
  Prepare(container);
  container.Host();
  ShowText(container);
  const auto object = container.Dispatch();
  Variant font;
  ASSERT_EQ(S_OK, PutByName(object.Get(), L"Font", NewFont(L"DejaVu Sans", 82500, false)));
  ASSERT_EQ(S_OK, GetByName(object.Get(), L"Font", font));
  for (const long size : kSizes) {
    SCOPED_TRACE(size / 10000.0);
    CY points = {};
    points.int64 = size;
    ASSERT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Size(points));
    PutText(object.Get(), L"Caption", kText);  // paints anew
    ExpectSameInk(InkWith(HandleOf(font)), InkOf(container.Object()));
  }
}

// A copy was taken: what becomes of the host's own object is the host's affair.
TEST(FontHandle, StaysWhenTheHostsOwnObjectBecomesAnotherFont) {
  Container container;
  Prepare(container);
  container.Host();
  const auto object = container.Dispatch();
  RECT before = {};
  {
    const Variant font = NewFont(L"DejaVu Sans", 110000, false);
    ASSERT_EQ(S_OK, PutByName(object.Get(), L"Font", font));
    ShowText(container);
    before = InkOf(container.Object());
    CY points = {};
    points.int64 = 240000;
    ASSERT_EQ(S_OK, As<IFont>(font.pdispVal)->put_Size(points));
    HandleOf(font);
  }
  PutText(object.Get(), L"Caption", kText);
  ExpectSameInk(before, InkOf(container.Object()));
  Variant shown;
  ASSERT_EQ(S_OK, GetByName(object.Get(), L"Font", shown));
  CY points = {};
  EXPECT_EQ(S_OK, As<IFont>(shown.pdispVal)->get_Size(&points));
  EXPECT_GT(200000, points.int64);
}

// The size that the object shows would give another one.
TEST(FontHandle, ItsHeightStaysWhenAnotherMemberIsSet) {
  ForEveryFont([](const Way& way, const Variant& font) {
    Container container;
    Prepare(container);
    way.give(container, font);
    ShowText(container);
    const auto object = container.Dispatch();
    const RECT expected = InkWith(HandleOf(font));
    for (const bool on : {true, false})
      EXPECT_EQ(S_OK, PutByName(object.Get(), L"FontUnderline", Variant::Bool(on)));
    ExpectSameInk(expected, InkOf(container.Object()));
  });
}

TEST(FontHandle, LivesLeaveNoHandleAndNoReference) {
  const Variant font = NewFont(L"DejaVu Sans", 110000, false);
  const auto live = [&](const Way& way) {
    Container container;
    Prepare(container);
    way.give(container, font);
    ShowText(container);
    InkOf(container.Object());
    Variant shown;
    GetByName(container.Dispatch().Get(), L"Font", shown);
    PutNumber(container.Dispatch().Get(), L"FontSize", 14);
  };
  for (const Way& way : kWays) live(way);
  const int before = marklet::CountGdiHandles();
  const ULONG references = References(font.pdispVal);
  for (int i = 0; i < 20; ++i)
    for (const Way& way : kWays) live(way);
  EXPECT_EQ(before, marklet::CountGdiHandles());
  EXPECT_EQ(references, References(font.pdispVal));
}

}  // namespace
}  // namespace ocx_test
