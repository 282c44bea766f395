// The addresses of the dispatcher that serve as window procedures, one a level, and their end with a thread
// or the module.
#include "plumbing/dispatcher/bindings.h"
#include "plumbing/dispatcher/dispatch.h"
#include "plumbing/dispatcher/numbered.h"
#include "plumbing/unloading.h"

namespace marklet::plumbing {
namespace {

using namespace subclass_block;

// Somebody who subclassed the window after a thunk, and was cut off with it, may still call the thunk's
// address.
LRESULT CallDefault(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto call = ::IsWindowUnicode(window) ? ::DefWindowProcW : ::DefWindowProcA;
  return call(window, message, wparam, lparam);
}

template <std::size_t level>
LRESULT CALLBACK WindowProcedure(::HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  Word* const block = BlockOfWindow(window, level);
  return block ? RunSubclass(block, window, message, wparam, lparam)
               : CallDefault(window, message, wparam, lparam);
}

constexpr auto kProcedures = Numbered<WNDPROC, kLevels>(
    [](auto level) -> WNDPROC { return &WindowProcedure<decltype(level)::value>; });

// The newest thunk of the window, if its procedure is one.
Word* BlockInPlace(::HWND window) {
  for (std::size_t level = 0; level < kLevels; ++level) {
    Word* const block = BlockOfWindow(window, level);
    if (!block) continue;
    const auto current = zData(kUnicode, block) != 0 ? ::GetWindowLongPtrW : ::GetWindowLongPtrA;
    if (current(window, GWLP_WNDPROC) == reinterpret_cast<Word>(kProcedures[level])) return block;
  }
  return nullptr;
}

// Gives the window back what it had before each thunk that nothing stands before, and lets all of them go.
void EndThunksOf(::HWND window) {
  while (Word* const block = BlockInPlace(window)) {
    const auto set_window_long = zData(kUnicode, block) != 0 ? ::SetWindowLongPtrW : ::SetWindowLongPtrA;
    set_window_long(window, GWLP_WNDPROC, zData(kOriginal, block));
    ReleaseSubclass(block);
  }
  for (std::size_t level = 0; level < kLevels; ++level)
    if (Word* const block = BlockOfWindow(window, level)) ReleaseSubclass(block);
}

void ReleaseEndings() {
  for (Word* const block : EndingsOfThisThread()) ReleaseSubclass(block);
}

}  // namespace

Word BindWindowProcedure(Word* block) {
  std::size_t level = kLevels;
  IgnoreErrors([&] { level = BindToWindow(PointerIn<::HWND>(zData(kWindow, block)), block); });
  return level < kLevels ? reinterpret_cast<Word>(kProcedures[level]) : 0;
}

bool ThunksNeedModule() {
  IgnoreErrors(ReleaseEndings);
  return AnythingIsBound();
}

void EndThunksOfThread() {
  IgnoreErrors(ReleaseEndings);
  IgnoreErrors([] {
    for (const ::HWND window : BoundWindowsOfThisThread()) EndThunksOf(window);
  });
}

void EndAllThunks() {
  IgnoreErrors(ReleaseEndings);
  IgnoreErrors([] {
    for (const ::HWND window : BoundWindows()) EndThunksOf(window);
  });
}

}  // namespace marklet::plumbing
