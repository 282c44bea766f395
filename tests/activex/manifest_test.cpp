// The control in a program that has it described beside it: nothing is registered.
#include "activex/container.h"
#include "activex/server.h"

namespace ocx_test {
namespace {

class WithoutRegistration : public ::testing::Test {
 protected:
  void SetUp() override {
    Server::Get().Unregister();
    Server::Get().Install(false, L"user");
    const std::wstring server = ServerPath();
    const std::wstring manifest = server.substr(0, server.find_last_of(L'.')) + L".manifest";
    ACTCTXW description = {};
    description.cbSize = sizeof description;
    description.lpSource = manifest.c_str();
    context_ = CreateActCtxW(&description);
    ASSERT_NE(INVALID_HANDLE_VALUE, context_) << GetLastError();
  }
  void TearDown() override {
    Leave();
    if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
  }
  void Enter() { ASSERT_TRUE(ActivateActCtx(context_, &cookie_)); }
  void Leave() {
    if (cookie_) DeactivateActCtx(0, cookie_);
    cookie_ = 0;
  }

  HANDLE context_ = INVALID_HANDLE_VALUE;
  ULONG_PTR cookie_ = 0;
};

TEST_F(WithoutRegistration, TheManifestIsEnoughToCreateAControl) {
  CLSID class_id = {};
  ComPtr<IUnknown> control;
  ASSERT_NE(S_OK, CLSIDFromProgID(L"zvsMarklet.Marklet", &class_id)) << "it is registered";
  ASSERT_EQ(REGDB_E_CLASSNOTREG,
            CoCreateInstance(kClassId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(control.GetAddressOf())));
  Enter();
  // The system may give the name a class of its own, which stands for ours.
  ASSERT_EQ(S_OK, CLSIDFromProgID(L"zvsMarklet.Marklet", &class_id));
  ASSERT_EQ(S_OK,
            CoCreateInstance(class_id, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(control.GetAddressOf())));
  ComPtr<IPropertyPage2> page;
  constexpr GUID kPageId = {0xE7111604, 0x8459, 0x4582, {0xBA, 0xD0, 0x28, 0x91, 0x5B, 0x59, 0xAB, 0x15}};
  EXPECT_EQ(S_OK,
            CoCreateInstance(kPageId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(page.GetAddressOf())));
  Leave();
  EXPECT_EQ(S_OK, As<IOleObject>(control)->GetUserClassID(&class_id));
  EXPECT_EQ(kClassId, class_id);
  Container container;
  container.HostObject(control);
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->InitNew());
  EXPECT_EQ(S_OK, container.Activate());
  PutText(container.Dispatch().Get(), L"Caption", L"beside");
  EXPECT_EQ(L"beside", GetText(container.Dispatch().Get(), L"Caption"));
}

TEST_F(WithoutRegistration, TheManifestNamesTheTypeLibraryAndTheTraits) {
  Enter();
  Variant path;
  path.vt = VT_BSTR;
  path.bstrVal = nullptr;
  EXPECT_EQ(S_OK, QueryPathOfRegTypeLib(kLibraryId, 3, 0, 0, &path.bstrVal));
  const auto data = [](ULONG section, const GUID& guid) {
    ACTCTX_SECTION_KEYED_DATA found = {};
    found.cbSize = sizeof found;
    return FindActCtxSectionGuid(0, nullptr, section, &guid, &found) != FALSE;
  };
  EXPECT_TRUE(data(ACTIVATION_CONTEXT_SECTION_COM_SERVER_REDIRECTION, kClassId));
  EXPECT_TRUE(data(ACTIVATION_CONTEXT_SECTION_COM_TYPE_LIBRARY_REDIRECTION, kLibraryId));
  EXPECT_TRUE(data(ACTIVATION_CONTEXT_SECTION_COM_INTERFACE_REDIRECTION, kDispatchId));
  EXPECT_TRUE(data(ACTIVATION_CONTEXT_SECTION_COM_INTERFACE_REDIRECTION, kEventsId));
  // What an uncreated control's traits are read from.
  ComPtr<IOleObject> object;
  DWORD status = 0;
  ASSERT_EQ(S_OK,
            CoCreateInstance(kClassId, nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(object.GetAddressOf())));
  EXPECT_EQ(S_OK, OleRegGetMiscStatus(kClassId, DVASPECT_CONTENT, &status));
  EXPECT_EQ(139665u, status);
}

}  // namespace
}  // namespace ocx_test
