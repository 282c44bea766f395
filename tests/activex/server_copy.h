// A second copy of the server, which can be unloaded while the one of the other tests stays.
#pragma once

#include <functional>
#include <string>

#include "activex/server.h"

namespace ocx_test {

// A file of its own, so that the system takes it for another module.
class ServerCopy {
 public:
  explicit ServerCopy(const wchar_t* file_name);
  ~ServerCopy();
  ServerCopy(const ServerCopy&) = delete;
  ServerCopy& operator=(const ServerCopy&) = delete;

  // Each Load wants an Unload.
  bool Load();
  void Unload() { FreeLibrary(module_); }
  bool IsLoaded() const { return GetModuleHandleW(path_.c_str()) != nullptr; }
  // The module of the last Load, even when it is gone.
  HMODULE Module() const { return module_; }

  ComPtr<IUnknown> CreateControl() const;
  HRESULT CanUnloadNow() const;

 private:
  FARPROC Entry(const char* name) const;

  std::wstring path_;
  HMODULE module_ = nullptr;
};

// A thread of a host.
class HostThread {
 public:
  explicit HostThread(std::function<void()> body);
  ~HostThread();
  HostThread(const HostThread&) = delete;
  HostThread& operator=(const HostThread&) = delete;

  // Waits for the thread's end; false when that doesn't come.
  bool Join();

 private:
  std::function<void()> body_;
  HANDLE thread_;
};

// Runs `body` on a thread of its own to the thread's end; false when that doesn't come.
bool RunOnThread(std::function<void()> body);

// Lets one thread wait for another.
class Signal {
 public:
  Signal() : event_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {}
  ~Signal() { CloseHandle(event_); }
  Signal(const Signal&) = delete;
  Signal& operator=(const Signal&) = delete;
  void Give() { SetEvent(event_); }
  bool Wait();

 private:
  HANDLE event_;
};

// A single-threaded apartment with OLE for the thread.
class Apartment {
 public:
  Apartment() { OleInitialize(nullptr); }
  ~Apartment() { OleUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

}  // namespace ocx_test
