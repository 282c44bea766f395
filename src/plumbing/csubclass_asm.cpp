#include "plumbing/csubclass_asm.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace marklet::plumbing {
namespace {

constexpr std::size_t kFaceNameSize = 32;

std::u16string HexadecimalOf(Word number) {
  auto rest = static_cast<ULONG_PTR>(number);
  std::u16string digits;
  do digits.insert(digits.begin(), u"0123456789ABCDEF"[rest % 16]);
  while ((rest /= 16) != 0);
  return digits;
}

// The name up to its first NUL, from the system code page.
std::u16string FaceName(const LOGFONTA& font) {
  const char* const end = std::find(std::begin(font.lfFaceName), std::end(font.lfFaceName), '\0');
  wchar_t name[kFaceNameSize];
  const int length = ::MultiByteToWideChar(0, 0, font.lfFaceName, static_cast<int>(end - font.lfFaceName),
                                           name, static_cast<int>(std::size(name)));
  return {name, name + length};
}

}  // namespace

// The ordinals count from the end.
const Method CSubClassAsm::kMethods[4] = {
    MethodOf<&CSubClassAsm::FontReceiver>(), MethodOf<&CSubClassAsm::WindowReceiver>(),
    MethodOf<&CSubClassAsm::HookReceiver>(), MethodOf<&CSubClassAsm::SubclassCallback>()};

CSubClassAsm::CSubClassAsm() : CallbackObject(kMethods) {}

CSubClassAsm::~CSubClassAsm() {
  ssc_Terminate();
  shk_TerminateHooks();
  scb_TerminateCallbacks();
}

void CSubClassAsm::zSet_lParamUser(Word hWnd_Hook_ID, Long vType, Word newValue) {
  if (vType == kCallbackThunk) return;
  const bool hook = vType == kHookThunk;
  const Thunk* const thunk =
      hook ? hooks_.Find(ThunkKey(hWnd_Hook_ID)) : FindSubclass(PointerIn<::HWND>(hWnd_Hook_ID));
  if (thunk) zData(hook ? hook_block::kUser : subclass_block::kUser, thunk->block) = newValue;
}

Word CSubClassAsm::FontReceiver(const LOGFONTA* font, const TEXTMETRICA*, DWORD, LPARAM) {
  if (events_) events_->EnumCallback(FaceName(*font));
  return 1;
}

Word CSubClassAsm::WindowReceiver(::HWND window, LPARAM) {
  if (events_) events_->EnumCallback(u"&H" + HexadecimalOf(reinterpret_cast<Word>(window)));
  return 1;
}

void CSubClassAsm::HookReceiver(HookCall& call) {
  if (events_) events_->HookMessage(call.lHookType, call.nCode, call.wParam, call.lParam);
}

void CSubClassAsm::SubclassCallback(SubclassCall& call) {
  if (owner_) owner_->SubclassMessage(call);
}

}  // namespace marklet::plumbing
