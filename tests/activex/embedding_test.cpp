// The control as an object in a document: the system's embedding calls, its default handler, and rich edit.
#include <richedit.h>
// After richedit.h, whose types it uses.
#include <richole.h>

#include <algorithm>
#include <bit>
#include <string>
#include <string_view>

#include "activex/container.h"
#include "activex/picture.h"

namespace ocx_test {
namespace {

constexpr DWORD kNewStorage = STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE;

ComPtr<IStorage> NewStorage() {
  ComPtr<IStorage> storage;
  EXPECT_EQ(S_OK, StgCreateDocfile(nullptr, kNewStorage | STGM_DELETEONRELEASE, 0, storage.GetAddressOf()));
  return storage;
}

class Embedding : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, Server::Get().Register()); }
  void TearDown() override {
    EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
    Server::Get().Unregister();
  }
};

void MakeGreen(IUnknown* object) {
  const auto control = As<IDispatch>(object);
  ASSERT_TRUE(control);
  PutText(control.Get(), L"Caption", L"<b>embedded</b>");
  PutNumber(control.Get(), L"BackColor", 0x00FF00);
}

// How much of a drawing of the object is green, by the system's own call.
int GreenOf(IUnknown* object) {
  Picture picture(200, 60);
  const RECT bounds = {10, 10, 190, 50};
  EXPECT_EQ(S_OK, OleDraw(object, DVASPECT_CONTENT, picture.Dc(), &bounds));
  EXPECT_EQ(kUntouched, picture.At(9, 10));
  EXPECT_EQ(kUntouched, picture.At(190, 49));
  return picture.Count(0x00FF00);
}

// The same of the picture that it gives to others.
int GreenOfData(IUnknown* object) {
  FORMATETC format = {CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF};
  STGMEDIUM medium = {};
  EXPECT_EQ(S_OK, As<IDataObject>(object)->GetData(&format, &medium));
  Picture picture(200, 60);
  const RECT bounds = {10, 10, 190, 50};
  EXPECT_TRUE(PlayEnhMetaFile(picture.Dc(), medium.hEnhMetaFile, &bounds));
  ReleaseStgMedium(&medium);
  return picture.Count(0x00FF00);
}

constexpr int kMostlyGreen = 180 * 40 / 2;

void Close(const ComPtr<IOleObject>& object) {
  EXPECT_EQ(S_OK, object->Close(OLECLOSE_NOSAVE));
  EXPECT_EQ(S_OK, object->SetClientSite(nullptr));
}

TEST_F(Embedding, CreatesDrawsSavesLoadsAndCloses) {
  Container container;
  const ComPtr<IStorage> storage = NewStorage();
  {
    ComPtr<IOleObject> object;
    ASSERT_EQ(S_OK, OleCreate(kClassId, __uuidof(IOleObject), OLERENDER_NONE, nullptr, container.ClientSite(),
                              storage.Get(), reinterpret_cast<void**>(object.GetAddressOf())));
    MakeGreen(object.Get());
    EXPECT_GT(GreenOf(object.Get()), kMostlyGreen);
    const auto persist = As<IPersistStorage>(object);
    EXPECT_EQ(S_OK, OleSave(persist.Get(), storage.Get(), TRUE));
    EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
    EXPECT_EQ(S_FALSE, persist->IsDirty());
    Close(object);
  }
  ComPtr<IOleObject> object;
  ASSERT_EQ(S_OK, OleLoad(storage.Get(), __uuidof(IOleObject), container.ClientSite(),
                          reinterpret_cast<void**>(object.GetAddressOf())));
  EXPECT_EQ(L"<b>embedded</b>", GetText(As<IDispatch>(object).Get(), L"Caption"));
  EXPECT_GT(GreenOf(object.Get()), kMostlyGreen);
  Close(object);
}

