// In-place activation, sizes and painting, in our own container.
#include <bit>
#include <cmath>
#include <memory>

#include "activex/container.h"
#include "activex/listener.h"
#include "activex/picture.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

RECT RectInParent(HWND window) {
  RECT rect = {};
  GetWindowRect(window, &rect);
  MapWindowPoints(nullptr, GetParent(window), reinterpret_cast<POINT*>(&rect), 2);
  return rect;
}

int PixelsPerInch() {
  const HDC screen = GetDC(nullptr);
  const int result = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return result;
}

class Activation : public ::testing::Test {
 protected:
  void SetUp() override { container_.Host(); }
  void Activate() {
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    window_ = container_.ControlWindow();
    ASSERT_TRUE(window_);
    UpdateWindow(window_);
  }
  void MakeRed() {
    PutNumber(object_.Get(), L"BackColor", 0x0000FF);  // red in the low byte
    PutText(object_.Get(), L"Caption", L"");
  }

  Container container_;
  ComPtr<IDispatch> object_;
  HWND window_ = nullptr;
};

// --- Activation -------------------------------------------------------------------------------------------

TEST_F(Activation, MakesAVisibleChildWhereTheSiteSays) {
  Activate();
  EXPECT_EQ(container_.Window(), GetParent(window_));
  EXPECT_TRUE(IsWindowVisible(window_));
  const RECT rect = RectInParent(window_);
  EXPECT_TRUE(EqualRect(&container_.position, &rect));
}

TEST_F(Activation, CallsTheSiteInOrder) {
  Activate();
  EXPECT_EQ((Log{"CanInPlaceActivate", "OnInPlaceActivate", "GetWindow", "GetWindowContext", "ShowObject"}),
            container_.log);
  container_.log.clear();
  EXPECT_EQ(S_OK, container_.Activate());
  EXPECT_EQ(Log{}, container_.log) << "it is active";
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->InPlaceDeactivate());
  EXPECT_EQ(Log{"OnInPlaceDeactivate"}, container_.log);
  EXPECT_FALSE(IsWindow(window_));
}

TEST_F(Activation, CanBeRepeated) {
  for (int i = 0; i < 3; ++i) {
    Activate();
    EXPECT_EQ(S_OK, As<IOleObject>(object_)->Close(OLECLOSE_NOSAVE));
    EXPECT_FALSE(container_.ControlWindow());
  }
}

TEST_F(Activation, WithUserInterfaceTellsFrameAndSite) {
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_UIACTIVATE));
  object_ = container_.Dispatch();
  EXPECT_EQ(1, container_.Count("OnUIActivate"));
  EXPECT_EQ(1, container_.Count("SetActiveObject"));
  EXPECT_EQ(container_.ControlWindow(), GetFocus());
  container_.log.clear();
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->UIDeactivate());
  EXPECT_EQ((Log{"SetActiveObject(none)", "OnUIDeactivate"}), container_.log);
  EXPECT_TRUE(container_.ControlWindow()) << "still active in place";
}

TEST_F(Activation, HideKeepsTheControlActive) {
  Activate();
  EXPECT_EQ(S_OK, container_.Activate(OLEIVERB_HIDE));
  EXPECT_FALSE(IsWindowVisible(window_));
  EXPECT_EQ(window_, container_.ControlWindow());
}

TEST_F(Activation, SurvivesTheEndOfTheContainersWindow) {
  Activate();
  DestroyWindow(container_.Window());
  EXPECT_FALSE(IsWindow(window_));
  EXPECT_FALSE(container_.ControlWindow());
  PutText(object_.Get(), L"Caption", L"without a window");
  EXPECT_EQ(0, GetNumber(object_.Get(), L"hwnd"));
  EXPECT_EQ(S_OK, As<IOleObject>(object_)->Close(OLECLOSE_NOSAVE));
  EXPECT_EQ(1, container_.Count("OnInPlaceDeactivate"));
}

