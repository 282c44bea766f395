// The answers to browsers.
#include "activex/server.h"

namespace ocx_test {
namespace {

const IID* const kInitialising[] = {&IID_IPersistStorage, &IID_IPersistStream, &IID_IPersistStreamInit,
                                    &IID_IPersistPropertyBag};

class Safety : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(S_OK,
              CreateControl()->QueryInterface(kSafetyId, reinterpret_cast<void**>(safety_.GetAddressOf())));
  }
  ComPtr<IObjectSafety> safety_;
  DWORD supported_ = 77, enabled_ = 77;
};

TEST_F(Safety, IsGivenForScripting) {
  EXPECT_EQ(S_OK, safety_->GetInterfaceSafetyOptions(IID_IDispatch, &supported_, &enabled_));
  EXPECT_EQ(3u, supported_);
  EXPECT_EQ(1u, enabled_);
}

TEST_F(Safety, IsGivenForInitialisation) {
  for (const IID* iid : kInitialising) {
    EXPECT_EQ(S_OK, safety_->GetInterfaceSafetyOptions(*iid, &supported_, &enabled_));
    EXPECT_EQ(3u, supported_);
    EXPECT_EQ(2u, enabled_);
    enabled_ = 77;
  }
}

TEST_F(Safety, OfAnUnknownInterfaceIsRefusedWithTheSupportedOptionsSet) {
  EXPECT_EQ(E_NOINTERFACE, safety_->GetInterfaceSafetyOptions(IID_IStream, &supported_, &enabled_));
  EXPECT_EQ(3u, supported_);
  EXPECT_EQ(77u, enabled_);
  EXPECT_EQ(E_NOINTERFACE, safety_->SetInterfaceSafetyOptions(IID_IStream, 3, 1));
}

TEST_F(Safety, CanBeAskedForButNotSwitchedOff) {
  EXPECT_EQ(S_OK, safety_->SetInterfaceSafetyOptions(IID_IDispatch, 3, 1));
  EXPECT_EQ(S_OK, safety_->SetInterfaceSafetyOptions(IID_IDispatch, 1, 1));
  EXPECT_EQ(S_OK, safety_->SetInterfaceSafetyOptions(IID_IDispatch, 1, 3));
  EXPECT_EQ(E_FAIL, safety_->SetInterfaceSafetyOptions(IID_IDispatch, 1, 0));
  EXPECT_EQ(E_FAIL, safety_->SetInterfaceSafetyOptions(IID_IDispatch, 3, 3));
  for (const IID* iid : kInitialising) {
    EXPECT_EQ(S_OK, safety_->SetInterfaceSafetyOptions(*iid, 2, 2));
    EXPECT_EQ(S_OK, safety_->SetInterfaceSafetyOptions(*iid, 3, 2));
    EXPECT_EQ(E_FAIL, safety_->SetInterfaceSafetyOptions(*iid, 2, 0));
    EXPECT_EQ(E_FAIL, safety_->SetInterfaceSafetyOptions(*iid, 3, 1));
  }
  EXPECT_EQ(S_OK, safety_->GetInterfaceSafetyOptions(IID_IDispatch, &supported_, &enabled_));
  EXPECT_EQ(1u, enabled_) << "nothing has changed";
}

TEST_F(Safety, OfNoInterfaceSucceedsAndLeavesTheEnabledOptions) {
  // C callers pass a null pointer where C++ has a reference.
  void** const table = *reinterpret_cast<void***>(safety_.Get());
  using GetOptions = HRESULT(STDMETHODCALLTYPE*)(IObjectSafety*, const IID*, DWORD*, DWORD*);
  using SetOptions = HRESULT(STDMETHODCALLTYPE*)(IObjectSafety*, const IID*, DWORD, DWORD);
  const auto get = reinterpret_cast<GetOptions>(reinterpret_cast<void (*)()>(table[3]));
  const auto set = reinterpret_cast<SetOptions>(reinterpret_cast<void (*)()>(table[4]));
  EXPECT_EQ(S_OK, get(safety_.Get(), nullptr, &supported_, &enabled_));
  EXPECT_EQ(3u, supported_);
  EXPECT_EQ(77u, enabled_);
  EXPECT_EQ(S_OK, set(safety_.Get(), nullptr, 0, 0));
}

}  // namespace
}  // namespace ocx_test
