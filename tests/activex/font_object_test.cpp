// What a host does to the font object that it was handed, as designers do from their property windows.
#include <memory>
#include <string>

#include "activex/container.h"
#include "activex/listener.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

class FontObject : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = container_.Dispatch();
    PutText(object_.Get(), L"Caption", L"MMMM");
    ASSERT_EQ(S_OK, container_.Activate());
    UpdateWindow(container_.ControlWindow());
    font_ = TheFont();
    ASSERT_TRUE(font_);
    Clean();
    ASSERT_EQ(S_OK, changes_.ConnectChanges(object_.Get()));
  }
  void TearDown() override { changes_.Disconnect(); }

  ComPtr<IFont> TheFont() {
    Variant font;
    EXPECT_EQ(S_OK, GetByName(object_.Get(), L"Font", font));
    return As<IFont>(font.pdispVal);
  }
  void Clean() {
    ComPtr<IStream> stream;
    ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()));
    ASSERT_EQ(S_OK, As<IPersistStreamInit>(object_)->Save(stream.Get(), TRUE));
    ASSERT_FALSE(IsDirty());
  }
  bool IsDirty() const { return As<IPersistStreamInit>(object_)->IsDirty() == S_OK; }
  int DarkPixels() {
    RECT client = {};
    const HWND window = container_.ControlWindow();
    GetClientRect(window, &client);
    const HDC dc = GetDC(window);
    int dark = 0;
    for (int y = 0; y < client.bottom; ++y)
      for (int x = 0; x < client.right; ++x) dark += (GetPixel(dc, x, y) & 0xFF) < 0x80;
    ReleaseDC(window, dc);
    return dark;
  }

  Container container_;
  ComPtr<IDispatch> object_;
  ComPtr<IFont> font_;
  Sink changes_;
};

struct Member {
  const char* name;
  HRESULT (*set)(IFont& font);
};
const Member kMembers[] = {
    {"Bold", [](IFont& font) { return font.put_Bold(TRUE); }},
    {"Italic", [](IFont& font) { return font.put_Italic(TRUE); }},
    {"Underline", [](IFont& font) { return font.put_Underline(TRUE); }},
    {"Strikethrough", [](IFont& font) { return font.put_Strikethrough(TRUE); }},
    {"Size",
     [](IFont& font) {
       return font.put_Size(CY{{200000, 0}});
     }},
    {"Weight", [](IFont& font) { return font.put_Weight(300); }},
    {"Charset", [](IFont& font) { return font.put_Charset(SYMBOL_CHARSET); }},
    {"Name",
     [](IFont& font) {
       const BSTR name = SysAllocString(L"DejaVu Serif");
       const HRESULT result = font.put_Name(name);
       SysFreeString(name);
       return result;
     }},
};

TEST_F(FontObject, EachMemberMakesTheControlDirtyAndAnnouncesTheFont) {
  Listener listener;
  ASSERT_EQ(S_OK, As<IViewObject>(object_)->SetAdvise(DVASPECT_CONTENT, 0, &listener));
  for (const Member& member : kMembers) {
    SCOPED_TRACE(member.name);
    Clean();
    changes_.log.clear();
    listener.log.clear();
    EXPECT_EQ(S_OK, member.set(*font_.Get()));
    EXPECT_TRUE(IsDirty());
    EXPECT_EQ(Log{"Changed(-512)"}, changes_.log);
    EXPECT_EQ(Log{"OnViewChange"}, listener.log);
  }
  As<IViewObject>(object_)->SetAdvise(0, 0, nullptr);
}

TEST_F(FontObject, WhatIsSetIsPaintedAtOnce) {
  const int before = DarkPixels();
  ASSERT_GT(before, 10);
  EXPECT_EQ(S_OK, font_->put_Size(CY{{300000, 0}}));
  EXPECT_GT(DarkPixels(), 2 * before);
}

TEST_F(FontObject, TheViewThatIsToldOfIsTheNewOne) {
  const auto draw = [&] {
    const HDC screen = GetDC(nullptr), dc = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 60);
    const HGDIOBJ old = SelectObject(dc, bitmap);
    const RECTL bounds = {0, 0, 200, 60};
    EXPECT_EQ(S_OK, As<IViewObject>(object_)->Draw(DVASPECT_CONTENT, -1, nullptr, nullptr, nullptr, dc,
                                                   &bounds, nullptr, nullptr, 0));
    int dark = 0;
    for (int y = 0; y < 60; ++y)
      for (int x = 0; x < 200; ++x) dark += (GetPixel(dc, x, y) & 0xFF) < 0x80;
    SelectObject(dc, old);
    DeleteObject(bitmap);
    DeleteDC(dc);
    ReleaseDC(nullptr, screen);
    return dark;
  };
  As<IOleInPlaceObject>(object_)->InPlaceDeactivate();
  const int before = draw();
  int told = 0;
  Listener listener;
  ASSERT_EQ(S_OK, As<IViewObject>(object_)->SetAdvise(DVASPECT_CONTENT, 0, &listener));
  listener.on_call = [&](const std::string&) { told = draw(); };
  EXPECT_EQ(S_OK, font_->put_Size(CY{{300000, 0}}));
  EXPECT_GT(told, 2 * before);
  As<IViewObject>(object_)->SetAdvise(0, 0, nullptr);
}

