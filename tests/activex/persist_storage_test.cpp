// Saving into and loading from storages, through the interface of the built server.
#include "activex/saving.h"

namespace ocx_test {
namespace {

TEST(PersistStorage, NothingIsSavedWithHandsOff) {
  const ComPtr<IUnknown> control = NewCaptioned();
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
  const ComPtr<IUnknown> control = NewCaptioned();
  EXPECT_EQ(E_UNEXPECTED, As<IPersistStorage>(control)->SaveCompleted(nullptr));
}

TEST(PersistStorage, ASaveReplacesTheLastOne) {
  const ComPtr<IUnknown> control = ControlOf(SavedForm());
  const ComPtr<IStorage> storage = NewStorage();
  ASSERT_EQ(S_OK, As<IPersistStorage>(control)->Save(storage.Get(), TRUE));
  const ComPtr<IUnknown> shorter = NewCaptioned();
  ASSERT_EQ(S_OK, As<IPersistStorage>(shorter)->Save(storage.Get(), FALSE));
  ASSERT_EQ(S_OK, As<IPersistStorage>(shorter)->Save(storage.Get(), FALSE)) << "without a completion between";
  EXPECT_EQ(SaveToStream(shorter.Get()), StreamOf(storage.Get()));
}

TEST(PersistStorage, AStorageWithoutTheStreamIsAnError) {
  const ComPtr<IUnknown> control = NewCaptioned(L"Mine");
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

}  // namespace
}  // namespace ocx_test