TEST_F(Activation, GivesTheWindowTheCaptionsSource) {
  object_ = container_.Dispatch();
  PutText(object_.Get(), L"Caption", L"<b>\x0391\x0392</b>");
  Activate();
  wchar_t text[50] = {};
  SendMessageW(window_, WM_GETTEXT, 50, reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(L"<b>\x0391\x0392</b>", text);
  PutText(object_.Get(), L"Caption", L"later");
  SendMessageW(window_, WM_GETTEXT, 50, reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(L"later", text);
}

// Counts the texts that a window's procedure is given.
class TextCounter {
 public:
  explicit TextCounter(HWND window) : window_(window) {
    texts_ = 0;
    former_ = std::bit_cast<WNDPROC>(
        SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&Procedure)));
  }
  ~TextCounter() { SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(former_)); }
  TextCounter(const TextCounter&) = delete;
  TextCounter& operator=(const TextCounter&) = delete;
  static int Texts() { return texts_; }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    texts_ += message == WM_SETTEXT;
    return CallWindowProcW(former_, window, message, wparam, lparam);
  }
  HWND window_;
  static inline WNDPROC former_ = nullptr;
  static inline int texts_ = 0;
};

TEST_F(Activation, GivesTheWindowItsTextPastASubclass) {
  Activate();
  const TextCounter counter(window_);
  PutText(object_.Get(), L"Caption", L"unseen");
  EXPECT_EQ(0, TextCounter::Texts());
  wchar_t text[50] = {};
  SendMessageW(window_, WM_GETTEXT, 50, reinterpret_cast<LPARAM>(text));
  EXPECT_STREQ(L"unseen", text);
  SendMessageW(window_, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"seen"));
  EXPECT_EQ(1, TextCounter::Texts());
}

TEST_F(Activation, TellsAdvisersOfCloseAndOfAnotherLook) {
  Listener listener;
  const auto object = As<IOleObject>(container_.Object());
  const auto view = As<IViewObject2>(object);
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, object->Advise(&listener, &cookie));
  EXPECT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, 0, &listener));
  DWORD aspects = 0, flags = 7;
  ComPtr<IAdviseSink> sink;
  EXPECT_EQ(S_OK, view->GetAdvise(&aspects, &flags, sink.GetAddressOf()));
  EXPECT_EQ(&listener, sink.Get());
  EXPECT_EQ(static_cast<DWORD>(DVASPECT_CONTENT), aspects);
  sink.Reset();
  PutText(container_.Dispatch().Get(), L"Caption", L"other");
  EXPECT_LE(1, listener.Count("OnViewChange"));
  object->Close(OLECLOSE_NOSAVE);
  EXPECT_EQ(1, listener.Count("OnClose"));
  EXPECT_EQ(S_OK, object->Unadvise(cookie));
  EXPECT_EQ(S_OK, view->SetAdvise(0, 0, nullptr));
  EXPECT_EQ(0u, listener.References());
}

// The size that the window is made with is that of its first picture.
TEST_F(Activation, BuildsThePictureOnce) {
  Listener listener;
  const auto view = As<IViewObject2>(container_.Object());
  EXPECT_EQ(S_OK, view->SetAdvise(DVASPECT_CONTENT, 0, &listener));
  container_.position = {10, 10, 170, 90};
  EXPECT_EQ(S_OK, container_.Activate());
  EXPECT_EQ(1, listener.Count("OnViewChange"));
  EXPECT_EQ(S_OK, view->SetAdvise(0, 0, nullptr));
}

// --- Sizes ------------------------------------------------------------------------------------------------

SIZEL ExtentOf(IUnknown* object) {
  SIZEL size = {};
  EXPECT_EQ(S_OK, As<IOleObject>(object)->GetExtent(DVASPECT_CONTENT, &size));
  return size;
}

TEST_F(Activation, StartsAtASizeThatADesignerWouldPlace) {
  const SIZEL size = ExtentOf(CreateControl().Get());
  EXPECT_EQ(3201, size.cx);  // 121 pixels at 96 per inch, in 0.01 mm
  EXPECT_EQ(661, size.cy);   // 25 pixels
}

TEST_F(Activation, KeepsTheExtentThatItIsGiven) {
  const auto object = As<IOleObject>(container_.Object());
  SIZEL size = {5000, 1234};
  EXPECT_EQ(S_OK, object->SetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(5000, ExtentOf(object.Get()).cx);
  EXPECT_EQ(1234, ExtentOf(object.Get()).cy);
  SIZEL from_view = {};
  EXPECT_EQ(S_OK, As<IViewObject2>(object)->GetExtent(DVASPECT_CONTENT, -1, nullptr, &from_view));
  EXPECT_EQ(5000, from_view.cx);
  EXPECT_EQ(DV_E_DVASPECT, object->SetExtent(DVASPECT_ICON, &size));
  SIZEL negative = {-1, 5};
  EXPECT_EQ(E_INVALIDARG, object->SetExtent(DVASPECT_CONTENT, &negative));
  EXPECT_EQ(E_POINTER, object->SetExtent(DVASPECT_CONTENT, nullptr));
}

TEST_F(Activation, TakesTheSizeOfItsRectangle) {
  Activate();
  const int dpi = PixelsPerInch();
  EXPECT_EQ(MulDiv(200, 2540, dpi), ExtentOf(object_.Get()).cx);
  const RECT rect = {5, 6, 105, 46};
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&rect, &container_.clip));
  const RECT now = RectInParent(window_);
  EXPECT_TRUE(EqualRect(&rect, &now));
  EXPECT_EQ(MulDiv(100, 2540, dpi), ExtentOf(object_.Get()).cx);
  EXPECT_EQ(MulDiv(40, 2540, dpi), ExtentOf(object_.Get()).cy);
}

