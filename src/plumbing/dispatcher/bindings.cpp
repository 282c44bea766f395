#include "plumbing/dispatcher/bindings.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace marklet::plumbing {
namespace {

class Lock {
 public:
  ~Lock() { ::ReleaseSRWLockExclusive(&lock); }
  Lock() { ::AcquireSRWLockExclusive(&lock); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;
  static inline SRWLOCK lock = SRWLOCK_INIT;
};

class SharedLock {
 public:
  SharedLock() { ::AcquireSRWLockShared(&Lock::lock); }
  ~SharedLock() { ::ReleaseSRWLockShared(&Lock::lock); }
  SharedLock(const SharedLock&) = delete;
  SharedLock& operator=(const SharedLock&) = delete;
};

struct Level {
  ::HWND window;
  std::size_t level;
  friend bool operator==(const Level&, const Level&) = default;
};
struct LevelHash {
  // The lowest bits of handles are equal.
  std::size_t operator()(const Level& key) const noexcept {
    return reinterpret_cast<std::size_t>(key.window) * kLevels + key.level;
  }
};

// The window can't be asked for its thread once it has gone.
struct Bound {
  Word* block;
  DWORD thread;
};

struct Timer {
  DWORD thread;
  Word timer;
  friend bool operator==(const Timer&, const Timer&) = default;
};
struct TimerHash {
  std::size_t operator()(const Timer& key) const noexcept {
    return static_cast<std::size_t>(key.timer) ^ key.thread;
  }
};

struct Bindings {
  std::unordered_map<Level, Bound, LevelHash> windows;
  std::unordered_map<Timer, Word*, TimerHash> endings;
  std::array<Word*, kHooks> hooks = {};
  std::array<Word*, kCallbacks> callbacks = {};
};
Bindings bindings;

Timer OfThisThread(Word timer) { return {::GetCurrentThreadId(), timer}; }

template <std::size_t count>
std::size_t BindToSlot(std::array<Word*, count>& slots, Word* block) {
  const Lock lock;
  const auto free = std::find(slots.begin(), slots.end(), nullptr);
  if (free != slots.end()) *free = block;
  return static_cast<std::size_t>(free - slots.begin());
}

template <std::size_t count>
void FreeSlot(std::array<Word*, count>& slots, Word* block) {
  const Lock lock;
  std::replace(slots.begin(), slots.end(), block, static_cast<Word*>(nullptr));
}

template <std::size_t count>
bool AnyOf(const std::array<Word*, count>& slots) {
  return std::any_of(slots.begin(), slots.end(), [](const Word* block) { return block != nullptr; });
}

}  // namespace

Word* BlockOfWindow(::HWND window, std::size_t level) noexcept {
  const SharedLock lock;
  const auto found = bindings.windows.find({window, level});
  return found == bindings.windows.end() ? nullptr : found->second.block;
}

Word* BlockOfHook(std::size_t slot) noexcept {
  const SharedLock lock;
  return bindings.hooks[slot];
}

Word* BlockOfCallback(std::size_t slot) noexcept {
  const SharedLock lock;
  return bindings.callbacks[slot];
}

std::size_t BindToWindow(::HWND window, Word* block) {
  const Lock lock;
  const Bound binding = {block, ::GetCurrentThreadId()};
  for (std::size_t level = 0; level < kLevels; ++level)
    if (bindings.windows.emplace(Level{window, level}, binding).second) return level;
  // The window has its procedure back from those that wait for their timer.
  for (std::size_t level = 0; level < kLevels; ++level) {
    Bound& bound = bindings.windows.find({window, level})->second;
    if (zData(subclass_block::kTimer, bound.block) == 0) continue;
    bound = binding;
    return level;
  }
  return kLevels;
}

std::size_t BindToHook(Word* block) { return BindToSlot(bindings.hooks, block); }
std::size_t BindToCallback(Word* block) { return BindToSlot(bindings.callbacks, block); }

void UnbindWindowProcedure(Word* block) {
  const Lock lock;
  const auto window = PointerIn<::HWND>(zData(subclass_block::kWindow, block));
  for (std::size_t level = 0; level < kLevels; ++level) {
    const auto found = bindings.windows.find({window, level});
    if (found == bindings.windows.end() || found->second.block != block) continue;
    bindings.windows.erase(found);
    return;
  }
}

void UnbindHookProcedure(Word* block) { FreeSlot(bindings.hooks, block); }
void UnbindCallback(Word* block) { FreeSlot(bindings.callbacks, block); }

bool RememberEnding(Word timer, Word* block) noexcept {
  const Lock lock;
  return IgnoreErrors([&] { bindings.endings.emplace(OfThisThread(timer), block); });
}

void ForgetEnding(Word timer) noexcept {
  const Lock lock;
  bindings.endings.erase(OfThisThread(timer));
}

Word* FindEnding(Word timer) noexcept {
  const SharedLock lock;
  const auto found = bindings.endings.find(OfThisThread(timer));
  return found == bindings.endings.end() ? nullptr : found->second;
}

std::vector<Word*> EndingsOfThisThread() {
  const SharedLock lock;
  std::vector<Word*> blocks;
  for (const auto& [timer, block] : bindings.endings)
    if (timer.thread == ::GetCurrentThreadId()) blocks.push_back(block);
  return blocks;
}

namespace {

template <typename Takes>
std::vector<::HWND> WindowsWhere(Takes&& takes) {
  const SharedLock lock;
  std::vector<::HWND> windows;
  for (const auto& [key, bound] : bindings.windows)
    if (takes(bound) && std::find(windows.begin(), windows.end(), key.window) == windows.end())
      windows.push_back(key.window);
  return windows;
}

}  // namespace

std::vector<::HWND> BoundWindows() {
  return WindowsWhere([](const Bound&) { return true; });
}

std::vector<::HWND> BoundWindowsOfThisThread() {
  return WindowsWhere([](const Bound& bound) { return bound.thread == ::GetCurrentThreadId(); });
}

bool AnythingIsBound() {
  const SharedLock lock;
  return !bindings.windows.empty() || !bindings.endings.empty() || AnyOf(bindings.hooks) ||
         AnyOf(bindings.callbacks);
}

DWORD BlockProtection() { return PAGE_READWRITE; }

}  // namespace marklet::plumbing
