#include "plumbing/csubclass_asm.h"
#include "plumbing/entry_points.h"

namespace marklet::plumbing {
namespace {

using namespace callback_block;

void Release(Word* block) {
  UnbindCallback(block);
  ReleaseBlock(block);
}

}  // namespace

// The design environment's address stays 0, whatever bIdeSafety says: nothing here runs in one.
Word CSubClassAsm::scb_SetCallbackAddr(Long nParamCount, Long nOrdinal, CallbackObject* oCallback,
                                       bool /*bIdeSafety*/, bool bIsTimerCallback) {
  CallbackObject& object = oCallback ? *oCallback : *this;
  const std::string key = ThunkKey(&object, nOrdinal);
  if (const Thunk* const thunk = callbacks_.Find(key)) return CallbackAddress(thunk->block);
  if (nParamCount < 0) return 0;
  const Word method = zAddressOf(object, nOrdinal);
  if (method == 0) return 0;
  Word* const block = callbacks_.NewBlock([&]() -> const std::string& { return key; }, kWords, object);
  if (!block) return 0;
  zData(kObject, block) = reinterpret_cast<Word>(&object);
  zData(kMethod, block) = method;
  zData(kIsBadCodePtr, block) = zFnAddr("kernel32", "IsBadCodePtr", true);
  if (bIsTimerCallback) zData(kKillTimer, block) = zFnAddr("user32", "KillTimer", true);
  zData(kParameterCount, block) = nParamCount;
  zData(kOrdinal, block) = nOrdinal;
  const Word address = BindCallback(block);
  if (address == 0) {
    callbacks_.Remove(key);
    ReleaseBlock(block);
  }
  return address;
}

void CSubClassAsm::scb_ReleaseCallback(Long nOrdinal, CallbackObject* oCallback) {
  const std::string key = ThunkKey(oCallback ? oCallback : this, nOrdinal);
  if (const Thunk* const thunk = callbacks_.Find(key)) Release(thunk->block);
  callbacks_.Remove(key);
}

void CSubClassAsm::scb_TerminateCallbacks() {
  for (const Thunk& thunk : callbacks_.FromTheLast()) Release(thunk.block);
  callbacks_.Clear();
}

bool CSubClassAsm::EnumWindowHandles(CallbackObject* oCallback, Long nOrdinal) {
  const Word address = scb_SetCallbackAddr(2, oCallback ? nOrdinal : kWindowMethod, oCallback, true, false);
  return address != 0 && ::EnumWindows(PointerIn<WNDENUMPROC>(address), 0) != 0;
}

bool CSubClassAsm::EnumFonts(::HDC hdc, CallbackObject* oCallback, Long nOrdinal) {
  const Word address = scb_SetCallbackAddr(4, oCallback ? nOrdinal : kFontMethod, oCallback, true, false);
  return address != 0 && ::EnumFontFamiliesA(hdc, nullptr, PointerIn<FONTENUMPROCA>(address), 0) != 0;
}

}  // namespace marklet::plumbing
