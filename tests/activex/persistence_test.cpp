// Saving and loading through the three interfaces of the built server.
#include "activex/container.h"
#include "activex/saving.h"

namespace ocx_test {
namespace {

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
  for (const wchar_t* version : {L"1.0", L"1.1"}) {
    const std::wstring path = SavedFormsPath() + L"\\" + version + L"\\every_property";
    const Bytes form = BytesOfFile(path + L".form");
    ComPtr<IStorage> storage;
    ASSERT_EQ(S_OK, StgOpenStorage((path + L".stg").c_str(), nullptr, STGM_READ | STGM_SHARE_DENY_WRITE,
                                   nullptr, 0, storage.GetAddressOf()));
    EXPECT_EQ(form, StreamOf(storage.Get()));
    const ComPtr<IUnknown> control = CreateControl();
    EXPECT_EQ(S_OK, As<IPersistStorage>(control)->Load(storage.Get()));
    EXPECT_EQ(SaveToStream(ControlOf(form).Get()), SaveToStream(control.Get()));
  }
}

TEST(Persistence, ANewControlSavedTwiceGivesTheSameBytes) {
  const Bytes first = SaveToStream(NewCaptioned().Get());
  EXPECT_EQ(first, SaveToStream(NewCaptioned().Get()));
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
  const ComPtr<IUnknown> control = NewCaptioned();
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
  const ComPtr<IUnknown> control = NewCaptioned();
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
  const ComPtr<IUnknown> control = NewCaptioned();
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
  const ComPtr<IUnknown> control = NewCaptioned();
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
  const ComPtr<IUnknown> control = NewCaptioned();
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
