// The memory of a thunk. A block is addressed by word: the field at index n stands at byte n * sizeof(Word).
// On 32-bit systems it holds machine code too, which relies on these places; on others the same fields are
// served by functions of ours (entry_points.h).
#pragma once

#include <cstddef>

#include "plumbing/callback_object.h"

namespace marklet::plumbing {

inline Word& zData(std::size_t index, Word* block) { return block[index]; }

// A message table: the count, then up to 32 message numbers. A count of 0 is an empty table, -1 every
// message.
constexpr std::size_t kTableEntries = 32;
constexpr std::size_t kTableWords = 1 + kTableEntries;

namespace subclass_block {
constexpr std::size_t kCounter = 0;  // calls now inside the thunk
constexpr std::size_t kState = 1;    // one of the states below
constexpr std::size_t kWindow = 2;
constexpr std::size_t kEbMode = 3;          // the design environment's, or 0
constexpr std::size_t kCallWindowProc = 4;  // W or A
constexpr std::size_t kSetWindowLong = 5;   // W or A
constexpr std::size_t kVirtualFree = 6;
constexpr std::size_t kIsBadCodePtr = 7;
constexpr std::size_t kObject = 8;
constexpr std::size_t kOriginal = 9;  // the window procedure before ours
constexpr std::size_t kMethod = 10;
constexpr std::size_t kBeforeTable = 11;    // address
constexpr std::size_t kAfterTable = 12;     // address
constexpr std::size_t kUser = 13;           // lParamUser
constexpr std::size_t kDestroyWindow = 14;  // only for windows that end with their subclassing
constexpr std::size_t kSetTimer = 15;
constexpr std::size_t kKillTimer = 16;
constexpr std::size_t kTimer = 17;     // its identifier, 0 while none runs
constexpr std::size_t kUnicode = 107;  // -1 or 0, 16 bits
constexpr std::size_t kBefore = 108;
constexpr std::size_t kAfter = kBefore + kTableWords;
constexpr std::size_t kWords = kAfter + kTableWords;

constexpr Word kRunning = 0;
constexpr Word kUnsubclassed = 1;     // by ssc_UnSubclass
constexpr Word kMethodGone = 0x82;    // the method's code vanished, or the design environment stopped
constexpr Word kWindowGone = 0x8000;  // WM_NCDESTROY has passed
}  // namespace subclass_block

namespace hook_block {
constexpr std::size_t kCounter = 0;
constexpr std::size_t kShutdown = 1;
constexpr std::size_t kHookType = 2;
constexpr std::size_t kEbMode = 3;
constexpr std::size_t kCallNextHookEx = 4;
constexpr std::size_t kUnhookWindowsHookEx = 5;
constexpr std::size_t kLife = 6;  // a copy of the 32 bits at byte 8 of the object
constexpr std::size_t kIsBadCodePtr = 7;
constexpr std::size_t kObject = 8;
constexpr std::size_t kHook = 9;
constexpr std::size_t kMethod = 10;
constexpr std::size_t kBefore = 11;
constexpr std::size_t kAfter = 12;
constexpr std::size_t kUser = 13;
constexpr std::size_t kWords = 67;
}  // namespace hook_block

namespace callback_block {
constexpr std::size_t kObject = 0;
constexpr std::size_t kMethod = 1;
constexpr std::size_t kEbMode = 2;
constexpr std::size_t kIsBadCodePtr = 3;
constexpr std::size_t kKillTimer = 4;  // for a timer's callback
constexpr std::size_t kBlock = 6;      // its own address
constexpr std::size_t kParameterCount = 18;
constexpr std::size_t kOrdinal = 36;
constexpr std::size_t kWords = 37;
}  // namespace callback_block

// What is written at each index is the same on both kinds of system, so that this says which one it is.
constexpr bool kIs32Bit = sizeof(Word) == 4;
static_assert(!kIs32Bit || subclass_block::kWords * sizeof(Word) == 696);
static_assert(!kIs32Bit || hook_block::kWords * sizeof(Word) == 268);
static_assert(!kIs32Bit || callback_block::kWords * sizeof(Word) == 148);

// Zeroed memory for a block, from VirtualAlloc; null when there is none. It lives until ReleaseBlock, or
// until the thunk in it releases it.
Word* AllocateBlock(std::size_t words);
void ReleaseBlock(Word* block);

// The address of a system function that is called by way of a block, by the flag from the W or the A form of
// the call that finds its module; 0 when there is none.
Word zFnAddr(const char* module, const char* name, bool unicode);

// What stands at byte 8 of an object: hook thunks compare it to see whether the object still lives. It may
// have gone, as long as its memory hasn't.
std::uint32_t LifeAt(const void* object);

// The address of the method that stands `nOrdinal` places before the end of the object's table; 0 when the
// table has none there.
Word zAddressOf(const CallbackObject& object, Long nOrdinal);

}  // namespace marklet::plumbing
