// Saving and loading through the three interfaces of the built server.
#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

constexpr HRESULT kDamaged = STG_E_DOCFILECORRUPT;

// A new control with defaults, and something that isn't one.
ComPtr<IUnknown> NewControl(const wchar_t* caption = L"New") {
  ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  PutText(As<IDispatch>(control).Get(), L"Caption", caption);
  return control;
}

std::wstring CaptionOf(IUnknown* control) { return GetText(As<IDispatch>(control).Get(), L"Caption"); }
bool IsDirty(IUnknown* control) { return As<IPersistStreamInit>(control)->IsDirty() == S_OK; }

// --- The same bytes everywhere ----------------------------------------------------------------------------

// The file has been made for no bitness in particular; each must give it back.
TEST(Persistence, AStreamGivesBackTheBytesThatItBrought) {
  const Bytes form = SavedForm();
  EXPECT_EQ(form, SaveToStream(ControlOf(form).Get()));
}

// The platform's font objects, which bags hold, take on a face and a size that the machine has.
TEST(Persistence, ABagBringsTheSameAsAStream) {
  const ComPtr<IUnknown> first = ControlOf(SavedForm()), second = CreateControl();
  ASSERT_EQ(S_OK, PutByName(As<IDispatch>(first).Get(), L"Font", NewFont(L"Tahoma", 112500, true)));
  const Bytes form = SaveToStream(first.Get());
  MemoryBag bag, again;
  ASSERT_EQ(S_OK, SaveToBag(first.Get(), bag));
  ASSERT_EQ(S_OK, LoadFromBag(second.Get(), bag));
  SIZEL size = {8000, 3000};  // which a bag doesn't hold
  ASSERT_EQ(S_OK, As<IOleObject>(second)->SetExtent(DVASPECT_CONTENT, &size));
  EXPECT_EQ(form, SaveToStream(second.Get()));
  ASSERT_EQ(S_OK, SaveToBag(second.Get(), again));
  ASSERT_EQ(bag.entries.size(), again.entries.size());
  for (std::size_t i = 0; i < bag.entries.size(); ++i) {
    EXPECT_EQ(bag.entries[i].name, again.entries[i].name);
    EXPECT_EQ(bag.entries[i].value.vt, again.entries[i].value.vt);
  }
}

TEST(Persistence, AStorageHoldsTheBytesOfAStream) {
  const Bytes form = SavedForm();
  const ComPtr<IUnknown> first = ControlOf(form), second = CreateControl();
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, As<IPersistStorage>(first)->Save(storage.Get(), FALSE));
  EXPECT_EQ(form, StreamOf(storage.Get()));
  ASSERT_EQ(S_OK, As<IPersistStorage>(second)->Load(storage.Get()));
  EXPECT_EQ(form, SaveToStream(second.Get()));
}

TEST(Persistence, AStorageFileOfEachVersionLoadsAsItsStreamDoes) {
  const std::pair<const wchar_t*, Bytes> files[] = {{L"1.0", FirstSavedForm()}, {L"1.1", SavedForm()}};
  for (const auto& [version, form] : files) {
    const std::wstring path = SavedFormsPath() + L"\\" + version + L"\\every_property.stg";
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, StgOpenStorage(path.c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE, nullptr, 0,
                                   storage.GetAddressOf()));
    EXPECT_EQ(form, StreamOf(storage.Get()));
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, As<IPersistStorage>(control)->Load(storage.Get()));
    EXPECT_EQ(SaveToStream(ControlOf(form).Get()), SaveToStream(control.Get()));
  }
}

TEST(Persistence, ANewControlSavedTwiceGivesTheSameBytes) {
  const Bytes first = SaveToStream(NewControl().Get());
  EXPECT_EQ(first, SaveToStream(NewControl().Get()));
  EXPECT_EQ(first, SaveToStream(ControlOf(first).Get()));
}

TEST(Persistence, EachInterfaceNamesTheClass) {
  const ComPtr<IUnknown> control = CreateControl();
  CLSID stream = {}, bag = {}, storage = {};
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->GetClassID(&stream));
  EXPECT_EQ(S_OK, As<IPersistPropertyBag>(control)->GetClassID(&bag));
  EXPECT_EQ(S_OK, As<IPersistStorage>(control)->GetClassID(&storage));
  for (const CLSID& id : {stream, bag, storage}) EXPECT_TRUE(id == kClassId);
  EXPECT_EQ(E_POINTER, As<IPersistPropertyBag>(control)->GetClassID(nullptr));
}