TEST_F(Activation, IsCutToTheClipRectangle) {
  Activate();
  const RECT rect = {10, 10, 110, 60}, clip = {0, 0, 60, 1000};
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&rect, &clip));
  RECT visible = {};
  const HRGN region = CreateRectRgn(0, 0, 0, 0);
  EXPECT_EQ(SIMPLEREGION, GetWindowRgn(window_, region));
  GetRgnBox(region, &visible);
  EXPECT_EQ(50, visible.right);
  EXPECT_EQ(50, visible.bottom);
  EXPECT_EQ(S_OK, As<IOleInPlaceObject>(object_)->SetObjectRects(&rect, &container_.clip));
  EXPECT_EQ(0, GetWindowRgn(window_, region)) << "no longer cut";
  DeleteObject(region);
}

LRESULT CALLBACK CountPlacing(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const HANDLE former = GetPropW(window, L"former");
  if (message == WM_WINDOWPOSCHANGING) SetPropW(window, L"placed", reinterpret_cast<HANDLE>(1));
  return CallWindowProcW(reinterpret_cast<WNDPROC>(former), window, message, wparam, lparam);
}

TEST_F(Activation, IsNotPlacedAgainWhereItIs) {
  Activate();
  const RECT rect = {5, 6, 105, 46}, other = {5, 6, 106, 46};
  const auto place = As<IOleInPlaceObject>(object_);
  EXPECT_EQ(S_OK, place->SetObjectRects(&rect, &container_.clip));
  SetPropW(window_, L"former", std::bit_cast<HANDLE>(GetWindowLongPtrW(window_, GWLP_WNDPROC)));
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CountPlacing));
  EXPECT_EQ(S_OK, place->SetObjectRects(&rect, &container_.clip));
  EXPECT_FALSE(GetPropW(window_, L"placed"));
  // Its place, not what it was told last, is what counts.
  SetWindowPos(window_, nullptr, 0, 0, 10, 10, SWP_NOZORDER | SWP_NOACTIVATE);
  EXPECT_EQ(S_OK, place->SetObjectRects(&rect, &container_.clip));
  RECT now = RectInParent(window_);
  EXPECT_TRUE(EqualRect(&rect, &now));
  EXPECT_EQ(S_OK, place->SetObjectRects(&other, &container_.clip));
  now = RectInParent(window_);
  EXPECT_TRUE(EqualRect(&other, &now));
  SetWindowLongPtrW(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(GetPropW(window_, L"former")));
}

TEST_F(Activation, GrowsToItsCaptionThroughTheContainer) {
  Activate();
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"WordWrap", Variant::Bool(false)));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"AutoSize", Variant::Bool(true)));
  PutText(object_.Get(), L"Caption", L"W");
  const RECT narrow = RectInParent(window_);
  PutText(object_.Get(), L"Caption", L"WWWWWWWWWW");
  const RECT wide = RectInParent(window_);
  EXPECT_GT(wide.right - wide.left, 5 * (narrow.right - narrow.left));
  EXPECT_EQ(wide.bottom, narrow.bottom);
  EXPECT_EQ(container_.position.left, wide.left);
  EXPECT_TRUE(EqualRect(&container_.position, &wide)) << "the container has placed it";
}

TEST_F(Activation, MeasuresBeforeThereIsAWindow) {
  object_ = container_.Dispatch();
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"WordWrap", Variant::Bool(false)));
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"AutoSize", Variant::Bool(true)));
  PutText(object_.Get(), L"Caption", L"W");
  const SIZEL narrow = ExtentOf(object_.Get());
  PutText(object_.Get(), L"Caption", L"WWWWWWWWWW");
  EXPECT_GT(narrow.cx, 100);
  EXPECT_GT(ExtentOf(object_.Get()).cx, 5 * narrow.cx);
}

