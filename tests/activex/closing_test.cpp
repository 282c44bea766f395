// The end of a control's work, and what those hear who advised: saved, renamed, closed.
#include <string>

#include "activex/container.h"
#include "activex/listener.h"

namespace ocx_test {
namespace {

using Log = std::vector<std::string>;

ComPtr<IStream> NewStream() {
  ComPtr<IStream> stream;
  EXPECT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, stream.GetAddressOf()));
  return stream;
}

ComPtr<IStorage> NewStorage() {
  ComPtr<ILockBytes> bytes;
  ComPtr<IStorage> storage;
  EXPECT_EQ(S_OK, CreateILockBytesOnHGlobal(nullptr, TRUE, bytes.GetAddressOf()));
  EXPECT_EQ(S_OK,
            StgCreateDocfileOnILockBytes(bytes.Get(), STGM_CREATE | STGM_READWRITE | STGM_SHARE_EXCLUSIVE, 0,
                                         storage.GetAddressOf()));
  return storage;
}

ComPtr<IMoniker> NewName(const wchar_t* name) {
  ComPtr<IMoniker> moniker;
  EXPECT_EQ(S_OK, CreateItemMoniker(L"!", name, moniker.GetAddressOf()));
  return moniker;
}

// Takes whatever it is given.
class AnyBag final : public IPropertyBag {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  HRESULT STDMETHODCALLTYPE Read(LPCOLESTR, VARIANT*, IErrorLog*) override { return E_INVALIDARG; }
  HRESULT STDMETHODCALLTYPE Write(LPCOLESTR, VARIANT*) override { return S_OK; }
};

class Closing : public ::testing::Test {
 protected:
  void SetUp() override {
    container_.Host();
    object_ = As<IOleObject>(container_.Object());
    ASSERT_EQ(S_OK, object_->Advise(&listener_, &cookie_));
  }
  void TearDown() override {
    if (cookie_ && object_) object_->Unadvise(cookie_);
  }
  void Change(const wchar_t* caption = L"changed") {
    PutText(As<IDispatch>(object_).Get(), L"Caption", caption);
  }
  HRESULT SaveToStream(bool clear_dirty) {
    return As<IPersistStreamInit>(object_)->Save(NewStream().Get(), clear_dirty);
  }

  Container container_;
  Listener listener_;
  ComPtr<IOleObject> object_;
  DWORD cookie_ = 0;
};

// --- Saving at the end ------------------------------------------------------------------------------------

TEST_F(Closing, SavesAsTheOptionSays) {
  struct Case {
    DWORD option;
    bool dirty;
    int saves;
  };
  // A control in a document is saved without a question: the document is what the user saves.
  const Case cases[] = {
      {OLECLOSE_SAVEIFDIRTY, false, 0}, {OLECLOSE_SAVEIFDIRTY, true, 1}, {OLECLOSE_NOSAVE, false, 0},
      {OLECLOSE_NOSAVE, true, 0},       {OLECLOSE_PROMPTSAVE, false, 0}, {OLECLOSE_PROMPTSAVE, true, 1},
  };
  for (const bool active : {false, true})
    for (const Case& c : cases) {
      SCOPED_TRACE(testing::Message()
                   << "option " << c.option << (c.dirty ? ", dirty" : "") << (active ? ", active" : ""));
      ASSERT_EQ(S_OK, SaveToStream(true));
      if (active) {
        ASSERT_EQ(S_OK, container_.Activate());
      }
      if (c.dirty) Change();
      container_.log.clear();
      listener_.log.clear();
      EXPECT_EQ(S_OK, object_->Close(c.option));
      EXPECT_EQ(c.saves, container_.Count("SaveObject"));
      EXPECT_EQ(Log{"OnClose"}, listener_.log);
      EXPECT_FALSE(container_.ControlWindow());
    }
}

