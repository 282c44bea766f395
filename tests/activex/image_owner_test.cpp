// The control's images, as an editor of forms reaches them.
#include <string>
#include <vector>

#include "activex/bitmap_file.h"
#include "activex/container.h"
#include "activex/image_owner.h"

namespace ocx_test {

namespace {

// The arguments stand last to first.
HRESULT Call(IDispatch* object, const wchar_t* name, const std::vector<const VARIANT*>& arguments,
             VARIANT& result) {
  std::vector<VARIANT> list;
  list.reserve(arguments.size());
  for (const VARIANT* argument : arguments) list.push_back(*argument);
  DISPPARAMS parameters = {list.data(), nullptr, static_cast<UINT>(list.size()), 0};
  return object->Invoke(IdOf(object, name), IID_NULL, LOCALE_USER_DEFAULT,
                        DISPATCH_METHOD | DISPATCH_PROPERTYGET, &parameters, &result, nullptr, nullptr);
}

std::wstring KeyAt(IDispatch* list, const VARIANT& index) {
  Variant image;
  if (FAILED(Call(list, L"Item", {&index}, image)) || image.vt != VT_DISPATCH) return L"none";
  return GetText(image.pdispVal, L"Key");
}

class ImageOwnerFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    ASSERT_EQ(S_OK, container_.Object()->QueryInterface(kImageOwnerId,
                                                        reinterpret_cast<void**>(owner_.GetAddressOf())));
    Load(L"first");
    Load(L"Second");
  }

  void Load(const wchar_t* key) {
    Variant path(file_.Path().c_str()), name(key), loaded;
    ASSERT_EQ(S_OK, Call(container_.Dispatch().Get(), L"LoadIconImageFromFile", {&name, &path}, loaded));
    ASSERT_EQ(VARIANT_TRUE, loaded.boolVal);
  }

  ComPtr<IDispatch> List() {
    ComPtr<IDispatch> list;
    EXPECT_EQ(S_OK, owner_->GetIconByteCollection(list.GetAddressOf()));
    return list;
  }

  BitmapFile file_;
  Container container_;
  ComPtr<ImageOwner> owner_;
};

TEST_F(ImageOwnerFixture, HandsOutTheListItself) {
  const ComPtr<IDispatch> list = List();
  ASSERT_TRUE(list);
  EXPECT_EQ(2, GetNumber(list.Get(), L"Count"));
  Load(L"third");
  EXPECT_EQ(3, GetNumber(list.Get(), L"Count")) << "not a copy";
}

TEST_F(ImageOwnerFixture, ListsImagesByPositionAndByKeyInAnyCase) {
  const ComPtr<IDispatch> list = List();
  EXPECT_EQ(L"first", KeyAt(list.Get(), Variant(1)));
  EXPECT_EQ(L"Second", KeyAt(list.Get(), Variant(2)));
  EXPECT_EQ(L"Second", KeyAt(list.Get(), Variant(L"SECOND")));
}

TEST_F(ImageOwnerFixture, AnImageThatIsNotThereIsAFailure) {
  const ComPtr<IDispatch> list = List();
  for (const int position : {0, 3, -1, 0x7FFFFFFF}) {
    Variant image, index(position);
    EXPECT_TRUE(FAILED(Call(list.Get(), L"Item", {&index}, image))) << position;
    EXPECT_EQ(VT_EMPTY, image.vt);
  }
  for (const wchar_t* key : {L"", L"1", L"thirds"}) {
    Variant image, index(key);
    EXPECT_TRUE(FAILED(Call(list.Get(), L"Item", {&index}, image)));
  }
  Variant image, object(list.Get());
  EXPECT_EQ(DISP_E_BADPARAMCOUNT, Call(list.Get(), L"Item", {}, image));
  EXPECT_EQ(DISP_E_TYPEMISMATCH, Call(list.Get(), L"Item", {&object}, image));
  EXPECT_EQ(DISPID_UNKNOWN, IdOf(list.Get(), L"Add"));
}

TEST_F(ImageOwnerFixture, AnImageThatIsNotThereIsAnExceptionForWhoeverTakesOne) {
  const ComPtr<IDispatch> list = List();
  const auto item = [&](const VARIANT& index, EXCEPINFO& exception) {
    VARIANT argument = index;
    DISPPARAMS parameters = {&argument, nullptr, 1, 0};
    Variant image;
    return list->Invoke(IdOf(list.Get(), L"Item"), IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                        &parameters, &image, &exception, nullptr);
  };
  EXCEPINFO exception = {};
  EXPECT_EQ(DISP_E_EXCEPTION, item(Variant(L"thirds"), exception));
  EXPECT_EQ(static_cast<SCODE>(0x800A0005), exception.scode) << "automation's invalid argument";
  EXPECT_STREQ(L"zvsMarklet.Marklet", exception.bstrSource);
  EXPECT_EQ(nullptr, exception.bstrDescription) << "scripts have words of their own for it";
  SysFreeString(exception.bstrSource);
  exception = {};
  EXPECT_EQ(DISP_E_TYPEMISMATCH, item(Variant(list.Get()), exception)) << "the call itself was wrong";
  EXPECT_EQ(nullptr, exception.bstrSource);
}