// --- Painting ---------------------------------------------------------------------------------------------

TEST_F(Activation, PaintsItsBackgroundAndCaption) {
  Activate();
  PutNumber(object_.Get(), L"BackColor", 0x0000FF);
  PutNumber(object_.Get(), L"ForeColor", 0xFFFFFF);
  PutText(object_.Get(), L"Caption", L"MMMM");
  Picture picture(200, 60);
  SendMessageW(window_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()), PRF_CLIENT);
  EXPECT_EQ(0xFF0000u, picture.At(199, 59));
  EXPECT_GT(picture.Count(0xFFFFFF), 20) << "no text";
  EXPECT_GT(picture.Count(0xFF0000), 10000) << "no background";
  EXPECT_EQ(0, picture.Count(kUntouched));
}

TEST_F(Activation, PaintsOnItsWindowInsideTheSetter) {
  Activate();
  MakeRed();
  const HDC dc = GetDC(window_);
  EXPECT_EQ(0x0000FFu, GetPixel(dc, 100, 30));
  PutNumber(object_.Get(), L"BackColor", 0x00FF00);
  EXPECT_EQ(0x00FF00u, GetPixel(dc, 100, 30)) << "no message has been handled in between";
  ReleaseDC(window_, dc);
}

TEST_F(Activation, AFrameThatTheContainerAddsIsDrawn) {
  Activate();
  MakeRed();
  SetWindowLongPtrW(window_, GWL_STYLE, GetWindowLongPtrW(window_, GWL_STYLE) | WS_BORDER);
  SetWindowPos(window_, nullptr, 0, 0, 0, 0,
               SWP_FRAMECHANGED | SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_FRAME | RDW_UPDATENOW);
  const HDC dc = GetWindowDC(window_);
  EXPECT_EQ(GetSysColor(COLOR_WINDOWFRAME), GetPixel(dc, 0, 0));
  EXPECT_EQ(0x0000FFu, GetPixel(dc, 1, 1));
  ReleaseDC(window_, dc);
}

TEST_F(Activation, PaintsOnThePaintMessage) {
  Activate();
  MakeRed();
  const HDC dc = GetDC(window_);
  const RECT all = {0, 0, 200, 60};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  ASSERT_EQ(0xFFFFFFu, GetPixel(dc, 100, 30));
  InvalidateRect(window_, nullptr, FALSE);
  UpdateWindow(window_);
  EXPECT_EQ(0x0000FFu, GetPixel(dc, 100, 30));
  EXPECT_FALSE(GetUpdateRect(window_, nullptr, FALSE));
  ReleaseDC(window_, dc);
}

// What WM_PRINT asks for comes in the same picture as what is on the window.
TEST_F(Activation, PrintsWhatItsWindowShows) {
  Activate();
  PutNumber(object_.Get(), L"BackColor", 0x0000FF);
  PutText(object_.Get(), L"Caption", L"<b>M</b>M");
  for (const UINT message : {WM_PRINT, WM_PRINTCLIENT}) {
    Picture picture(200, 60);
    SendMessageW(window_, message, reinterpret_cast<WPARAM>(picture.Dc()), PRF_CLIENT | PRF_ERASEBKGND);
    const HDC dc = GetDC(window_);
    int different = 0;
    for (int y = 0; y < 60; ++y)
      for (int x = 0; x < 200; ++x) {
        const DWORD shown = GetPixel(dc, x, y);  // 0xBBGGRR
        different += picture.At(x, y) != ((shown & 0xFF) << 16 | (shown & 0xFF00) | shown >> 16);
      }
    ReleaseDC(window_, dc);
    EXPECT_EQ(0, different) << "message " << message;
    EXPECT_GT(picture.Count(0xFF0000), 10000);
    EXPECT_LT(picture.Count(0xFF0000), 200 * 60);
  }
}

TEST_F(Activation, PrintsAtTheOriginOfTheContext) {
  Activate();
  MakeRed();
  Picture picture(200, 60);
  SetViewportOrgEx(picture.Dc(), 30, 20, nullptr);
  SendMessageW(window_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture.Dc()), PRF_CLIENT);
  EXPECT_EQ(kUntouched, picture.At(29, 20));
  EXPECT_EQ(kUntouched, picture.At(30, 19));
  EXPECT_EQ(0xFF0000u, picture.At(30, 20));
}

