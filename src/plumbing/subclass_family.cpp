#include <optional>

#include "plumbing/csubclass_asm.h"
#include "plumbing/entry_points.h"
#include "plumbing/message_table.h"

namespace marklet::plumbing {
namespace {

using namespace subclass_block;

// Only 64-bit systems have the functions for values as wide as a pointer under names of their own.
constexpr const char* kSetWindowLongW = kIs32Bit ? "SetWindowLongW" : "SetWindowLongPtrW";
constexpr const char* kSetWindowLongA = kIs32Bit ? "SetWindowLongA" : "SetWindowLongPtrA";

std::string KeyOf(::HWND window) { return ThunkKey(reinterpret_cast<Word>(window)); }

bool IsOfThisProcess(::HWND window) {
  DWORD process = 0;
  return ::IsWindow(window) && ::GetWindowThreadProcessId(window, &process) != 0 &&
         process == ::GetCurrentProcessId();
}

Word AddressOf(Word* block, std::size_t index) { return reinterpret_cast<Word>(block + index); }

void ResolveFunctions(Word* block, bool unicode, bool destroy_window) {
  const auto user = [&](const char* name) { return zFnAddr("user32", name, unicode); };
  const auto kernel = [&](const char* name) { return zFnAddr("kernel32", name, unicode); };
  zData(kDestroyWindow, block) = destroy_window ? user("DestroyWindow") : 0;
  zData(kVirtualFree, block) = kernel("VirtualFree");
  zData(kIsBadCodePtr, block) = kernel("IsBadCodePtr");
  zData(kSetTimer, block) = user("SetTimer");
  zData(kKillTimer, block) = user("KillTimer");
  zData(kCallWindowProc, block) = user(unicode ? "CallWindowProcW" : "CallWindowProcA");
  zData(kSetWindowLong, block) = user(unicode ? kSetWindowLongW : kSetWindowLongA);
}

// The number of an entry of a list of messages; none for an entry of another kind.
std::optional<Long> MessageOf(const MessageEntry& entry) {
  if (const auto* number = std::get_if<Long>(&entry)) return *number;
  if (const auto* number = std::get_if<std::int16_t>(&entry)) return *number;
  if (const auto* number = std::get_if<std::uint8_t>(&entry)) return *number;
  return std::nullopt;
}

void AddAll(std::span<const MessageEntry> messages, std::size_t table, Word* block) {
  for (const MessageEntry& entry : messages)
    if (const auto message = MessageOf(entry); message && !zAddMsg(*message, table, block)) return;
}

void DeleteAll(std::span<const MessageEntry> messages, std::size_t table, Word* block) {
  for (const MessageEntry& entry : messages)
    if (const auto message = MessageOf(entry)) zDelMsg(*message, table, block);
}

}  // namespace

bool CSubClassAsm::ssc_Subclass(::HWND lng_hWnd, Word lParamUser, Long nOrdinal, CallbackObject* oCallback,
                                bool /*bIdeSafety*/, bool& bUnicode, bool bIsAPIwindow) {
  if (!IsOfThisProcess(lng_hWnd)) return false;
  CallbackObject& object = oCallback ? *oCallback : *this;
  const Word method = zAddressOf(object, nOrdinal);
  if (method == 0) return false;
  Word* const block = subclasses_.NewBlock([&] { return KeyOf(lng_hWnd); }, kWords, object);
  if (!block) return false;
  zData(kWindow, block) = reinterpret_cast<Word>(lng_hWnd);
  zData(kObject, block) = reinterpret_cast<Word>(&object);
  zData(kMethod, block) = method;
  zData(kBeforeTable, block) = AddressOf(block, kBefore);
  zData(kAfterTable, block) = AddressOf(block, kAfter);
  zData(kUser, block) = lParamUser;
  if (bUnicode) bUnicode = ::IsWindowUnicode(lng_hWnd) != 0;
  // The upper half of the word stays 0.
  zData(kUnicode, block) = bUnicode ? 0xFFFF : 0;
  ResolveFunctions(block, bUnicode, bIsAPIwindow);
  return Subclass(block, lng_hWnd, bUnicode);
}

// The key stays when the platform refuses: the window counts as subclassed until ssc_UnSubclass.
bool CSubClassAsm::Subclass(Word* block, ::HWND window, bool unicode) {
  const Word entry = BindWindowProcedure(block);
  const auto set_window_long = unicode ? ::SetWindowLongPtrW : ::SetWindowLongPtrA;
  const Word original = entry == 0 ? 0 : set_window_long(window, GWLP_WNDPROC, entry);
  if (original == 0) {
    UnbindWindowProcedure(block);
    ReleaseBlock(block);
    return false;
  }
  zData(kOriginal, block) = original;
  return true;
}

// The memory of a block that ended may have become another's.
const Thunk* CSubClassAsm::FindSubclass(::HWND window) const {
  const Thunk* const thunk = subclasses_.Find(KeyOf(window));
  if (!thunk || zData(kWindow, thunk->block) != reinterpret_cast<Word>(window) ||
      zData(kObject, thunk->block) != reinterpret_cast<Word>(thunk->object))
    return nullptr;
  return thunk;
}

void CSubClassAsm::ssc_UnSubclass(::HWND lng_hWnd) {
  if (const Thunk* const thunk = FindSubclass(lng_hWnd)) {
    zData(kState, thunk->block) = kUnsubclassed;
    zDelMsg(kAllMessages, kBefore, thunk->block);
    zDelMsg(kAllMessages, kAfter, thunk->block);
  }
  subclasses_.Remove(KeyOf(lng_hWnd));
}

void CSubClassAsm::ssc_Terminate() {
  for (const Thunk& thunk : subclasses_.FromTheLast())
    if (subclasses_.Find(thunk.key)) ssc_UnSubclass(PointerIn<::HWND>(zData(kWindow, thunk.block)));
}

Word CSubClassAsm::ssc_CallOrigWndProc(::HWND lng_hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam) {
  const Thunk* const thunk = FindSubclass(lng_hWnd);
  if (!thunk) return 0;
  const auto original = PointerIn<WNDPROC>(zData(kOriginal, thunk->block));
  const auto call = zData(kUnicode, thunk->block) != 0 ? ::CallWindowProcW : ::CallWindowProcA;
  return call(original, lng_hWnd, uMsg, wParam, lParam);
}

void CSubClassAsm::ssc_AddMsg(::HWND lng_hWnd, Long When, std::span<const MessageEntry> Messages) {
  const Thunk* const thunk = FindSubclass(lng_hWnd);
  if (!thunk) return;
  if ((When & kWhenBefore) != 0) AddAll(Messages, kBefore, thunk->block);
  if ((When & kWhenAfter) != 0) AddAll(Messages, kAfter, thunk->block);
}

void CSubClassAsm::ssc_DelMsg(::HWND lng_hWnd, Long When, std::span<const MessageEntry> Messages) {
  const Thunk* const thunk = FindSubclass(lng_hWnd);
  if (!thunk) return;
  if ((When & kWhenBefore) != 0) DeleteAll(Messages, kBefore, thunk->block);
  if ((When & kWhenAfter) != 0) DeleteAll(Messages, kAfter, thunk->block);
}

}  // namespace marklet::plumbing