TEST(Persistence, NullIsRefused) {
  const ComPtr<IUnknown> control = NewControl();
  const auto stream = As<IPersistStreamInit>(control);
  const auto bag = As<IPersistPropertyBag>(control);
  const auto storage = As<IPersistStorage>(control);
  EXPECT_EQ(E_POINTER, stream->Load(nullptr));
  EXPECT_EQ(E_POINTER, stream->Save(nullptr, TRUE));
  EXPECT_EQ(E_POINTER, stream->GetSizeMax(nullptr));
  EXPECT_EQ(E_POINTER, bag->Load(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, bag->Save(nullptr, TRUE, TRUE));
  EXPECT_EQ(E_POINTER, storage->Load(nullptr));
  EXPECT_EQ(E_POINTER, storage->Save(nullptr, TRUE));
}

// --- Streams ----------------------------------------------------------------------------------------------

TEST(PersistStream, ReadsToItsEndAndNotBeyond) {
  const Bytes form = SavedForm();
  MemoryStream stream(form);
  stream.bytes.insert(stream.bytes.end(), {'n', 'e', 'x', 't'});
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(CreateControl())->Load(&stream));
  EXPECT_EQ(form.size(), stream.place);
}

TEST(PersistStream, TakesAndGivesAnyPortion) {
  const Bytes form = SavedForm();
  for (const std::size_t portion : {1, 7, 16, 1000}) {
    MemoryStream source(form), target;
    source.portion = target.portion = portion;
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Load(&source));
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Save(&target, TRUE));
    EXPECT_EQ(form, target.bytes) << portion;
  }
}

TEST(PersistStream, TheSizeIsWhatASaveWrites) {
  for (const ComPtr<IUnknown>& control : {NewControl(), ControlOf(SavedForm())}) {
    ULARGE_INTEGER size = {};
    EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->GetSizeMax(&size));
    EXPECT_EQ(SaveToStream(control.Get()).size(), size.QuadPart);
  }
}

TEST(PersistStream, AStreamThatEndsEarlyIsAnErrorWhereverItEnds) {
  const Bytes form = SaveToStream(NewControl().Get());
  for (std::size_t size = 0; size < form.size(); ++size) {
    const Bytes part(form.begin(), form.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_EQ(size < 16 ? STG_E_INVALIDHEADER : kDamaged, LoadFromStream(CreateControl().Get(), part))
        << size;
  }
}

TEST(PersistStream, WhatCouldBeReadStays) {
  Bytes form = SavedForm();
  form.resize(form.size() - 1000);  // inside an image
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(kDamaged, LoadFromStream(control.Get(), form));
  EXPECT_EQ(L"logo", GetText(As<IDispatch>(control).Get(), L"ImageKey"));
  EXPECT_TRUE(IsDirty(control.Get())) << "it isn't what the host has";
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew()) << "the host may start it anew";
}

TEST(PersistStream, SomethingElseLeavesTheControlAlone) {
  const ComPtr<IUnknown> control = NewControl(L"Mine");
  const Bytes before = SaveToStream(control.Get());
  EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.Get(), {}));
  EXPECT_EQ(STG_E_INVALIDHEADER, LoadFromStream(control.Get(), Bytes(100, 'x')));
  Bytes newer = SavedForm();
  newer[8] = 2;
  EXPECT_EQ(STG_E_OLDDLL, LoadFromStream(control.Get(), newer));
  EXPECT_EQ(before, SaveToStream(control.Get()));
}

TEST(PersistStream, ALengthThatLiesIsAskedForInPortions) {
  MemoryStream stream(SavedForm());
  for (std::size_t i = 12; i < 16; ++i) stream.bytes[i] = 0xFF;
  EXPECT_EQ(kDamaged, As<IPersistStreamInit>(CreateControl())->Load(&stream));
  EXPECT_GE(65536u, stream.asked);
}

