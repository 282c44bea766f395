// The hidden list of images that belongs to a control.
#include <set>
#include <string>

#include "activex/container.h"
#include "activex/hidden_list.h"
#include "activex/saving.h"

namespace ocx_test {

namespace {

// A bag with one image of the given key, which has a byte array that isn't looked at.
void PutImage(MemoryBag& bag, const wchar_t* key) {
  bag.Put(L"NumOfIconBytes", VariantOf(VT_I4, 1));
  bag.Put(L"IcoBytesKey_1", Variant(key));
  bag.Put(L"IconBytesJ0K4_1", BytesVariant({1, 2, 3, 4}));
}

// "none" when there is no such image.
std::wstring KeyUnder(IUnknown* list, const wchar_t* key) {
  Variant name(key), image;
  LPOLESTR member = const_cast<LPOLESTR>(L"GetIcoBytes");
  DISPID id = DISPID_UNKNOWN;
  const ComPtr<IDispatch> object = As<IDispatch>(list);
  EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id));
  DISPPARAMS parameters = {&name, nullptr, 1, 0};
  EXPECT_EQ(S_OK, object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, &image,
                                 nullptr, nullptr));
  EXPECT_EQ(VT_DISPATCH, image.vt);
  return image.pdispVal ? GetText(image.pdispVal, L"Key") : L"none";
}

TEST(HiddenList, IsOneObjectOfItsOwnThatHoldsItsControl) {
  Container container;
  container.Host();
  const ComPtr<IUnknown> list = HiddenListOf(container.Object());
  ASSERT_TRUE(list);
  EXPECT_EQ(list.Get(), HiddenListOf(container.Object()).Get());
  EXPECT_NE(list.Get(), As<IUnknown>(container.Object()).Get());
  EXPECT_FALSE(As<IOleObject>(list.Get())) << "no control that could be placed";
  container.Close();
  container.Drop();
  EXPECT_EQ(L"none", KeyUnder(list.Get(), L"key"));
}

TEST(HiddenList, LetsItsControlGo) {
  const Server& server = Server::Get();
  ASSERT_EQ(S_OK, server.CanUnloadNow());
  {
    Container container;
    container.Host();
    const ComPtr<IUnknown> list = HiddenListOf(container.Object());
    container.Close();
    container.Drop();
    EXPECT_EQ(S_FALSE, server.CanUnloadNow()) << "the list is in use, and its control with it";
  }
  EXPECT_EQ(S_OK, server.CanUnloadNow());
}

TEST(HiddenList, GoesAndComesAgainWithItsImages) {
  Container container;
  container.Host();
  MemoryBag bag;
  PutImage(bag, L"key");
  ASSERT_EQ(S_OK, As<IPersistPropertyBag>(HiddenListOf(container.Object()).Get())->Load(&bag, nullptr));
  EXPECT_EQ(L"key", KeyUnder(HiddenListOf(container.Object()).Get(), L"KEY"));
}

TEST(HiddenList, SavesItsOwnRowsAndNoOthers) {
  Container container;
  container.Host();
  const auto persist = As<IPersistPropertyBag>(HiddenListOf(container.Object()).Get());
  ASSERT_TRUE(persist);
  MemoryBag empty;
  EXPECT_EQ(S_OK, persist->Save(&empty, TRUE, TRUE));
  ASSERT_EQ(1u, empty.entries.size());
  EXPECT_EQ(L"NumOfIconBytes", empty.entries[0].name);
  MemoryBag bag, saved;
  PutImage(bag, L"key");
  ASSERT_EQ(S_OK, persist->Load(&bag, nullptr));
  ASSERT_EQ(S_OK, persist->Save(&saved, TRUE, TRUE));
  std::set<std::wstring> names;
  for (const MemoryBag::Entry& entry : saved.entries) names.insert(entry.name);
  EXPECT_EQ((std::set<std::wstring>{L"NumOfIconBytes", L"IcoBytesKey_1", L"IconBytesJ0K4_1"}), names);
  EXPECT_EQ(S_OK, persist->InitNew());
  EXPECT_EQ(L"none", KeyUnder(persist.Get(), L"key"));
}

TEST(HiddenList, IsInNoFormOfItsControl) {
  Container container;
  container.Host();
  const Bytes before = SaveToStream(container.Object());
  MemoryBag bag;
  PutImage(bag, L"hidden");
  ASSERT_EQ(S_OK, As<IPersistPropertyBag>(HiddenListOf(container.Object()).Get())->Load(&bag, nullptr));
  EXPECT_EQ(before, SaveToStream(container.Object()));
}

TEST(HiddenList, HasNoClass) {
  Container container;
  container.Host();
  CLSID class_id = kClassId;
  EXPECT_EQ(E_NOTIMPL, As<IPersist>(HiddenListOf(container.Object()).Get())->GetClassID(&class_id));
  EXPECT_EQ(CLSID_NULL, class_id);
}

TEST(HiddenList, RefusesNullPlaces) {
  Container container;
  container.Host();
  ComPtr<Constituents> constituents;
  ASSERT_EQ(S_OK, container.Object()->QueryInterface(kConstituentsId,
                                                     reinterpret_cast<void**>(constituents.GetAddressOf())));
  EXPECT_EQ(E_POINTER, constituents->InternalAlphaImageList1(nullptr));
  const auto persist = As<IPersistPropertyBag>(HiddenListOf(container.Object()).Get());
  EXPECT_EQ(E_POINTER, persist->Load(nullptr, nullptr));
  EXPECT_EQ(E_POINTER, persist->Save(nullptr, TRUE, TRUE));
  EXPECT_EQ(E_POINTER, persist->GetClassID(nullptr));
  EXPECT_EQ(E_POINTER, persist->QueryInterface(IID_IUnknown, nullptr));
}

}  // namespace
}  // namespace ocx_test