TEST_F(Closing, IsToldAfterTheSaving) {
  Change();
  Log order;
  container_.on_call = [&](const std::string& call) {
    order.push_back(call);
    if (call == "SaveObject") {
      EXPECT_EQ(S_OK, SaveToStream(true));
    }
  };
  listener_.on_call = [&](const std::string& call) { order.push_back(call); };
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ((Log{"SaveObject", "OnSave", "OnClose"}), order);
  order.clear();
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ(Log{"OnClose"}, order) << "it was saved";
}

TEST_F(Closing, GoesOnWithoutASiteThatSaves) {
  Change();
  container_.save_answer = E_FAIL;
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ(1, listener_.Count("OnClose"));
  EXPECT_EQ(S_OK, object_->SetClientSite(nullptr));
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ(2, listener_.Count("OnClose"));
}

TEST_F(Closing, IsOneWhateverComesInside) {
  Change();
  container_.on_call = [&](const std::string& call) {
    if (call == "SaveObject") {
      EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
    }
  };
  listener_.on_call = [&](const std::string& call) {
    if (call == "OnClose") {
      EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
    }
  };
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ(1, container_.Count("SaveObject"));
  EXPECT_EQ(Log{"OnClose"}, listener_.log);
}

TEST_F(Closing, AListenerMayLeaveInsideAndTheControlMayGo) {
  listener_.on_call = [&](const std::string& call) {
    if (call != "OnClose") return;
    EXPECT_EQ(S_OK, object_->Unadvise(cookie_));
    cookie_ = 0;
    EXPECT_EQ(S_OK, object_->SetClientSite(nullptr));
    object_.Reset();
    container_.Drop();
  };
  IOleObject* const raw = object_.Get();
  EXPECT_EQ(S_OK, raw->Close(OLECLOSE_NOSAVE));
  EXPECT_EQ(0u, listener_.References());
  EXPECT_EQ(0u, container_.SiteReferences());
}

TEST_F(Closing, TheSiteMayLetGoWhileItSaves) {
  Change();
  container_.on_call = [&](const std::string& call) {
    if (call != "SaveObject") return;
    EXPECT_EQ(S_OK, object_->SetClientSite(nullptr));
    container_.Drop();
  };
  EXPECT_EQ(S_OK, object_->Close(OLECLOSE_SAVEIFDIRTY));
  EXPECT_EQ(1, listener_.Count("OnClose"));
}

// --- Saved ------------------------------------------------------------------------------------------------

TEST_F(Closing, AListenerHearsOfEachSavingByStreamAndBag) {
  Change();
  EXPECT_EQ(S_OK, SaveToStream(true));
  EXPECT_EQ(Log{"OnSave"}, listener_.log);
  AnyBag bag;
  EXPECT_EQ(S_OK, As<IPersistPropertyBag>(object_)->Save(&bag, TRUE, TRUE));
  EXPECT_EQ((Log{"OnSave", "OnSave"}), listener_.log);
}

TEST_F(Closing, ACopyIsNoSaving) {
  Change();
  EXPECT_EQ(S_OK, SaveToStream(false));
  AnyBag bag;
  EXPECT_EQ(S_OK, As<IPersistPropertyBag>(object_)->Save(&bag, FALSE, TRUE));
  EXPECT_EQ(Log{}, listener_.log);
}

TEST_F(Closing, AListenerHearsWhenTheSavingToAStorageIsComplete) {
  Change();
  const auto storage = NewStorage();
  const auto persist = As<IPersistStorage>(object_);
  EXPECT_EQ(S_OK, persist->Save(storage.Get(), FALSE));
  EXPECT_EQ(Log{}, listener_.log);
  EXPECT_EQ(S_OK, persist->SaveCompleted(storage.Get()));
  EXPECT_EQ(Log{"OnSave"}, listener_.log);
  EXPECT_EQ(S_OK, persist->HandsOffStorage());
  EXPECT_EQ(S_OK, persist->SaveCompleted(storage.Get()));
  EXPECT_EQ(Log{"OnSave"}, listener_.log) << "nothing was saved in between";
  EXPECT_EQ(S_OK, persist->Save(NewStorage().Get(), FALSE));
  EXPECT_EQ(S_OK, persist->SaveCompleted(nullptr));
  EXPECT_EQ(Log{"OnSave"}, listener_.log) << "that was a copy";
}