TEST(PersistStream, FailuresOfTheStreamArePassedOn) {
  const ComPtr<IUnknown> control = NewControl();
  const auto persist = As<IPersistStreamInit>(control);
  MemoryStream failing(SavedForm()), full, half(SavedForm());
  failing.failure = E_ACCESSDENIED;
  EXPECT_EQ(E_ACCESSDENIED, persist->Load(&failing));
  EXPECT_EQ(E_ACCESSDENIED, persist->Save(&failing, TRUE));
  full.capacity = 10;
  EXPECT_EQ(STG_E_MEDIUMFULL, persist->Save(&full, TRUE));
  EXPECT_TRUE(IsDirty(control.Get())) << "nothing was saved";
  EXPECT_EQ(L"New", CaptionOf(control.Get()));
  half.portion = half.failing_at = 1000;  // after the properties, within the images
  EXPECT_EQ(E_ACCESSDENIED, persist->Load(&half));
  EXPECT_EQ(L"logo", GetText(As<IDispatch>(control).Get(), L"ImageKey")) << "what could be read stays";
}

// --- Clean and dirty --------------------------------------------------------------------------------------

TEST(PersistDirty, ANewControlAndALoadedOneAreClean) {
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_FALSE(IsDirty(control.Get()));
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_FALSE(IsDirty(control.Get()));
  EXPECT_FALSE(IsDirty(ControlOf(SavedForm()).Get()));
  MemoryBag bag;
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  EXPECT_FALSE(IsDirty(control.Get()));
}

TEST(PersistDirty, ASaveCleansOnlyWhenItIsTold) {
  const ComPtr<IUnknown> control = NewControl();
  MemoryStream kept, cleared;
  EXPECT_TRUE(IsDirty(control.Get()));
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Save(&kept, FALSE));
  EXPECT_TRUE(IsDirty(control.Get()));
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->Save(&cleared, TRUE));
  EXPECT_FALSE(IsDirty(control.Get()));
  PutNumber(As<IDispatch>(control).Get(), L"TextEffect", 1);
  MemoryBag bag, other;
  EXPECT_EQ(S_OK, SaveToBag(control.Get(), bag, false));
  EXPECT_TRUE(IsDirty(control.Get()));
  EXPECT_EQ(S_OK, SaveToBag(control.Get(), other, true));
  EXPECT_FALSE(IsDirty(control.Get()));
}

TEST(PersistDirty, AStorageCleansWhenTheSaveIsCompleted) {
  const ComPtr<IUnknown> control = NewControl();
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> own = NewStorage(), copy = NewStorage(), next = NewStorage();
  ASSERT_EQ(S_OK, persist->Save(copy.Get(), FALSE));
  ASSERT_EQ(S_OK, persist->SaveCompleted(nullptr));
  EXPECT_EQ(S_OK, persist->IsDirty()) << "only a copy was saved";
  ASSERT_EQ(S_OK, persist->Save(own.Get(), TRUE));
  EXPECT_EQ(S_OK, persist->IsDirty());
  ASSERT_EQ(S_OK, persist->SaveCompleted(nullptr));
  EXPECT_EQ(S_FALSE, persist->IsDirty());
  PutNumber(As<IDispatch>(control).Get(), L"TextEffect", 1);
  ASSERT_EQ(S_OK, persist->Save(next.Get(), FALSE));
  ASSERT_EQ(S_OK, persist->SaveCompleted(next.Get()));
  EXPECT_EQ(S_FALSE, persist->IsDirty()) << "the copy is its own storage now";
}

TEST(PersistDirty, AChangeDuringASaveIsNotForgotten) {
  const ComPtr<IUnknown> control = NewControl();
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, persist->Save(storage.Get(), TRUE));
  PutNumber(As<IDispatch>(control).Get(), L"TextEffect", 1);
  ASSERT_EQ(S_OK, persist->SaveCompleted(nullptr));
  EXPECT_EQ(S_OK, persist->IsDirty());
}

// --- The order of calls -----------------------------------------------------------------------------------

TEST(PersistOrder, ALoadedControlIsNotStartedAnew) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  EXPECT_EQ(E_UNEXPECTED, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_EQ(E_UNEXPECTED, As<IPersistPropertyBag>(control)->InitNew());
  EXPECT_EQ(CO_E_ALREADYINITIALIZED, As<IPersistStorage>(control)->InitNew(NewStorage().Get()));
  EXPECT_EQ(SavedForm(), SaveToStream(control.Get()));
}

TEST(PersistOrder, AStorageStartsAControlOnce) {
  const ComPtr<IUnknown> control = CreateControl();
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> storage = NewStorage();
  EXPECT_EQ(S_OK, persist->InitNew(storage.Get()));
  EXPECT_EQ(CO_E_ALREADYINITIALIZED, persist->InitNew(storage.Get()));
}

