// Which block is meant by a call of one of the dispatcher's addresses, and which blocks wait for their timer.
//
// The window procedures have a level each: a window's first thunk gets the lowest, one put before it the next
// free one. Window and level tell the block, whatever foreign procedure stands between two of them. Hooks and
// other callbacks name nothing that they belong to, so that each in use has an address to itself.
#pragma once

#include <vector>

#include "plumbing/entry_points.h"

namespace marklet::plumbing {

constexpr std::size_t kLevels = 32;  // thunks on one window
constexpr std::size_t kHooks = 64;   // in the process
constexpr std::size_t kCallbacks = 64;
constexpr std::size_t kMostParameters = 16;  // of a callback

// Null when the thunk has gone.
Word* BlockOfWindow(::HWND window, std::size_t level) noexcept;
Word* BlockOfHook(std::size_t slot) noexcept;
Word* BlockOfCallback(std::size_t slot) noexcept;

// Makes a binding: its level or slot, or the number of all when none is free.
std::size_t BindToWindow(::HWND window, Word* block);
std::size_t BindToHook(Word* block);
std::size_t BindToCallback(Word* block);

// The blocks that wait, by the timer of this thread that will release them. False when memory runs out.
bool RememberEnding(Word timer, Word* block) noexcept;
void ForgetEnding(Word timer) noexcept;
Word* FindEnding(Word timer) noexcept;

// For the end of a thread or of everything.
std::vector<Word*> EndingsOfThisThread();
std::vector<::HWND> BoundWindows();
std::vector<::HWND> BoundWindowsOfThisThread();
bool AnythingIsBound();

}  // namespace marklet::plumbing
