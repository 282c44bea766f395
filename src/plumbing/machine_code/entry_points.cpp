// 32-bit systems: the machine code of thunks.S, copied into each block.
#include "plumbing/entry_points.h"

#include <cstdint>
#include <cstring>

#include "plumbing/unloading.h"

namespace marklet::plumbing {

extern "C" {
extern const std::uint8_t marklet_subclass_code[];
extern const std::uint8_t marklet_hook_code[];
extern const std::uint8_t marklet_callback_code[];
}

namespace {

// Where code stands in a block, in bytes, and the words in it that hold the block's own address.
constexpr std::size_t kSubclassCode = 72, kSubclassCodeEnd = 428, kWindowProcedure = 96;
constexpr std::size_t kTimerPatch = 20, kWindowPatch = 26;
constexpr std::size_t kHookCode = 56, kHookCodeEnd = 268, kHookPatch = 16;
constexpr std::size_t kCallbackCode = 20, kCallbackCodeEnd = 144, kReturnedBytes = 98;
constexpr Word kMostParameters = 0xFFFF / sizeof(Word);

std::uint8_t* ByteOf(Word* block, std::size_t offset) {
  return reinterpret_cast<std::uint8_t*>(block) + offset;
}

Word AddressOf(Word* block, std::size_t offset = 0) { return reinterpret_cast<Word>(ByteOf(block, offset)); }

}  // namespace

DWORD BlockProtection() { return PAGE_EXECUTE_READWRITE; }

Word BindWindowProcedure(Word* block) {
  std::memcpy(ByteOf(block, kSubclassCode), marklet_subclass_code, kSubclassCodeEnd - kSubclassCode);
  zData(kTimerPatch, block) = zData(kWindowPatch, block) = AddressOf(block);
  return AddressOf(block, kWindowProcedure);
}

Word BindHookProcedure(Word* block) {
  std::memcpy(ByteOf(block, kHookCode), marklet_hook_code, kHookCodeEnd - kHookCode);
  zData(kHookPatch, block) = AddressOf(block);
  return AddressOf(block, kHookCode);
}

Word BindCallback(Word* block) {
  const Word count = zData(callback_block::kParameterCount, block);
  if (count > kMostParameters) return 0;
  std::memcpy(ByteOf(block, kCallbackCode), marklet_callback_code, kCallbackCodeEnd - kCallbackCode);
  zData(callback_block::kBlock, block) = AddressOf(block);
  zData(callback_block::kParameterCount, block) = count;
  const auto bytes = static_cast<std::uint16_t>(static_cast<std::size_t>(count) * sizeof(Word));
  std::memcpy(ByteOf(block, kReturnedBytes), &bytes, sizeof bytes);
  return CallbackAddress(block);
}

Word CallbackAddress(Word* block) { return AddressOf(block, kCallbackCode); }

void UnbindWindowProcedure(Word*) {}
void UnbindHookProcedure(Word*) {}
void UnbindCallback(Word*) {}

bool ThunksNeedModule() { return false; }
void EndThunksOfThread() {}
void EndAllThunks() {}

}  // namespace marklet::plumbing