// Containers do both: start every control, then load those that were saved; and load again to undo.
TEST(PersistOrder, ALoadMayFollowAStartAndAnotherLoad) {
  const Bytes form = SavedForm();
  const ComPtr<IUnknown> control = NewControl();
  EXPECT_EQ(S_OK, LoadFromStream(control.Get(), form));
  EXPECT_EQ(form, SaveToStream(control.Get()));
  PutText(As<IDispatch>(control).Get(), L"Caption", L"Changed");
  EXPECT_EQ(S_OK, LoadFromStream(control.Get(), form));
  EXPECT_EQ(form, SaveToStream(control.Get()));

  const ComPtr<IUnknown> other = CreateControl();
  const ComPtr<IStorage> storage = NewStorage();
  PutStream(storage.Get(), form);
  EXPECT_EQ(S_OK, As<IPersistStorage>(other)->InitNew(storage.Get()));
  EXPECT_EQ(S_OK, As<IPersistStorage>(other)->Load(storage.Get()));
  EXPECT_EQ(CO_E_ALREADYINITIALIZED, As<IPersistStorage>(other)->Load(storage.Get()));
}

TEST(PersistOrder, AControlThatWasNeverStartedSaves) {
  EXPECT_LT(16u, SaveToStream(CreateControl().Get()).size());
}

// --- Storages ---------------------------------------------------------------------------------------------

TEST(PersistStorage, NothingIsSavedWithHandsOff) {
  const ComPtr<IUnknown> control = NewControl();
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> storage = NewStorage(), next = NewStorage();
  ASSERT_EQ(S_OK, persist->Save(storage.Get(), TRUE));
  EXPECT_EQ(S_OK, persist->HandsOffStorage());
  EXPECT_EQ(E_UNEXPECTED, persist->Save(next.Get(), FALSE));
  EXPECT_EQ(E_UNEXPECTED, persist->Load(storage.Get()));
  EXPECT_EQ(E_INVALIDARG, persist->SaveCompleted(nullptr)) << "there must be a storage again";
  EXPECT_EQ(S_OK, persist->SaveCompleted(next.Get()));
  EXPECT_EQ(S_OK, persist->Save(next.Get(), TRUE));
  EXPECT_FALSE(StreamOf(next.Get()).empty());
}

TEST(PersistStorage, ACompletionWithoutASaveIsUnexpected) {
  const ComPtr<IUnknown> control = NewControl();
  EXPECT_EQ(E_UNEXPECTED, As<IPersistStorage>(control)->SaveCompleted(nullptr));
}

TEST(PersistStorage, ASaveReplacesTheLastOne) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, As<IPersistStorage>(control)->Save(storage.Get(), TRUE));
  const ComPtr<IUnknown> shorter = NewControl();
  ASSERT_EQ(S_OK, As<IPersistStorage>(shorter)->Save(storage.Get(), FALSE));
  ASSERT_EQ(S_OK, As<IPersistStorage>(shorter)->Save(storage.Get(), FALSE)) << "without a completion between";
  EXPECT_EQ(SaveToStream(shorter.Get()), StreamOf(storage.Get()));
}

TEST(PersistStorage, AStorageWithoutTheStreamIsAnError) {
  const ComPtr<IUnknown> control = NewControl(L"Mine");
  EXPECT_EQ(STG_E_FILENOTFOUND, As<IPersistStorage>(control)->Load(NewStorage().Get()));
  EXPECT_EQ(L"Mine", CaptionOf(control.Get()));
  const ComPtr<IStorage> damaged = NewStorage();
  PutStream(damaged.Get(), Bytes(30, 7));
  EXPECT_EQ(STG_E_INVALIDHEADER, As<IPersistStorage>(control)->Load(damaged.Get()));
  EXPECT_EQ(L"Mine", CaptionOf(control.Get()));
}

TEST(PersistStorage, ThePlatformsOwnWayToSaveFindsTheClass) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, OleSave(persist.Get(), storage.Get(), FALSE));
  EXPECT_EQ(S_OK, persist->SaveCompleted(storage.Get()));
  CLSID class_id = {};
  EXPECT_EQ(S_OK, ReadClassStg(storage.Get(), &class_id));
  EXPECT_EQ(kClassId, class_id);
  EXPECT_EQ(SavedForm(), StreamOf(storage.Get()));
}