TEST_F(ImageOwnerFixture, EnumeratesImagesInTheirOrder) {
  Variant enumerator;
  ASSERT_EQ(S_OK, Get(List().Get(), DISPID_NEWENUM, enumerator));
  ASSERT_EQ(VT_UNKNOWN, enumerator.vt);
  const ComPtr<IEnumVARIANT> images = As<IEnumVARIANT>(enumerator.punkVal);
  ASSERT_TRUE(images);
  Variant one, two, three;
  EXPECT_EQ(S_OK, images->Next(1, &one, nullptr));
  EXPECT_EQ(L"first", GetText(one.pdispVal, L"Key"));
  EXPECT_EQ(S_OK, images->Next(1, &two, nullptr));
  EXPECT_EQ(L"Second", GetText(two.pdispVal, L"Key"));
  EXPECT_EQ(S_FALSE, images->Next(1, &three, nullptr));
}

TEST_F(ImageOwnerFixture, DeletingAnImageTellsTheHostOfAChangeWithoutAName) {
  Sink sink;
  ASSERT_EQ(S_OK, sink.ConnectChanges(container_.Object()));
  Variant key(L"FIRST"), other(L"nowhere");
  EXPECT_EQ(S_OK, owner_->DeleteIconImage(key.bstrVal));
  EXPECT_EQ(std::vector<std::string>{"Changed(-1)"}, sink.log);
  EXPECT_EQ(L"Second", KeyAt(List().Get(), Variant(1)));
  EXPECT_EQ(S_OK, owner_->DeleteIconImage(other.bstrVal));
  EXPECT_EQ(S_OK, owner_->DeleteIconImage(nullptr));
  EXPECT_EQ(3u, sink.log.size()) << "one that wasn't there too";
  EXPECT_EQ(1, GetNumber(List().Get(), L"Count"));
}

TEST_F(ImageOwnerFixture, DestroyingTheImagesLeavesANewEmptyList) {
  const ComPtr<IDispatch> before = List();
  EXPECT_EQ(S_OK, owner_->DestroyIconByteCollectionData());
  EXPECT_EQ(0, GetNumber(List().Get(), L"Count"));
  EXPECT_EQ(2, GetNumber(before.Get(), L"Count")) << "whoever holds the old list keeps it";
}

TEST_F(ImageOwnerFixture, AListOutlivesItsControl) {
  const ComPtr<IDispatch> list = List();
  owner_.Reset();
  container_.Close();
  EXPECT_EQ(L"first", KeyAt(list.Get(), Variant(1)));
}

TEST_F(ImageOwnerFixture, LoadsNothingByItself) {
  Variant path(file_.Path().c_str()), key(L"other");
  IDispatch* image = container_.Dispatch().Get();
  EXPECT_EQ(S_OK, owner_->LoadIconByteImageFromDisk(path.bstrVal, key.bstrVal, &image));
  EXPECT_EQ(nullptr, image);
  EXPECT_EQ(2, GetNumber(List().Get(), L"Count"));
}

TEST_F(ImageOwnerFixture, CallsItselfALabel) {
  Variant word(L"");
  SysFreeString(word.bstrVal);
  ASSERT_EQ(S_OK, owner_->GetFriendlyString(&word.bstrVal));
  EXPECT_EQ(L"label", word.Text());
}

TEST_F(ImageOwnerFixture, AnswersLateBoundCallsInTheSameWay) {
  Variant word, list, nothing, key(L"first");
  EXPECT_EQ(S_OK, Call(owner_.Get(), L"GetFriendlyString", {}, word));
  EXPECT_EQ(L"label", word.Text());
  EXPECT_EQ(S_OK, Call(owner_.Get(), L"DeleteIconImage", {&key}, nothing));
  ASSERT_EQ(S_OK, Call(owner_.Get(), L"GetIconByteCollection", {}, list));
  ASSERT_EQ(VT_DISPATCH, list.vt);
  EXPECT_EQ(1, GetNumber(list.pdispVal, L"Count"));
  DISPPARAMS none = {};
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND,
            owner_->Invoke(77, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
}

TEST_F(ImageOwnerFixture, DescribesItselfAsTheTypeLibraryDoes) {
  ComPtr<ITypeInfo> info;
  UINT count = 0;
  EXPECT_EQ(S_OK, owner_->GetTypeInfoCount(&count));
  EXPECT_EQ(1u, count);
  ASSERT_EQ(S_OK, owner_->GetTypeInfo(0, 0, info.GetAddressOf()));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, info->GetTypeAttr(&attributes));
  EXPECT_TRUE(attributes->guid == kImageOwnerId);
  info->ReleaseTypeAttr(attributes);
  EXPECT_EQ(DISP_E_BADINDEX, owner_->GetTypeInfo(1, 0, info.ReleaseAndGetAddressOf()));
}

TEST_F(ImageOwnerFixture, RefusesNullPlaces) {
  EXPECT_EQ(E_POINTER, owner_->GetIconByteCollection(nullptr));
  EXPECT_EQ(E_POINTER, owner_->GetFriendlyString(nullptr));
  EXPECT_EQ(E_POINTER, owner_->LoadIconByteImageFromDisk(nullptr, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, owner_->GetTypeInfo(0, 0, nullptr));
  EXPECT_EQ(E_POINTER, owner_->GetTypeInfoCount(nullptr));
  EXPECT_EQ(E_POINTER, owner_->Invoke(0, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
  EXPECT_EQ(E_POINTER, owner_->GetIDsOfNames(IID_NULL, nullptr, 0, 0, nullptr));
}

}  // namespace
}  // namespace ocx_test