TEST_F(Activation, NeverErases) {
  Activate();
  Picture picture(200, 60);
  EXPECT_NE(0, SendMessageW(window_, WM_ERASEBKGND, reinterpret_cast<WPARAM>(picture.Dc()), 0));
  EXPECT_EQ(200 * 60, picture.Count(kUntouched));
}

TEST_F(Activation, DrawsWhileInactive) {
  object_ = container_.Dispatch();
  MakeRed();
  const auto view = As<IViewObject>(object_);
  Picture picture(300, 200);
  const RECTL bounds = {50, 40, 250, 100};
  EXPECT_EQ(S_OK, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, picture.Dc(), &bounds, nullptr,
                             nullptr, 0));
  EXPECT_EQ(0xFF0000u, picture.At(50, 40));
  EXPECT_EQ(0xFF0000u, picture.At(249, 99));
  EXPECT_EQ(kUntouched, picture.At(49, 40));
  EXPECT_EQ(kUntouched, picture.At(250, 99));
  EXPECT_EQ(kUntouched, picture.At(249, 100));
  EXPECT_EQ(200 * 60, picture.Count(0xFF0000));
}

// Drawing at the control's own size gives the very picture that its window shows.
TEST_F(Activation, DrawsWhatItsWindowShows) {
  Activate();
  PutText(object_.Get(), L"Caption", L"<b>Same</b> <c=0000FF>picture</c>");
  PutNumber(object_.Get(), L"BorderStyle", 1);
  Picture printed(200, 60), drawn(200, 60);
  SendMessageW(window_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(printed.Dc()), PRF_CLIENT);
  const RECTL bounds = {0, 0, 200, 60};
  EXPECT_EQ(S_OK, As<IViewObject>(object_)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, drawn.Dc(),
                                                 &bounds, nullptr, nullptr, 0));
  int differences = 0;
  for (int y = 0; y < 60; ++y)
    for (int x = 0; x < 200; ++x) differences += printed.At(x, y) != drawn.At(x, y);
  EXPECT_EQ(0, differences);
}

TEST_F(Activation, DrawsIntoAMetafile) {
  object_ = container_.Dispatch();
  MakeRed();
  const HDC metafile_dc = CreateEnhMetaFileW(nullptr, nullptr, nullptr, nullptr);
  const RECTL bounds = {0, 0, 121, 25}, window_bounds = {0, 0, 121, 25};
  EXPECT_EQ(S_OK, As<IViewObject>(object_)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, metafile_dc,
                                                 &bounds, &window_bounds, nullptr, 0));
  const HENHMETAFILE metafile = CloseEnhMetaFile(metafile_dc);
  Picture picture(200, 100);
  const RECT target = {0, 0, 200, 100};
  PlayEnhMetaFile(picture.Dc(), metafile, &target);
  DeleteEnhMetaFile(metafile);
  EXPECT_EQ(0xFF0000u, picture.At(100, 50));
}

TEST_F(Activation, DrawRefusesWhatItHasNot) {
  const auto view = As<IViewObject>(container_.Object());
  Picture picture(10, 10);
  const RECTL bounds = {0, 0, 10, 10};
  EXPECT_EQ(DV_E_DVASPECT, view->Draw(DVASPECT_ICON, -1, nullptr, nullptr, nullptr, picture.Dc(), &bounds,
                                      nullptr, nullptr, 0));
  EXPECT_EQ(E_INVALIDARG, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, nullptr, &bounds,
                                     nullptr, nullptr, 0));
  EXPECT_EQ(E_INVALIDARG, view->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, picture.Dc(), nullptr,
                                     nullptr, nullptr, 0));
}

TEST_F(Activation, IsOpaqueUnlessTransparent) {
  object_ = container_.Dispatch();
  const auto view = As<IViewObjectEx>(object_);
  DWORD status = 7;
  EXPECT_EQ(S_OK, view->GetViewStatus(&status));
  constexpr DWORD kTwoPasses = VIEWSTATUS_DVASPECTOPAQUE | VIEWSTATUS_DVASPECTTRANSPARENT;
  EXPECT_EQ(VIEWSTATUS_OPAQUE | kTwoPasses, status);
  PutNumber(object_.Get(), L"BackStyle", 0);
  EXPECT_EQ(S_OK, view->GetViewStatus(&status));
  EXPECT_EQ(kTwoPasses, status);
}

