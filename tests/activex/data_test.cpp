// The control's picture as data.
#include <set>

#include "activex/container.h"

namespace ocx_test {
namespace {

FORMATETC Format(CLIPFORMAT format, DWORD medium) { return {format, nullptr, DVASPECT_CONTENT, -1, medium}; }

class Data : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = container_.Dispatch();
    data_ = As<IDataObject>(object_);
    ASSERT_TRUE(data_);
    ASSERT_EQ(S_OK, container_.Activate());
    PutNumber(object_.Get(), L"BackColor", 0x0000FF);  // red in the low byte
    PutText(object_.Get(), L"Caption", L"");
  }
  void TearDown() override {
    data_.Reset();
    object_.Reset();
  }

  Container container_;
  ComPtr<IDispatch> object_;
  ComPtr<IDataObject> data_;
};

// Plays a picture on a white surface of 200 by 60 and gives the pixel at a place.
template <typename Play>
COLORREF PixelOf(Play&& play, int x, int y) {
  const HDC screen = GetDC(nullptr);
  const HDC dc = CreateCompatibleDC(screen);
  const HBITMAP bitmap = CreateCompatibleBitmap(screen, 200, 60);
  const HGDIOBJ old = SelectObject(dc, bitmap);
  const RECT all = {0, 0, 200, 60};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  play(dc, all);
  const COLORREF pixel = GetPixel(dc, x, y);
  SelectObject(dc, old);
  DeleteObject(bitmap);
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
  return pixel;
}