TEST(PersistStorage, NoStorageIsHeld) {
  const ComPtr<IUnknown> control = CreateControl();
  const auto persist = As<IPersistStorage>(control);
  const ComPtr<IStorage> storage = NewStorage();
  const ULONG before = References(storage.Get());
  EXPECT_EQ(S_OK, persist->InitNew(storage.Get()));
  EXPECT_EQ(S_OK, persist->Save(storage.Get(), TRUE));
  EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
  EXPECT_EQ(before, References(storage.Get()));
}

// --- Bags: saving -----------------------------------------------------------------------------------------

TEST(PersistBag, ValuesHaveTheirTypesAndOrder) {
  const struct {
    const wchar_t* name;
    VARTYPE type;
  } kExpected[] = {{L"Appearance", VT_I4},
                   {L"AutoSize", VT_BOOL},
                   {L"BackColor", VT_I4},
                   {L"BackStyle", VT_I4},
                   {L"BorderStyle", VT_I4},
                   {L"Caption", VT_ARRAY | VT_UI1},
                   {L"Enabled", VT_BOOL},
                   {L"Font", VT_DISPATCH},
                   {L"ForeColor", VT_I4},
                   {L"RightToLeft", VT_BOOL},
                   {L"UniToolTipText", VT_ARRAY | VT_UI1},
                   {L"UseMnemonic", VT_BOOL},
                   {L"Padding", VT_I4},
                   {L"WordWrap", VT_BOOL},
                   {L"EffectColor", VT_I4},
                   {L"VerticalAlignment", VT_I4},
                   {L"TextEffect", VT_I4},
                   {L"ImageSize", VT_I4},
                   {L"ImageAlignment", VT_I4},
                   {L"ImageKey", VT_BSTR},
                   {L"ImageKeyHover", VT_BSTR},
                   {L"NumOfIconBytes", VT_I4}};
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(NewControl().Get(), bag));
  ASSERT_EQ(std::size(kExpected), bag.entries.size());
  for (std::size_t i = 0; i < bag.entries.size(); ++i) {
    EXPECT_EQ(kExpected[i].name, bag.entries[i].name);
    EXPECT_EQ(kExpected[i].type, bag.entries[i].value.vt) << i;
  }
}

// The numbers whose defaults are of another type are always there; so are the texts, as arrays.
TEST(PersistBag, DefaultsMayBeLeftOut) {
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), bag, true, false));
  std::vector<std::wstring> names;
  for (const auto& entry : bag.entries) names.push_back(entry.name);
  EXPECT_EQ((std::vector<std::wstring>{L"Appearance", L"BorderStyle", L"Caption", L"UniToolTipText",
                                       L"Padding", L"NumOfIconBytes"}),
            names);
  PutNumber(As<IDispatch>(control).Get(), L"FontSize", 20);
  MemoryBag other;
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), other, true, false));
  EXPECT_TRUE(other.Find(L"Font"));
}

TEST(PersistBag, WhatWasLeftOutFollowsTheHostsAmbients) {
  MemoryBag bag;
  const ComPtr<IUnknown> plain = CreateControl();
  ASSERT_EQ(S_OK, As<IPersistStreamInit>(plain)->InitNew());
  ASSERT_EQ(S_OK, SaveToBag(plain.Get(), bag, true, false));
  Container container;
  container.ambients.back_color = 0x00112233;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, LoadFromBag(container.Object(), bag));
  EXPECT_EQ(0x00112233, GetNumber(container.Dispatch().Get(), L"BackColor"));
}

TEST(PersistBag, AnArrayKeepsItsDimensionsAndBounds) {
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(ControlOf(SavedForm()).Get(), bag));
  const VARIANT* cell = bag.Find(L"IconBytesJ7K1_2");
  ASSERT_TRUE(cell);
  const LONG expected[][2] = {{-1, 2}, {2, 2}, {5, 7}};
  ASSERT_EQ(3u, SafeArrayGetDim(cell->parray));
  for (UINT i = 0; i < 3; ++i) {
    LONG lower = 0, upper = 0;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(cell->parray, i + 1, &lower));
    EXPECT_EQ(S_OK, SafeArrayGetUBound(cell->parray, i + 1, &upper));
    EXPECT_EQ(expected[i][0], lower);
    EXPECT_EQ(expected[i][1], upper);
  }
  // The first dimension's elements are neighbours.
  LONG place[] = {2, 2, 6};
  BYTE byte = 0;
  EXPECT_EQ(S_OK, SafeArrayGetElement(cell->parray, place, &byte));
  EXPECT_EQ(240 + 3 + 4, byte);
}

