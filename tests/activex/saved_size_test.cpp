// The size of a control in what it saves to a stream and a storage: with a container and without, active and
// not, and whatever a file says.
#include <algorithm>
#include <climits>
#include <cstring>

#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

SIZEL ExtentOf(IUnknown* object) {
  SIZEL size = {};
  EXPECT_EQ(S_OK, As<IOleObject>(object)->GetExtent(DVASPECT_CONTENT, &size));
  return size;
}

void ExpectExtent(LONG width, LONG height, IUnknown* object) {
  const SIZEL size = ExtentOf(object);
  EXPECT_EQ(width, size.cx);
  EXPECT_EQ(height, size.cy);
}

void SetExtent(IUnknown* object, LONG width, LONG height) {
  SIZEL size = {width, height};
  EXPECT_EQ(S_OK, As<IOleObject>(object)->SetExtent(DVASPECT_CONTENT, &size));
}

ComPtr<IUnknown> NewControl(LONG width = 8000, LONG height = 3000) {
  ComPtr<IUnknown> control = NewCaptioned(L"sized");
  SetExtent(control.Get(), width, height);
  return control;
}

LONG PixelsOf(LONG himetric) {
  const HDC screen = GetDC(nullptr);
  const int per_inch = GetDeviceCaps(screen, LOGPIXELSX);
  ReleaseDC(nullptr, screen);
  return MulDiv(himetric, per_inch, 2540);
}

SIZE WindowSize(const Container& container) {
  RECT client = {};
  GetClientRect(container.ControlWindow(), &client);
  return {client.right, client.bottom};
}

// --- There and back ---------------------------------------------------------------------------------------

TEST(SavedSize, ComesBackFromAStream) {
  ExpectExtent(8000, 3000, ControlOf(SaveToStream(NewControl().Get())).Get());
}

TEST(SavedSize, ComesBackFromAStorage) {
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, As<IPersistStorage>(NewControl())->Save(storage.Get(), FALSE));
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, As<IPersistStorage>(control)->Load(storage.Get()));
  ExpectExtent(8000, 3000, control.Get());
}

TEST(SavedSize, IsThatOfTheFile) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  ExpectExtent(8000, 3000, control.Get());
  EXPECT_FALSE(IsDirty(control.Get()));
}

TEST(SavedSize, StaysAsItIsWhereTheFileHasNone) {
  Bytes form = SaveToStream(NewControl().Get());
  const ComPtr<IUnknown> control = CreateControl();
  SetExtent(control.Get(), 5000, 2000);
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(ControlOf(form).Get(), bag));
  ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  ExpectExtent(5000, 2000, control.Get());
}

TEST(SavedSize, IsNoneOfABagsNames) {
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(NewControl().Get(), bag));
  EXPECT_FALSE(bag.Find(L"ExtentWidth"));
  EXPECT_FALSE(bag.Find(L"ExtentHeight"));
}

// A bag from elsewhere may hold such names: they are none of the control's.
TEST(SavedSize, IsNotReadFromABag) {
  MemoryBag bag;
  bag.Put(L"ExtentWidth", Variant(7000));
  bag.Put(L"ExtentHeight", Variant(7000));
  const ComPtr<IUnknown> control = CreateControl();
  const SIZEL before = ExtentOf(control.Get());
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  ExpectExtent(before.cx, before.cy, control.Get());
}

TEST(SavedSize, AnotherOneIsAChangeToSave) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  SetExtent(control.Get(), 8000, 3000);
  EXPECT_FALSE(IsDirty(control.Get())) << "the same again";
  SetExtent(control.Get(), 8000, 3001);
  EXPECT_TRUE(IsDirty(control.Get()));
  ULARGE_INTEGER size = {};
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->GetSizeMax(&size));
  const Bytes saved = SaveToStream(control.Get());
  EXPECT_EQ(saved.size(), size.QuadPart);
  ExpectExtent(8000, 3001, ControlOf(saved).Get());
}

TEST(SavedSize, AFailedLoadLeavesItAlone) {
  const ComPtr<IUnknown> control = NewControl(5000, 2000);
  Bytes form = SavedForm();
  form[8] = 2;  // a later format
  EXPECT_EQ(STG_E_OLDDLL, LoadFromStream(control.Get(), form));
  ExpectExtent(5000, 2000, control.Get());
}

// --- With AutoSize ----------------------------------------------------------------------------------------

ComPtr<IUnknown> AutoSized(bool wrap) {
  ComPtr<IUnknown> control = NewControl();
  const auto object = As<IDispatch>(control);
  PutText(object.Get(), L"Caption",
          L"a caption of some words, so that there is something to wrap into lines");
  PutByName(object.Get(), L"WordWrap", Variant::Bool(wrap));
  PutByName(object.Get(), L"AutoSize", Variant::Bool(true));
  return control;
}

TEST(SavedSize, AutoSizeWrapsInTheSavedWidth) {
  const ComPtr<IUnknown> control = AutoSized(true);
  SIZEL size = ExtentOf(control.Get());
  EXPECT_EQ(8000, size.cx);
  EXPECT_LT(size.cy, 3000);
  ExpectExtent(size.cx, size.cy, ControlOf(SaveToStream(control.Get())).Get());
}