TEST_F(Data, GivesAMetafileWithItsSize) {
  FORMATETC format = Format(CF_METAFILEPICT, TYMED_MFPICT);
  STGMEDIUM medium = {};
  ASSERT_EQ(S_OK, data_->GetData(&format, &medium));
  ASSERT_EQ(static_cast<DWORD>(TYMED_MFPICT), medium.tymed);
  const auto* picture = static_cast<const METAFILEPICT*>(GlobalLock(medium.hMetaFilePict));
  EXPECT_EQ(MM_ANISOTROPIC, picture->mm);
  SIZEL size = {};
  EXPECT_EQ(S_OK, As<IOleObject>(object_)->GetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(size.cx, picture->xExt);
  EXPECT_EQ(size.cy, picture->yExt);
  const auto play = [&](HDC dc, const RECT& all) {
    SetMapMode(dc, MM_ANISOTROPIC);
    SetViewportExtEx(dc, all.right, all.bottom, nullptr);
    PlayMetaFile(dc, picture->hMF);
  };
  EXPECT_EQ(0x0000FFu, PixelOf(play, 3, 3));
  EXPECT_EQ(0x0000FFu, PixelOf(play, 196, 56));
  GlobalUnlock(medium.hMetaFilePict);
  ReleaseStgMedium(&medium);
}

TEST_F(Data, IsTheSameForEveryTargetDevice) {
  DVTARGETDEVICE device = {};
  device.tdSize = sizeof device;
  FORMATETC format = Format(CF_METAFILEPICT, TYMED_MFPICT), canonical = {};
  format.ptd = &device;
  EXPECT_EQ(S_OK, data_->QueryGetData(&format));
  STGMEDIUM medium = {};
  EXPECT_EQ(S_OK, data_->GetData(&format, &medium));
  EXPECT_EQ(static_cast<DWORD>(TYMED_MFPICT), medium.tymed);
  ReleaseStgMedium(&medium);
  EXPECT_EQ(DATA_S_SAMEFORMATETC, data_->GetCanonicalFormatEtc(&format, &canonical));
  EXPECT_EQ(CF_METAFILEPICT, canonical.cfFormat);
  EXPECT_EQ(nullptr, canonical.ptd) << "one picture serves them all";
}

TEST_F(Data, GivesAnEnhancedMetafile) {
  FORMATETC format = Format(CF_ENHMETAFILE, TYMED_ENHMF | TYMED_MFPICT);
  STGMEDIUM medium = {};
  ASSERT_EQ(S_OK, data_->GetData(&format, &medium));
  ASSERT_EQ(static_cast<DWORD>(TYMED_ENHMF), medium.tymed);
  const auto play = [&](HDC dc, const RECT& all) { PlayEnhMetaFile(dc, medium.hEnhMetaFile, &all); };
  EXPECT_EQ(0x0000FFu, PixelOf(play, 4, 4));
  EXPECT_EQ(0x0000FFu, PixelOf(play, 195, 55));
  ReleaseStgMedium(&medium);
}

TEST_F(Data, GivesABitmapOfItsSizeBottomUp) {
  PutNumber(object_.Get(), L"BorderStyle", 1);
  PutNumber(object_.Get(), L"Appearance", 0);
  PutNumber(object_.Get(), L"BackColor", 0x0000FF);
  FORMATETC format = Format(CF_DIB, TYMED_HGLOBAL);
  STGMEDIUM medium = {};
  ASSERT_EQ(S_OK, data_->GetData(&format, &medium));
  ASSERT_EQ(static_cast<DWORD>(TYMED_HGLOBAL), medium.tymed);
  const auto* header = static_cast<const BITMAPINFOHEADER*>(GlobalLock(medium.hGlobal));
  EXPECT_EQ(sizeof(BITMAPINFOHEADER), header->biSize);
  EXPECT_EQ(200, header->biWidth);
  EXPECT_EQ(60, header->biHeight);
  EXPECT_EQ(24, header->biBitCount);
  constexpr std::size_t kRow = 600;
  ASSERT_LE(sizeof *header + kRow * 60, GlobalSize(medium.hGlobal));
  const auto* bits = reinterpret_cast<const BYTE*>(header + 1);
  EXPECT_EQ(0, bits[0] | bits[1] | bits[2]) << "the black border";
  const BYTE* inside = bits + kRow * 30 + 300;
  EXPECT_EQ(0, inside[0]);
  EXPECT_EQ(0, inside[1]);
  EXPECT_EQ(255, inside[2]);
  GlobalUnlock(medium.hGlobal);
  ReleaseStgMedium(&medium);
}

TEST_F(Data, ListsWhatItGives) {
  ComPtr<IEnumFORMATETC> formats;
  ASSERT_EQ(S_OK, data_->EnumFormatEtc(DATADIR_GET, formats.GetAddressOf()));
  std::set<CLIPFORMAT> found;
  FORMATETC format = {};
  while (formats->Next(1, &format, nullptr) == S_OK) {
    found.insert(format.cfFormat);
    EXPECT_EQ(S_OK, data_->QueryGetData(&format));
  }
  EXPECT_EQ((std::set<CLIPFORMAT>{CF_METAFILEPICT, CF_ENHMETAFILE, CF_DIB}), found);
  formats.Reset();
  EXPECT_EQ(E_NOTIMPL, data_->EnumFormatEtc(DATADIR_SET, formats.GetAddressOf()));
}

TEST_F(Data, RefusesWhatItHasNot) {
  FORMATETC format = Format(CF_UNICODETEXT, TYMED_HGLOBAL);
  EXPECT_EQ(DV_E_FORMATETC, data_->QueryGetData(&format));
  format = Format(CF_DIB, TYMED_ISTREAM);
  EXPECT_EQ(DV_E_TYMED, data_->QueryGetData(&format));
  format = Format(CF_DIB, TYMED_HGLOBAL);
  format.lindex = 2;
  EXPECT_EQ(DV_E_LINDEX, data_->QueryGetData(&format));
  format.lindex = -1;
  format.dwAspect = DVASPECT_ICON;
  STGMEDIUM medium = {};
  EXPECT_EQ(DV_E_DVASPECT, data_->GetData(&format, &medium));
  EXPECT_EQ(static_cast<DWORD>(TYMED_NULL), medium.tymed);
  EXPECT_EQ(E_NOTIMPL, data_->SetData(&format, &medium, FALSE));
}

// Hears of changes of data.
class DataSink final : public IAdviseSink {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IAdviseSink) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  void STDMETHODCALLTYPE OnDataChange(FORMATETC* format, STGMEDIUM*) override {
    EXPECT_EQ(CF_DIB, format->cfFormat);
    ++changes;
  }
  void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) override {}
  void STDMETHODCALLTYPE OnRename(IMoniker*) override {}
  void STDMETHODCALLTYPE OnSave() override {}
  void STDMETHODCALLTYPE OnClose() override {}
  ULONG references = 0;
  int changes = 0;
};

TEST_F(Data, TellsSinksOfAnotherLookUntilTheyLeave) {
  DataSink sink;
  FORMATETC format = Format(CF_DIB, TYMED_HGLOBAL);
  DWORD cookie = 0;
  ASSERT_EQ(S_OK, data_->DAdvise(&format, ADVF_NODATA, &sink, &cookie));
  PutText(object_.Get(), L"Caption", L"other");
  EXPECT_EQ(1, sink.changes);
  EXPECT_EQ(S_OK, data_->DUnadvise(cookie));
  PutText(object_.Get(), L"Caption", L"again");
  EXPECT_EQ(1, sink.changes);
  EXPECT_EQ(0u, sink.references);
  EXPECT_EQ(OLE_E_NOCONNECTION, data_->DUnadvise(cookie));
}

}  // namespace
}  // namespace ocx_test