TEST(PersistBag, AnEmptyTextIsAnArrayWithoutElements) {
  MemoryBag bag;
  ASSERT_EQ(S_OK, SaveToBag(NewControl(L"").Get(), bag));
  const VARIANT* caption = bag.Find(L"Caption");
  LONG lower = 7, upper = 7;
  ASSERT_EQ(1u, SafeArrayGetDim(caption->parray));
  EXPECT_EQ(S_OK, SafeArrayGetLBound(caption->parray, 1, &lower));
  EXPECT_EQ(S_OK, SafeArrayGetUBound(caption->parray, 1, &upper));
  EXPECT_EQ(0, lower);
  EXPECT_EQ(-1, upper);
}

TEST(PersistBag, AValueThatTheBagRefusesIsToldAndTheRestIsWritten) {
  const ComPtr<IUnknown> control = NewControl();
  MemoryBag bag;
  bag.failing[L"Caption"] = STG_E_MEDIUMFULL;
  bag.failing[L"Font"] = E_FAIL;
  EXPECT_EQ(STG_E_MEDIUMFULL, SaveToBag(control.Get(), bag));
  EXPECT_TRUE(bag.Find(L"NumOfIconBytes"));
  EXPECT_TRUE(IsDirty(control.Get()));
}

// --- Bags: loading ----------------------------------------------------------------------------------------

// A control loaded from a bag with one value.
ComPtr<IDispatch> LoadedWith(const wchar_t* name, const VARIANT& value) {
  MemoryBag bag;
  bag.Put(name, value);
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  return As<IDispatch>(control);
}

TEST(PersistBag, NumbersOfAnyShapeAreTaken) {
  Variant real;
  real.vt = VT_R8;
  real.dblVal = 2.5;  // halves go to the even neighbour
  EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", real).Get(), L"TextEffect"));
  Variant two(2);
  Variant reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &two.lVal;
  EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", reference).Get(), L"TextEffect"));
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_I8, VT_UI8, VT_INT, VT_UINT})
    EXPECT_EQ(2, GetNumber(LoadedWith(L"TextEffect", VariantOf(type, 2)).Get(), L"TextEffect")) << type;
  EXPECT_EQ(3, GetNumber(LoadedWith(L"TextEffect", Variant(L"3")).Get(), L"TextEffect"));
}

TEST(PersistBag, ColoursComeSignedAndUnsigned) {
  const long face = static_cast<long>(0x8000000F);
  for (const Variant& value : {VariantOf(VT_I4, face), VariantOf(VT_UI4, 0x8000000F),
                               VariantOf(VT_I8, 0x8000000F), Variant(L"-2147483633"), Variant(L"2147483663")})
    EXPECT_EQ(face, GetNumber(LoadedWith(L"BackColor", value).Get(), L"BackColor")) << value.vt;
}

TEST(PersistBag, FlagsOfAnyShapeAreTaken) {
  for (const Variant& value : {Variant::Bool(false), VariantOf(VT_I4, 0), VariantOf(VT_I2, 0),
                               Variant(L"False"), Variant(L"0"), Variant(L"#FALSE#")})
    EXPECT_EQ(0, GetNumber(LoadedWith(L"WordWrap", value).Get(), L"WordWrap")) << value.vt;
  for (const Variant& value : {Variant(L"True"), VariantOf(VT_I4, 1), VariantOf(VT_I4, -1)})
    EXPECT_EQ(-1, GetNumber(LoadedWith(L"AutoSize", value).Get(), L"AutoSize")) << value.vt;
}

TEST(PersistBag, TextsAreTakenAsArraysOfAnySortAndAsTexts) {
  EXPECT_EQ(L"A\x05E9", GetText(LoadedWith(L"Caption", BytesVariant({0x41, 0, 0xE9, 5})).Get(), L"Caption"));
  EXPECT_EQ(L"A", GetText(LoadedWith(L"Caption", BytesVariant({0x41, 0, 0xE9})).Get(), L"Caption"));
  EXPECT_EQ(L"by hand", GetText(LoadedWith(L"Caption", Variant(L"by hand")).Get(), L"Caption"));
  EXPECT_EQ(L"logo", GetText(LoadedWith(L"ImageKey", Variant(L"logo")).Get(), L"ImageKey"));
  EXPECT_EQ(L"AB", GetText(LoadedWith(L"ImageKey", BytesVariant({'A', 0, 'B', 0})).Get(), L"ImageKey"));
  EXPECT_EQ(L"12", GetText(LoadedWith(L"ImageKey", Variant(12)).Get(), L"ImageKey"));
}