TEST(SavedSize, AutoSizeHasTheLastWord) {
  const ComPtr<IUnknown> control = AutoSized(false);
  const SIZEL size = ExtentOf(control.Get());
  const Bytes saved = SaveToStream(control.Get());
  PutByName(As<IDispatch>(control).Get(), L"AutoSize", Variant::Bool(false));
  SetExtent(control.Get(), 9000, 9000);
  Bytes forged = SaveToStream(control.Get());
  const char name[] = "AutoSize";
  const auto at = std::search(forged.begin(), forged.end(), name, name + 8);
  ASSERT_NE(forged.end(), at);
  at[12] = 1;  // as if saved with it: the checksum is wrong, which keeps no value back
  const ComPtr<IUnknown> loaded = CreateControl();
  EXPECT_EQ(STG_E_DOCFILECORRUPT, LoadFromStream(loaded.Get(), forged));
  ExpectExtent(size.cx, size.cy, loaded.Get());
  ExpectExtent(size.cx, size.cy, ControlOf(saved).Get());
}

// --- With a container -------------------------------------------------------------------------------------

TEST(SavedSize, IsThereBeforeTheSite) {
  Container container;
  container.missing = {SiteInterface::InPlaceContext};  // which would say where to go
  container.HostObject(ControlOf(SavedForm()));
  ExpectExtent(8000, 3000, container.Object());
  ASSERT_EQ(S_OK, container.Activate());
  EXPECT_EQ(PixelsOf(8000), WindowSize(container).cx);
  EXPECT_EQ(PixelsOf(3000), WindowSize(container).cy);
  ExpectExtent(8000, 3000, container.Object());
  EXPECT_EQ(SavedForm(), SaveToStream(container.Object()));
}

TEST(SavedSize, AnActiveControlAsksItsContainer) {
  Container container;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, container.Activate());
  ASSERT_EQ(S_OK, LoadFromStream(container.Object(), SavedForm()));
  const RECT& place = container.position;
  EXPECT_EQ(10, place.left);
  EXPECT_EQ(20, place.top);
  EXPECT_EQ(PixelsOf(8000), place.right - place.left);
  EXPECT_EQ(PixelsOf(3000), place.bottom - place.top);
  EXPECT_EQ(PixelsOf(8000), WindowSize(container).cx);
  ExpectExtent(8000, 3000, container.Object());
  EXPECT_FALSE(IsDirty(container.Object()));
}

TEST(SavedSize, TheContainerOfAnActiveControlMayHaveItOtherwise) {
  Container container;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, container.Activate());
  container.on_call = [&](const std::string& call) {
    if (call.starts_with("OnPosRectChange")) {
      const RECT other = {10, 20, 106, 116};
      container.missing = {SiteInterface::PosRectChange};
      As<IOleInPlaceObject>(container.Object())->SetObjectRects(&other, &other);
    }
  };
  ASSERT_EQ(S_OK, LoadFromStream(container.Object(), SavedForm()));
  EXPECT_EQ(96, WindowSize(container).cx);
  EXPECT_EQ(96, PixelsOf(ExtentOf(container.Object()).cx));
  EXPECT_EQ(96, PixelsOf(ExtentOf(container.Object()).cy));
}

// --- Whatever a file says ---------------------------------------------------------------------------------

void Put32(Bytes& bytes, const char* name, LONG number) {
  const auto at = std::search(bytes.begin(), bytes.end(), name, name + std::strlen(name));
  ASSERT_NE(bytes.end(), at);
  std::memcpy(&at[static_cast<std::ptrdiff_t>(std::strlen(name)) + 4], &number, sizeof number);
}

TEST(SavedSize, OneThatNoFormHasIsPassedOver) {
  for (const SIZEL& size : {SIZEL{-1, 3000}, SIZEL{8000, -1}, SIZEL{INT_MAX, INT_MAX},
                            SIZEL{INT_MIN, INT_MIN}, SIZEL{INT_MAX, 1}, SIZEL{1000000, 1000000}}) {
    Bytes form = SavedForm();
    Put32(form, "ExtentWidth", size.cx);
    Put32(form, "ExtentHeight", size.cy);
    Container container;
    container.HostObject(CreateControl());
    const SIZEL before = ExtentOf(container.Object());
    EXPECT_EQ(STG_E_DOCFILECORRUPT, LoadFromStream(container.Object(), form))
        << "the checksum is another one";
    ExpectExtent(before.cx, before.cy, container.Object());
    EXPECT_EQ(S_OK, container.Activate());
    EXPECT_EQ(3, GetNumber(container.Dispatch().Get(), L"TextEffect")) << "all else is read";
  }
}

TEST(SavedSize, NothingAtAllIsOneToo) {
  Container container;
  container.missing = {SiteInterface::InPlaceContext};
  container.HostObject(ControlOf(SaveToStream(NewControl(0, 0).Get())));
  ExpectExtent(0, 0, container.Object());
  EXPECT_EQ(S_OK, container.Activate());
  UpdateWindow(container.ControlWindow());
  EXPECT_EQ(0, WindowSize(container).cx);
  SetExtent(container.Object(), 8000, 3000);
  container.Close();
}

}  // namespace
}  // namespace ocx_test
