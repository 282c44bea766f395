// A sink for what an object tells those who advised: its view, its saving, its name, its end.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

class Listener final : public IAdviseSink {
 public:
  Listener() = default;
  ~Listener() { EXPECT_EQ(0u, references_) << "references to the listener are left"; }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  // "OnViewChange", "OnSave", "OnRename", "OnClose", in order.
  std::vector<std::string> log;
  std::function<void(const std::string& call)> on_call;
  ComPtr<IMoniker> name;  // of the last OnRename

  int Count(const std::string& call) const {
    int count = 0;
    for (const std::string& entry : log) count += entry == call;
    return count;
  }
  ULONG References() const { return references_; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    *object = iid == IID_IUnknown || iid == IID_IAdviseSink ? this : nullptr;
    if (*object) AddRef();
    return *object ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  void STDMETHODCALLTYPE OnDataChange(FORMATETC*, STGMEDIUM*) override { Note("OnDataChange"); }
  void STDMETHODCALLTYPE OnViewChange(DWORD, LONG) override { Note("OnViewChange"); }
  void STDMETHODCALLTYPE OnRename(IMoniker* moniker) override {
    name = moniker;
    Note("OnRename");
  }
  void STDMETHODCALLTYPE OnSave() override { Note("OnSave"); }
  void STDMETHODCALLTYPE OnClose() override { Note("OnClose"); }

 private:
  void Note(const std::string& call) {
    log.push_back(call);
    if (on_call) on_call(call);
  }
  ULONG references_ = 0;
};

}  // namespace ocx_test