// What a script calls an array.
TEST(PersistBag, AnArrayOfVariantsIsTaken) {
  Variant array;
  array.parray = SafeArrayCreateVector(VT_VARIANT, 0, 4);
  array.vt = VT_ARRAY | VT_VARIANT;
  const Variant elements[] = {Variant(0x41), Variant(L"0"), VariantOf(VT_I2, 0x42), Variant::Bool(false)};
  for (LONG i = 0; i < 4; ++i)
    EXPECT_EQ(S_OK, SafeArrayPutElement(array.parray, &i, const_cast<Variant*>(&elements[i])));
  EXPECT_EQ(L"AB", GetText(LoadedWith(L"Caption", array).Get(), L"Caption"));
  Variant wide;
  wide.parray = SafeArrayCreateVector(VT_I4, 0, 2);
  wide.vt = VT_ARRAY | VT_I4;
  LONG place = 0, value = 0x58;
  EXPECT_EQ(S_OK, SafeArrayPutElement(wide.parray, &place, &value));
  EXPECT_EQ(L"X", GetText(LoadedWith(L"Caption", wide).Get(), L"Caption"));
  value = 256;
  EXPECT_EQ(S_OK, SafeArrayPutElement(wide.parray, &place, &value));
  EXPECT_EQ(L"", GetText(LoadedWith(L"Caption", wide).Get(), L"Caption")) << "no byte";
}

TEST(PersistBag, AFontIsTakenFromAnyObjectThatIsOne) {
  Variant font = NewFont(L"DejaVu Serif", 120000, true);
  for (const VARTYPE type : {VT_DISPATCH, VT_UNKNOWN}) {
    Variant value;
    EXPECT_EQ(S_OK, VariantCopy(&value, &font));
    value.vt = type;
    const auto control = LoadedWith(L"Font", value);
    EXPECT_EQ(L"DejaVu Serif", GetText(control.Get(), L"FontName"));
    EXPECT_EQ(-1, GetNumber(control.Get(), L"FontItalic"));
    EXPECT_EQ(12, GetNumber(control.Get(), L"FontSize"));
  }
  for (const Variant& other : {Variant(As<IDispatch>(CreateControl()).Get()), VariantOf(VT_UNKNOWN, 0),
                               VariantOf(VT_NULL, 0), Variant(12)})
    EXPECT_EQ(L"Tahoma", GetText(LoadedWith(L"Font", other).Get(), L"FontName")) << other.vt;
}

TEST(PersistBag, AMissingNameIsTheDefaultHoweverTheBagSaysSo) {
  for (const HRESULT missing : {E_INVALIDARG, E_FAIL, STG_E_FILENOTFOUND, E_NOTIMPL, DISP_E_UNKNOWNNAME}) {
    MemoryBag bag;
    bag.missing = missing;
    const ComPtr<IUnknown> control = NewControl();
    const auto object = As<IDispatch>(control);
    PutNumber(object.Get(), L"TextEffect", 4);
    EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
    EXPECT_EQ(0, GetNumber(object.Get(), L"TextEffect"));
    EXPECT_EQ(-1, GetNumber(object.Get(), L"WordWrap"));
    EXPECT_EQ(L"", GetText(object.Get(), L"Caption"));
  }
  EXPECT_EQ(-1, GetNumber(LoadedWith(L"WordWrap", Variant()).Get(), L"WordWrap")) << "an empty value";
}

TEST(PersistBag, ABagThatWantsToBeToldTheTypeIsTold) {
  MemoryBag bag;
  bag.wants_type = true;
  bag.Put(L"TextEffect", Variant(L"2"));
  bag.Put(L"WordWrap", VariantOf(VT_I2, 0));
  bag.Put(L"ImageKey", Variant(5));
  const ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  const auto object = As<IDispatch>(control);
  EXPECT_EQ(2, GetNumber(object.Get(), L"TextEffect"));
  EXPECT_EQ(0, GetNumber(object.Get(), L"WordWrap"));
  EXPECT_EQ(L"5", GetText(object.Get(), L"ImageKey"));
}