// The handler makes the control itself, out of its class object, and stands between it and the container.
ComPtr<IOleObject> NewHandler() {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(S_OK, Server::Get().GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  ComPtr<IOleObject> handler;
  EXPECT_EQ(S_OK, OleCreateEmbeddingHelper(kClassId, nullptr, EMBDHLP_INPROC_SERVER | EMBDHLP_CREATENOW,
                                           factory.Get(), __uuidof(IOleObject),
                                           reinterpret_cast<void**>(handler.GetAddressOf())));
  return handler;
}

TEST_F(Embedding, RunsInsideTheDefaultHandler) {
  Container container;
  const ComPtr<IOleObject> handler = NewHandler();
  ASSERT_TRUE(handler);
  const ComPtr<IStorage> storage = NewStorage();
  EXPECT_EQ(S_OK, handler->SetClientSite(container.ClientSite()));
  EXPECT_EQ(S_OK, As<IPersistStorage>(handler)->InitNew(storage.Get()));
  EXPECT_EQ(S_OK, OleRun(handler.Get()));
  EXPECT_TRUE(OleIsRunning(handler.Get()));
  SIZEL size = {};
  EXPECT_EQ(S_OK, handler->GetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(3201, size.cx);
  CLSID class_id = {};
  EXPECT_EQ(S_OK, handler->GetUserClassID(&class_id));
  EXPECT_EQ(kClassId, class_id);
  FORMATETC format = {CF_ENHMETAFILE, nullptr, DVASPECT_CONTENT, -1, TYMED_ENHMF};
  STGMEDIUM medium = {};
  EXPECT_EQ(S_OK, As<IDataObject>(handler)->GetData(&format, &medium));
  EXPECT_TRUE(medium.hEnhMetaFile);
  ReleaseStgMedium(&medium);
  EXPECT_EQ(S_OK, OleSave(As<IPersistStorage>(handler).Get(), storage.Get(), TRUE));
  EXPECT_EQ(S_OK, As<IPersistStorage>(handler)->SaveCompleted(nullptr));
  Close(handler);
}

TEST_F(Embedding, IsLoadedAgainByTheDefaultHandler) {
  Container container;
  const ComPtr<IStorage> storage = NewStorage();
  {
    const ComPtr<IOleObject> handler = NewHandler();
    ASSERT_TRUE(handler);
    EXPECT_EQ(S_OK, handler->SetClientSite(container.ClientSite()));
    const auto persist = As<IPersistStorage>(handler);
    EXPECT_EQ(S_OK, persist->InitNew(storage.Get()));
    EXPECT_EQ(S_OK, OleRun(handler.Get()));
    MakeGreen(handler.Get());
    SIZEL size = {6000, 2000};
    EXPECT_EQ(S_OK, handler->SetExtent(DVASPECT_CONTENT, &size));
    EXPECT_EQ(S_OK, OleSave(persist.Get(), storage.Get(), TRUE));
    EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
    Close(handler);
  }
  const ComPtr<IOleObject> handler = NewHandler();
  ASSERT_TRUE(handler);
  EXPECT_EQ(S_OK, handler->SetClientSite(container.ClientSite()));
  EXPECT_EQ(S_OK, As<IPersistStorage>(handler)->Load(storage.Get()));
  EXPECT_EQ(S_OK, OleRun(handler.Get()));
  EXPECT_EQ(L"<b>embedded</b>", GetText(As<IDispatch>(handler).Get(), L"Caption"));
  SIZEL size = {};
  EXPECT_EQ(S_OK, handler->GetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(6000, size.cx);
  EXPECT_EQ(2000, size.cy);
  // Its view is that of its cache, which is empty; what it draws comes as data.
  EXPECT_GT(GreenOfData(handler.Get()), kMostlyGreen);
  Close(handler);
}

// --- Rich edit ---------------------------------------------------------------------------------------------

// Its window class comes with the library.
class RichEdit : public Embedding {
 protected:
  void SetUp() override {
    Embedding::SetUp();
    if (!LoadLibraryW(L"riched20.dll")) GTEST_SKIP() << "the system has no riched20.dll";
    window_ = CreateWindowExW(0, L"RichEdit20W", L"", WS_POPUP | WS_VISIBLE | ES_MULTILINE, 50, 50, 300, 200,
                              nullptr, nullptr, nullptr, nullptr);
    ASSERT_TRUE(window_);
    SendMessageW(window_, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(edit_.GetAddressOf()));
    ASSERT_TRUE(edit_);
  }
  void TearDown() override {
    edit_.Reset();
    if (window_) DestroyWindow(window_);
    PumpMessages();
    Embedding::TearDown();
  }

  ComPtr<IOleObject> Insert() {
    ComPtr<IOleObject> object;
    EXPECT_EQ(S_OK, edit_->GetClientSite(site_.ReleaseAndGetAddressOf()));
    storage_ = NewStorage();
    EXPECT_EQ(S_OK, OleCreate(kClassId, __uuidof(IOleObject), OLERENDER_NONE, nullptr, site_.Get(),
                              storage_.Get(), reinterpret_cast<void**>(object.GetAddressOf())));
    if (!object) return nullptr;
    MakeGreen(object.Get());
    REOBJECT place = {};
    place.cbStruct = sizeof place;
    place.cp = REO_CP_SELECTION;
    place.clsid = kClassId;
    place.poleobj = object.Get();
    place.pstg = storage_.Get();
    place.polesite = site_.Get();
    place.dvaspect = DVASPECT_CONTENT;
    place.sizel = {3000, 1500};
    EXPECT_EQ(S_OK, edit_->InsertObject(&place));
    return object;
  }

  HWND window_ = nullptr;
  ComPtr<IRichEditOle> edit_;
  ComPtr<IOleClientSite> site_;
  ComPtr<IStorage> storage_;
};

TEST_F(RichEdit, TakesAndGivesBackAndDrawsTheControl) {
  ComPtr<IOleObject> object = Insert();
  ASSERT_TRUE(object);
  EXPECT_EQ(1, edit_->GetObjectCount());
  REOBJECT place = {};
  place.cbStruct = sizeof place;
  ASSERT_EQ(S_OK, edit_->GetObjectW(0, &place, REO_GETOBJ_POLEOBJ));
  EXPECT_EQ(kClassId, place.clsid);
  const auto given = As<IDispatch>(place.poleobj);
  EXPECT_EQ(L"<b>embedded</b>", GetText(given.Get(), L"Caption"));
  place.poleobj->Release();
  UpdateWindow(window_);
  PumpMessages();
  const HDC dc = GetDC(window_);
  int green = 0;
  for (int y = 0; y < 100; ++y)
    for (int x = 0; x < 150; ++x) green += GetPixel(dc, x, y) == 0x00FF00;
  ReleaseDC(window_, dc);
  EXPECT_GT(green, 1000);
  EXPECT_EQ(S_OK, OleSave(As<IPersistStorage>(object).Get(), storage_.Get(), TRUE));
  EXPECT_EQ(S_OK, As<IPersistStorage>(object)->SaveCompleted(nullptr));
  ComPtr<IOleObject> loaded;
  ASSERT_EQ(S_OK, OleLoad(storage_.Get(), __uuidof(IOleObject), nullptr,
                          reinterpret_cast<void**>(loaded.GetAddressOf())));
  EXPECT_EQ(L"<b>embedded</b>", GetText(As<IDispatch>(loaded).Get(), L"Caption"));
}

DWORD CALLBACK Write(DWORD_PTR text, BYTE* bytes, LONG count, LONG* done) {
  std::bit_cast<std::string*>(text)->append(reinterpret_cast<char*>(bytes), static_cast<std::size_t>(count));
  *done = count;
  return 0;
}

DWORD CALLBACK Read(DWORD_PTR text, BYTE* bytes, LONG count, LONG* done) {
  std::string_view& left = *std::bit_cast<std::string_view*>(text);
  const std::string_view part = left.substr(0, static_cast<std::size_t>(count));
  std::copy(part.begin(), part.end(), bytes);
  left.remove_prefix(part.size());
  *done = static_cast<LONG>(part.size());
  return 0;
}

// As rich text a document goes to files and other programs: at least the control's picture goes along.
TEST_F(RichEdit, KeepsTheControlsPictureInAStreamOfRichText) {
  ASSERT_TRUE(Insert());
  std::string text;
  EDITSTREAM out = {reinterpret_cast<DWORD_PTR>(&text), 0, &Write};
  SendMessageW(window_, EM_STREAMOUT, SF_RTF, reinterpret_cast<LPARAM>(&out));
  EXPECT_EQ(0u, out.dwError);
  ASSERT_NE(std::string::npos, text.find("\\pict")) << text.substr(0, 300);
  const HWND other = CreateWindowExW(0, L"RichEdit20W", L"", WS_POPUP | ES_MULTILINE, 50, 50, 300, 200,
                                     nullptr, nullptr, nullptr, nullptr);
  std::string_view left = text;
  EDITSTREAM in = {reinterpret_cast<DWORD_PTR>(&left), 0, &Read};
  SendMessageW(other, EM_STREAMIN, SF_RTF, reinterpret_cast<LPARAM>(&in));
  EXPECT_EQ(0u, in.dwError);
  ComPtr<IRichEditOle> read;
  SendMessageW(other, EM_GETOLEINTERFACE, 0, reinterpret_cast<LPARAM>(read.GetAddressOf()));
  EXPECT_EQ(1, read->GetObjectCount());
  REOBJECT place = {};
  place.cbStruct = sizeof place;
  ASSERT_EQ(S_OK, read->GetObjectW(0, &place, REO_GETOBJ_POLEOBJ));
  EXPECT_GT(GreenOfData(place.poleobj), kMostlyGreen);
  place.poleobj->Release();
  read.Reset();
  DestroyWindow(other);
}

}  // namespace
}  // namespace ocx_test
