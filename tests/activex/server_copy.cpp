#include "activex/server_copy.h"

namespace ocx_test {
namespace {

constexpr DWORD kLongestWait = 20000;

DWORD WINAPI RunBody(void* body) {
  (*static_cast<const std::function<void()>*>(body))();
  return 0;
}

}  // namespace

ServerCopy::ServerCopy(const wchar_t* file_name) : path_(FolderOfProgram() + L"\\" + file_name) {
  EXPECT_TRUE(CopyFileW(ServerPath().c_str(), path_.c_str(), FALSE));
}

ServerCopy::~ServerCopy() { DeleteFileW(path_.c_str()); }

bool ServerCopy::Load() {
  const HMODULE module = LoadLibraryW(path_.c_str());
  EXPECT_TRUE(module) << "the copy could not be loaded";
  if (module) module_ = module;
  return module != nullptr;
}

FARPROC ServerCopy::Entry(const char* name) const { return GetProcAddress(module_, name); }

ComPtr<IUnknown> ServerCopy::CreateControl() const {
  using Getter = HRESULT(WINAPI*)(REFCLSID, REFIID, void**);
  const auto get = reinterpret_cast<Getter>(reinterpret_cast<void (*)()>(Entry("DllGetClassObject")));
  ComPtr<IClassFactory> factory;
  ComPtr<IUnknown> control;
  EXPECT_EQ(S_OK, get(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  if (factory && FAILED(factory->CreateInstance(nullptr, IID_PPV_ARGS(control.GetAddressOf()))))
    control.Reset();
  EXPECT_TRUE(control) << "no control was made";
  return control;
}

HRESULT ServerCopy::CanUnloadNow() const {
  using Asker = HRESULT(WINAPI*)();
  return reinterpret_cast<Asker>(reinterpret_cast<void (*)()>(Entry("DllCanUnloadNow")))();
}

HostThread::HostThread(std::function<void()> body)
    : body_(std::move(body)), thread_(CreateThread(nullptr, 0, RunBody, &body_, 0, nullptr)) {}

// A thread that is still there uses what is about to go.
HostThread::~HostThread() {
  EXPECT_TRUE(Join()) << "a thread never ended";
  CloseHandle(thread_);
}

bool HostThread::Join() { return WaitForSingleObject(thread_, kLongestWait) == WAIT_OBJECT_0; }

bool RunOnThread(std::function<void()> body) { return HostThread(std::move(body)).Join(); }

bool Signal::Wait() { return WaitForSingleObject(event_, kLongestWait) == WAIT_OBJECT_0; }

}  // namespace ocx_test