TEST(PersistBag, AWrongTypeLeavesTheFieldAndIsLogged) {
  MemoryBag bag;
  bag.Put(L"TextEffect", Variant(L"many"));
  bag.Put(L"WordWrap", BytesVariant({1}));
  bag.failing[L"ForeColor"] = DISP_E_TYPEMISMATCH;
  for (const HRESULT answer : {S_OK, E_FAIL}) {
    const ComPtr<IUnknown> control = NewControl();
    const auto object = As<IDispatch>(control);
    PutNumber(object.Get(), L"TextEffect", 3);
    PutNumber(object.Get(), L"ForeColor", 77);
    EXPECT_EQ(S_OK, PutByName(object.Get(), L"WordWrap", Variant::Bool(false)));
    ErrorLog log;
    log.answer = answer;
    EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag, &log));
    EXPECT_EQ(3, GetNumber(object.Get(), L"TextEffect"));
    EXPECT_EQ(77, GetNumber(object.Get(), L"ForeColor"));
    EXPECT_EQ(0, GetNumber(object.Get(), L"WordWrap"));
    EXPECT_EQ((std::vector<std::wstring>{L"WordWrap", L"TextEffect"}), log.names);
    EXPECT_EQ(DISP_E_TYPEMISMATCH, log.code);
  }
}

TEST(PersistBag, AlignmentIsReadAndNotSavedAgain) {
  MemoryBag bag, again;
  bag.Put(L"Alignment", Variant(3));
  const ComPtr<IUnknown> control = CreateControl();
  ASSERT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  ASSERT_EQ(S_OK, SaveToBag(control.Get(), again));
  EXPECT_FALSE(again.Find(L"Alignment"));
}

TEST(PersistBag, ACountOfTwoBillionImagesEndsSoon) {
  MemoryBag bag;
  bag.Put(L"NumOfIconBytes", Variant(2'000'000'000));
  bag.Put(L"IcoBytesKey_1", Variant(L"logo"));
  int reads = 0;
  bag.on_read = [&](const std::wstring&) { ++reads; };
  EXPECT_EQ(S_OK, LoadFromBag(CreateControl().Get(), bag));
  EXPECT_GT(10'000, reads);
}

// --- Hostile hosts ----------------------------------------------------------------------------------------

TEST(PersistReentrancy, TheLastReferenceMayGoInsideALoadAndASave) {
  MemoryBag bag;
  ComPtr<IUnknown> control = CreateControl();
  ComPtr<IPersistPropertyBag> persist = As<IPersistPropertyBag>(control);
  IPersistPropertyBag* const raw = persist.Get();
  bag.on_read = [&](const std::wstring& name) {
    if (name != L"Font") return;
    control.Reset();
    persist.Reset();
  };
  EXPECT_EQ(S_OK, raw->Load(&bag, nullptr));
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

TEST(PersistReentrancy, AControlMayBeSavedInsideItsLoad) {
  const ComPtr<IUnknown> control = CreateControl();
  MemoryBag bag;
  Bytes inside;
  bag.on_read = [&](const std::wstring& name) {
    if (name == L"Font") inside = SaveToStream(control.Get());
  };
  bag.Put(L"Caption", Variant(L"x"));
  EXPECT_EQ(S_OK, LoadFromBag(control.Get(), bag));
  EXPECT_EQ(L"x", CaptionOf(ControlOf(inside).Get()));
}

// --- A life with a save in it -----------------------------------------------------------------------------

TEST(Persistence, AnActiveControlOfAFormIsSavedAndComesBack) {
  Bytes saved;
  {
    Container container;
    container.Host();
    ASSERT_EQ(S_OK, container.Activate());
    PutText(container.Dispatch().Get(), L"Caption", L"&Save <b>\x4E16\x754C</b>");
    PutNumber(container.Dispatch().Get(), L"FontSize", 14);
    saved = SaveToStream(container.Object());
    container.Close();
  }
  Container container;
  container.HostObject(CreateControl());
  ASSERT_EQ(S_OK, LoadFromStream(container.Object(), saved));
  ASSERT_EQ(S_OK, container.Activate());
  EXPECT_EQ(L"&Save <b>\x4E16\x754C</b>", CaptionOf(container.Object()));
  EXPECT_EQ(14, GetNumber(container.Dispatch().Get(), L"FontSize"));
  CONTROLINFO info = {};
  info.cb = sizeof info;
  EXPECT_EQ(S_OK, As<IOleControl>(container.Object())->GetControlInfo(&info));
  EXPECT_NE(0, info.cAccel) << "the key of the loaded caption";
  EXPECT_EQ(saved, SaveToStream(container.Object()));
}

}  // namespace
}  // namespace ocx_test
