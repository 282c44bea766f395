#include "plumbing/thunk_block.h"

#include <string>

#include "plumbing/entry_points.h"

namespace marklet::plumbing {

Word* AllocateBlock(std::size_t words) {
  return static_cast<Word*>(::VirtualAlloc(nullptr, words * sizeof(Word), MEM_COMMIT, BlockProtection()));
}

void ReleaseBlock(Word* block) { ::VirtualFree(block, 0, MEM_RELEASE); }

Word zFnAddr(const char* module, const char* name, bool unicode) {
  const std::string narrow(module);
  const ::HMODULE library = unicode ? ::GetModuleHandleW(std::wstring(narrow.begin(), narrow.end()).c_str())
                                    : ::GetModuleHandleA(module);
  return library ? reinterpret_cast<Word>(::GetProcAddress(library, name)) : 0;
}

std::uint32_t LifeAt(const void* object) { return static_cast<const volatile std::uint32_t*>(object)[2]; }

Word zAddressOf(const CallbackObject& object, Long nOrdinal) {
  const auto methods = object.Methods();
  if (nOrdinal < 1 || static_cast<std::size_t>(nOrdinal) > methods.size()) return 0;
  return reinterpret_cast<Word>(methods[methods.size() - static_cast<std::size_t>(nOrdinal)]);
}

}  // namespace marklet::plumbing