TEST_F(FontObject, AMemberThatStaysAsItIsChangesNothing) {
  BOOL bold = TRUE;
  EXPECT_EQ(S_OK, font_->get_Bold(&bold));
  EXPECT_EQ(S_OK, font_->put_Bold(bold));
  EXPECT_FALSE(IsDirty());
  EXPECT_EQ(Log{}, changes_.log);
}

TEST_F(FontObject, TheControlsOwnSettersAnnounceOnce) {
  EXPECT_EQ(S_OK, PutByName(object_.Get(), L"FontBold", Variant::Bool(true)));
  EXPECT_EQ(Log{"Changed(-512)"}, changes_.log);
  // The object that was handed out before is the control's no more.
  changes_.log.clear();
  Clean();
  EXPECT_EQ(S_OK, font_->put_Italic(TRUE));
  EXPECT_EQ(Log{}, changes_.log);
  EXPECT_FALSE(IsDirty());
}

TEST_F(FontObject, OutlivesTheControl) {
  changes_.Disconnect();
  container_.Close();
  object_.Reset();
  EXPECT_EQ(S_OK, font_->put_Bold(TRUE));
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow()) << "the font is the platform's";
}

TEST_F(FontObject, AnythingMayHappenInsideTheAnnouncement) {
  using Act = void (*)(Container & container, ComPtr<IFont> & font);
  const Act acts[] = {
      [](Container& c, ComPtr<IFont>&) { c.Close(); },
      [](Container& c, ComPtr<IFont>&) { c.Drop(); },
      [](Container&, ComPtr<IFont>& font) { font->put_Italic(TRUE); },
      [](Container& c, ComPtr<IFont>&) { PutNumber(c.Dispatch().Get(), L"FontSize", 20); },
      [](Container& c, ComPtr<IFont>&) { As<IOleObject>(c.Object())->SetClientSite(nullptr); },
      [](Container&, ComPtr<IFont>& font) { font.Reset(); },
  };
  for (const Act act : acts) {
    changes_.Disconnect();
    if (container_.Object()) container_.Close();
    container_.Host();
    object_ = container_.Dispatch();
    ASSERT_EQ(S_OK, container_.Activate());
    font_ = TheFont();
    ASSERT_EQ(S_OK, changes_.ConnectChanges(object_.Get()));
    bool once = true;
    changes_.on_event = [&](const std::string&) {
      if (!once) return;
      once = false;
      changes_.Disconnect();
      if (act == acts[0] || act == acts[1]) object_.Reset();
      act(container_, font_);
    };
    const ComPtr<IFont> font = font_;
    font->put_Bold(TRUE);
    EXPECT_FALSE(once) << "it was never announced";
  }
}

TEST_F(FontObject, ASavedFormsFontObjectIsHeardToo) {
  class FontBag final : public IPropertyBag {
   public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Read(LPCOLESTR name, VARIANT* value, IErrorLog*) override {
      if (wcscmp(name, L"Font") != 0) return E_INVALIDARG;
      VariantClear(value);
      value->vt = VT_DISPATCH;
      value->pdispVal = ComPtr<IDispatch>(font).Detach();
      return S_OK;
    }
    HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return S_OK; }
    ComPtr<IDispatch> font;
  } bag;
  FONTDESC description = {};
  description.cbSizeofstruct = sizeof description;
  description.lpstrName = const_cast<LPOLESTR>(L"DejaVu Sans");
  description.cySize.int64 = 120000;
  description.sWeight = 400;
  ASSERT_EQ(S_OK, OleCreateFontIndirect(&description, IID_PPV_ARGS(bag.font.GetAddressOf())));
  ASSERT_EQ(S_OK, As<IPersistPropertyBag>(object_)->Load(&bag, nullptr));
  changes_.log.clear();
  ASSERT_FALSE(IsDirty());
  EXPECT_EQ(S_OK, As<IFont>(bag.font)->put_Bold(TRUE));
  EXPECT_TRUE(IsDirty());
  EXPECT_EQ(Log{"Changed(-512)"}, changes_.log);
  EXPECT_EQ(-1, GetNumber(object_.Get(), L"FontBold"));
}

}  // namespace
}  // namespace ocx_test