TEST_F(Closing, ASavingThatFailedIsNotTold) {
  Change();
  class Full final : public IStream {
   public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** object) override {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE Read(void*, ULONG, ULONG*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Write(const void*, ULONG, ULONG*) override { return STG_E_MEDIUMFULL; }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER, DWORD, ULARGE_INTEGER*) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*, ULARGE_INTEGER*) override {
      return E_FAIL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_FAIL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_FAIL; }
  } full;
  EXPECT_EQ(STG_E_MEDIUMFULL, As<IPersistStreamInit>(object_)->Save(&full, TRUE));
  EXPECT_EQ(Log{}, listener_.log);
}

TEST_F(Closing, TheControlMayGoWhenAListenerHearsOfTheSaving) {
  Change();
  listener_.on_call = [&](const std::string&) {
    object_->Unadvise(cookie_);
    cookie_ = 0;
    container_.Close();
    object_.Reset();
  };
  const auto stream = NewStream();
  IPersistStreamInit* const raw = As<IPersistStreamInit>(object_).Get();  // the control keeps it alive
  EXPECT_EQ(S_OK, raw->Save(stream.Get(), TRUE));
  EXPECT_FALSE(container_.Object());
}

// --- Renamed ----------------------------------------------------------------------------------------------

TEST_F(Closing, AListenerHearsOfTheNewFullName) {
  const auto name = NewName(L"Label1");
  EXPECT_EQ(S_OK, object_->SetMoniker(OLEWHICHMK_OBJFULL, name.Get()));
  EXPECT_EQ(Log{"OnRename"}, listener_.log);
  EXPECT_EQ(name.Get(), listener_.name.Get());
  listener_.name.Reset();
}

// A container that tells a part of the name is asked for the whole.
TEST_F(Closing, AListenerHearsTheFullNameWhenAPartOfItIsAnother) {
  container_.moniker = NewName(L"whole");
  for (const DWORD which : {DWORD{OLEWHICHMK_CONTAINER}, DWORD{OLEWHICHMK_OBJREL}}) {
    listener_.log.clear();
    EXPECT_EQ(S_OK, object_->SetMoniker(which, NewName(L"part").Get()));
    EXPECT_EQ(Log{"OnRename"}, listener_.log);
    EXPECT_EQ(container_.moniker.Get(), listener_.name.Get());
  }
  listener_.name.Reset();
  container_.moniker.Reset();
  listener_.log.clear();
  EXPECT_EQ(S_OK, object_->SetMoniker(OLEWHICHMK_CONTAINER, NewName(L"part").Get()));
  EXPECT_EQ(S_OK, object_->SetMoniker(OLEWHICHMK_OBJFULL, nullptr));
  EXPECT_EQ(Log{}, listener_.log) << "there is no name to tell";
  EXPECT_EQ(E_INVALIDARG, object_->SetMoniker(4, NewName(L"what").Get()));
}

TEST_F(Closing, ItsNameIsTheSites) {
  ComPtr<IMoniker> name;
  EXPECT_TRUE(
      FAILED(object_->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, name.GetAddressOf())));
  container_.moniker = NewName(L"whole");
  EXPECT_EQ(S_OK, object_->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, name.GetAddressOf()));
  EXPECT_EQ(container_.moniker.Get(), name.Get());
  name.Reset();
  EXPECT_EQ(S_OK, object_->SetClientSite(nullptr));
  EXPECT_TRUE(
      FAILED(object_->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, name.GetAddressOf())));
  EXPECT_FALSE(name);
  EXPECT_EQ(E_POINTER, object_->GetMoniker(OLEGETMONIKER_ONLYIFTHERE, OLEWHICHMK_OBJFULL, nullptr));
}

}  // namespace
}  // namespace ocx_test