TEST_F(Activation, IsHitInsideItsBounds) {
  const auto view = As<IViewObjectEx>(container_.Object());
  const RECT bounds = {10, 10, 20, 20};
  DWORD hit = 7;
  EXPECT_EQ(S_OK, view->QueryHitPoint(DVASPECT_CONTENT, &bounds, POINT{15, 15}, 0, &hit));
  EXPECT_EQ(static_cast<DWORD>(HITRESULT_HIT), hit);
  EXPECT_EQ(S_OK, view->QueryHitPoint(DVASPECT_CONTENT, &bounds, POINT{20, 15}, 0, &hit));
  EXPECT_EQ(static_cast<DWORD>(HITRESULT_OUTSIDE), hit);
  const RECT across = {0, 0, 11, 11}, beside = {0, 0, 10, 10};
  EXPECT_EQ(S_OK, view->QueryHitRect(DVASPECT_CONTENT, &bounds, &across, 0, &hit));
  EXPECT_EQ(static_cast<DWORD>(HITRESULT_HIT), hit);
  EXPECT_EQ(S_OK, view->QueryHitRect(DVASPECT_CONTENT, &bounds, &beside, 0, &hit));
  EXPECT_EQ(static_cast<DWORD>(HITRESULT_OUTSIDE), hit);
}

// --- Mnemonics --------------------------------------------------------------------------------------------

TEST_F(Activation, TellsTheContainerOnlyOfAnotherAccessKey) {
  object_ = container_.Dispatch();
  const auto told = [this] { return container_.Count("OnControlInfoChanged"); };
  PutText(object_.Get(), L"Caption", L"no key");
  EXPECT_EQ(0, told());
  PutText(object_.Get(), L"Caption", L"&Total");
  EXPECT_EQ(1, told());
  PutText(object_.Get(), L"Caption", L"&Tax");
  EXPECT_EQ(1, told()) << "the same key";
  PutText(object_.Get(), L"Caption", L"&Sum");
  EXPECT_EQ(2, told());
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"UseMnemonic", Variant::Bool(false)));
  EXPECT_EQ(3, told());
  PutText(object_.Get(), L"Caption", L"&Other");
  EXPECT_EQ(3, told()) << "there is none while mnemonics are off";
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"UseMnemonic", Variant::Bool(true)));
  EXPECT_EQ(4, told());
}

// --- Loading ----------------------------------------------------------------------------------------------

TEST_F(Activation, EachPersistenceInterfaceStartsANewControl) {
  const auto ways = {+[](IUnknown* control) { return As<IPersistStreamInit>(control)->InitNew(); },
                     +[](IUnknown* control) { return As<IPersistPropertyBag>(control)->InitNew(); },
                     +[](IUnknown* control) { return As<IPersistStorage>(control)->InitNew(nullptr); }};
  for (const auto init_new : ways) {
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, init_new(control.Get()));
    const auto object = As<IDispatch>(control);
    EXPECT_EQ(1, GetNumber(object.Get(), L"BackStyle"));
    EXPECT_EQ(1, GetNumber(object.Get(), L"Appearance"));
    EXPECT_EQ(-1, GetNumber(object.Get(), L"WordWrap"));
  }
}

TEST_F(Activation, QuickActivationDoesItAllAtOnce) {
  Sink events, changes;
  const ComPtr<IUnknown> control = CreateControl();
  QACONTAINER container = {};
  container.cbSize = sizeof container;
  container.pClientSite = container_.ClientSite();
  container.pUnkEventSink = events.Object();
  ComPtr<IPropertyNotifySink> change_sink = As<IPropertyNotifySink>(changes.Object());
  container.pPropertyNotifySink = change_sink.Get();
  QACONTROL answer = {};
  answer.cbSize = sizeof answer;
  const auto quick = As<IQuickActivate>(control);
  ASSERT_EQ(S_OK, quick->QuickActivate(&container, &answer));
  EXPECT_EQ(139665u, answer.dwMiscStatus);
  EXPECT_NE(0u, answer.dwEventCookie);
  EXPECT_NE(0u, answer.dwPropNotifyCookie);
  PutText(As<IDispatch>(control).Get(), L"Caption", L"connected");
  EXPECT_EQ(Log{"Change"}, events.log);
  EXPECT_EQ(Log{"Changed(-518)"}, changes.log);
  SIZEL size = {4000, 500}, back = {};
  EXPECT_EQ(S_OK, quick->SetContentExtent(&size));
  EXPECT_EQ(S_OK, quick->GetContentExtent(&back));
  EXPECT_EQ(4000, back.cx);
  ComPtr<IOleClientSite> site;
  EXPECT_EQ(S_OK, As<IOleObject>(control)->GetClientSite(site.GetAddressOf()));
  EXPECT_EQ(container_.ClientSite(), site.Get());
  site.Reset();
  EXPECT_EQ(S_OK, As<IOleObject>(control)->SetClientSite(nullptr));
}

// --- Ambient properties -----------------------------------------------------------------------------------

ComPtr<IDispatch> AmbientFont() {
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = const_cast<LPOLESTR>(L"DejaVu Serif");
  description.cySize.int64 = 150000;
  description.sWeight = 700;
  ComPtr<IDispatch> font;
  EXPECT_EQ(S_OK, OleCreateFontIndirect(&description, IID_PPV_ARGS(font.GetAddressOf())));
  return font;
}

TEST(AmbientProperties, BecomeTheDefaultsOfANewControl) {
  Container container;
  container.ambients.back_color = 0x123456;
  container.ambients.fore_color = 0x654321;
  container.ambients.display_name = L"Label1";
  container.ambients.font = AmbientFont();
  container.Host();
  const auto object = container.Dispatch();
  EXPECT_EQ(0x123456, GetNumber(object.Get(), L"BackColor"));
  EXPECT_EQ(0x654321, GetNumber(object.Get(), L"ForeColor"));
  EXPECT_EQ(L"Label1", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(L"DejaVu Serif", GetText(object.Get(), L"FontName"));
  // The platform's font object answers with the size of the font that it has found.
  CY size = {};
  EXPECT_EQ(S_OK, As<IFont>(container.ambients.font)->get_Size(&size));
  EXPECT_EQ(std::lround(static_cast<double>(size.int64) / 10000), GetNumber(object.Get(), L"FontSize"));
  EXPECT_EQ(-1, GetNumber(object.Get(), L"FontBold"));
  EXPECT_EQ(static_cast<long>(0x80000010), GetNumber(object.Get(), L"EffectColor"));
}

TEST(AmbientProperties, TheRestOfANewControlIsTheSameEverywhere) {
  const std::pair<const wchar_t*, long> numbers[] = {
      {L"AutoSize", 0},       {L"BackStyle", 1},     {L"Appearance", 1},     {L"BorderStyle", 0},
      {L"FontStrikethru", 0}, {L"FontUnderline", 0}, {L"UseMnemonic", -1},   {L"TextEffect", 0},
      {L"Enabled", -1},       {L"WordWrap", -1},     {L"ImageAlignment", 0}, {L"ImageSize", 0},
      {L"MousePointer", 0}};
  for (const bool ambients : {true, false}) {
    Container container;
    container.ambients.font = AmbientFont();
    if (!ambients) container.missing = {SiteInterface::Ambients};
    container.Host();
    const auto object = container.Dispatch();
    for (const auto& [name, value] : numbers)
      EXPECT_EQ(value, GetNumber(object.Get(), name)) << std::string(name, name + wcslen(name));
    EXPECT_EQ(static_cast<long>(0x80000010), GetNumber(object.Get(), L"EffectColor"));
    for (const wchar_t* name : {L"ImageKey", L"ImageKeyhover", L"UniToolTipText"})
      EXPECT_EQ(L"", GetText(object.Get(), name));
    Variant icon;
    ASSERT_EQ(S_OK, GetByName(object.Get(), L"MouseIcon", icon));
    EXPECT_EQ(nullptr, icon.pdispVal);
  }
}

TEST(AmbientProperties, HaveDefaultsWhereTheHostHasNone) {
  Container container;
  container.missing = {SiteInterface::Ambients};
  container.Host();
  const auto object = container.Dispatch();
  EXPECT_EQ(static_cast<long>(0x8000000F), GetNumber(object.Get(), L"BackColor"));
  EXPECT_EQ(static_cast<long>(0x80000012), GetNumber(object.Get(), L"ForeColor"));
  EXPECT_EQ(L"", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(L"Tahoma", GetText(object.Get(), L"FontName"));
  Variant font;
  CY size = {};
  ASSERT_EQ(S_OK, GetByName(object.Get(), L"Font", font));
  EXPECT_EQ(S_OK, As<IFont>(font.pdispVal)->get_Size(&size));
  EXPECT_EQ(82500, size.int64);
  PutText(object.Get(), L"Caption", L"\x0391");
  EXPECT_EQ(L"\x0391", GetText(object.Get(), L"Caption")) << "run mode";
}

class ChangingAmbients : public Activation {
 protected:
  void Tell(DISPID id) { EXPECT_EQ(S_OK, As<IOleControl>(object_)->OnAmbientPropertyChange(id)); }
};

TEST_F(ChangingAmbients, ADesignerTakesTheMouseOfADisabledControlAndGivesItBack) {
  for (const DISPID id : {DISPID{DISPID_AMBIENT_USERMODE}, DISPID{DISPID_UNKNOWN}}) {
    container_.ambients.user_mode = true;
    ASSERT_EQ(S_OK, container_.Activate());
    object_ = container_.Dispatch();
    window_ = container_.ControlWindow();
    Tell(id);
    EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Enabled", Variant::Bool(false)));
    EXPECT_FALSE(IsWindowEnabled(window_));
    container_.ambients.user_mode = false;
    EXPECT_FALSE(IsWindowEnabled(window_)) << "nobody has said so yet";
    Tell(id);
    EXPECT_TRUE(IsWindowEnabled(window_));
    container_.ambients.user_mode = true;
    Tell(DISPID_AMBIENT_BACKCOLOR);
    EXPECT_TRUE(IsWindowEnabled(window_)) << "that was another property";
    Tell(id);
    EXPECT_FALSE(IsWindowEnabled(window_));
    EXPECT_EQ(S_OK, PutByName(object_.Get(), L"Enabled", Variant::Bool(true)));
  }
}

TEST_F(ChangingAmbients, TheDesignersOutlineComesAndGoes) {
  Activate();
  PutNumber(object_.Get(), L"BackStyle", 0);
  PutText(object_.Get(), L"Caption", L"");
  const auto print = [&] {
    auto picture = std::make_unique<Picture>(200, 60);
    SendMessageW(window_, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(picture->Dc()), PRF_CLIENT);
    return picture;
  };
  const auto differ = [](const Picture& a, const Picture& b) {
    int count = 0;
    for (int x = 0; x < 200; ++x) count += a.At(x, 0) != b.At(x, 0);
    return count;
  };
  const auto run = print();
  container_.ambients.user_mode = false;
  Tell(DISPID_AMBIENT_USERMODE);
  EXPECT_EQ(100, differ(*run, *print())) << "every other pixel of the edge";
  container_.ambients.user_mode = true;
  Tell(DISPID_AMBIENT_USERMODE);
  EXPECT_EQ(0, differ(*run, *print()));
}

TEST_F(ChangingAmbients, OthersAreTheNextNewControlsDefaults) {
  Activate();
  container_.ambients.back_color = 0x112233;
  container_.ambients.fore_color = 0x332211;
  container_.ambients.display_name = L"later";
  container_.ambients.font = AmbientFont();
  Tell(DISPID_UNKNOWN);
  EXPECT_EQ(static_cast<long>(0x8000000F), GetNumber(object_.Get(), L"BackColor"));
  EXPECT_EQ(L"Tahoma", GetText(object_.Get(), L"FontName"));
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(container_.Object())->InitNew());
  EXPECT_EQ(0x112233, GetNumber(object_.Get(), L"BackColor"));
  EXPECT_EQ(0x332211, GetNumber(object_.Get(), L"ForeColor"));
  EXPECT_EQ(L"later", GetText(object_.Get(), L"Caption"));
  EXPECT_EQ(L"DejaVu Serif", GetText(object_.Get(), L"FontName"));
}

TEST(AmbientProperties, ADesignerGetsAPlaceholderForUnicodeTexts) {
  Container container;
  container.ambients.user_mode = false;
  container.Host();
  const auto object = container.Dispatch();
  PutText(object.Get(), L"Caption", L"\x4F60\x597D");
  PutText(object.Get(), L"UniToolTipText", L"\x0391");
  EXPECT_EQ(L"(Unicode Text)", GetText(object.Get(), L"Caption"));
  EXPECT_EQ(L"(Unicode Text)", GetText(object.Get(), L"UniToolTipText"));
  container.ambients.user_mode = true;
  EXPECT_EQ(L"\x4F60\x597D", GetText(object.Get(), L"Caption"));
  PutText(object.Get(), L"Caption", L"plain");
  container.ambients.user_mode = false;
  EXPECT_EQ(L"plain", GetText(object.Get(), L"Caption"));
}

}  // namespace
}  // namespace ocx_test
