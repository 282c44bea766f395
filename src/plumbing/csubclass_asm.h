// CSubClassAsm: lets the platform call methods of objects as window procedures (ssc_), hooks (shk_) and other
// callbacks (scb_).
//
// Each use has a thunk in a block of its own, which filters before it calls anything, counts the calls that
// are inside it, and ends by itself: it is never freed under a call. So a CSubClassAsm may go before its
// windows. What it must not do is leave a thunk with an object that has gone: ssc_UnSubclass, or the end of
// this object, comes before that. The object may go inside one of its own methods.
//
// Everything runs on the thread of the window or hook. A set-up that fails says so by its result, frees what
// it had allocated and says nothing else.
#pragma once

#include <initializer_list>
#include <span>
#include <string_view>
#include <variant>

#include "plumbing/callback_object.h"
#include "plumbing/thunk_collection.h"

namespace marklet::plumbing {

// Gets the messages of windows whose thunk calls CSubClassAsm's own method.
class SubclassOwner {
 public:
  virtual void SubclassMessage(SubclassCall& call) = 0;

 protected:
  ~SubclassOwner() = default;
};

// The events of the class.
class SubclassEvents {
 public:
  virtual void HookMessage(Long lHookType, Long nCode, WPARAM wParam, LPARAM lParam) = 0;  // 1
  virtual void EnumCallback(std::u16string_view text) = 0;                                 // 2

 protected:
  ~SubclassEvents() = default;
};

// One entry of a list of messages. Other kinds than the first three are skipped.
using MessageEntry = std::variant<Long, std::int16_t, std::uint8_t, bool, double, std::u16string_view>;

// `When`, a set of bits.
constexpr Long kWhenBefore = 1;  // the original procedure, or the next hook
constexpr Long kWhenAfter = 2;

// `vType`.
constexpr Long kSubclassThunk = 0;
constexpr Long kHookThunk = 1;
constexpr Long kCallbackThunk = 2;

// The ordinals of the class's own methods.
constexpr Long kSubclassMethod = 1;
constexpr Long kHookMethod = 2;
constexpr Long kWindowMethod = 3;
constexpr Long kFontMethod = 4;

class CSubClassAsm : public CallbackObject {
 public:
  CSubClassAsm();
  ~CSubClassAsm();  // ssc_Terminate, shk_TerminateHooks, scb_TerminateCallbacks

  // Neither is owned; null for none. Whoever goes before this object says so.
  void SetOwner(SubclassOwner* owner) { owner_ = owner; }
  void SetEvents(SubclassEvents* events) { events_ = events; }

  // --- Windows ---

  // Puts a thunk before the window's procedure. It calls nothing before messages are added. `oCallback` null
  // is this object. `bUnicode` asks for the W forms and comes back as whether the window has them; false
  // takes the A forms, whatever the window is. `bIsAPIwindow`: the window is destroyed when the method's code
  // has vanished. `bIdeSafety` makes no difference.
  //
  // False for no window, one of another process, an ordinal without a method, and a window that this object
  // has subclassed already. A window that the platform refused, and one that has gone, keep counting as such
  // until ssc_UnSubclass.
  bool ssc_Subclass(::HWND lng_hWnd, Word lParamUser, Long nOrdinal, CallbackObject* oCallback,
                    bool bIdeSafety, bool& bUnicode, bool bIsAPIwindow);

  // From now on the window's messages go past the method. The thunk ends after the next of them: then the
  // window has the procedure back that it had before, and whoever subclassed it since, and is still there, is
  // cut off. Until then, and for 100 milliseconds more, its block is memory.
  void ssc_UnSubclass(::HWND lng_hWnd);
  void ssc_Terminate();  // the same for all windows, from the last one subclassed to the first

  // What the window would answer without its thunk, called as the thunk calls it; 0 for a window without one.
  Word ssc_CallOrigWndProc(::HWND lng_hWnd, UINT uMsg, WPARAM wParam, LPARAM lParam);

  // A table takes 32 messages; adding stops at the first one that doesn't fit. -1 is every message.
  void ssc_AddMsg(::HWND lng_hWnd, Long When, std::span<const MessageEntry> Messages);
  void ssc_DelMsg(::HWND lng_hWnd, Long When, std::span<const MessageEntry> Messages);
  void ssc_AddMsg(::HWND lng_hWnd, Long When, std::initializer_list<MessageEntry> Messages) {
    ssc_AddMsg(lng_hWnd, When, std::span(Messages.begin(), Messages.size()));
  }
  void ssc_DelMsg(::HWND lng_hWnd, Long When, std::initializer_list<MessageEntry> Messages) {
    ssc_DelMsg(lng_hWnd, When, std::span(Messages.begin(), Messages.size()));
  }

  // For a window or, with kHookThunk, a hook's type. Callbacks have no such value.
  void zSet_lParamUser(Word hWnd_Hook_ID, Long vType, Word newValue);

  // --- Hooks: one of each type, of this thread or, with bGlobal, of all ---

  bool shk_SetHook(Long HookType, bool bGlobal, Long When, Word lParamUser, Long nOrdinal,
                   CallbackObject* oCallback, bool bIdeSafety, bool& bUnicode);
  // Inside the hook's own call it is taken out of the chain, and its block stays until this is called again
  // or until the end. False when there is no such hook.
  bool shk_UnHook(Long HookType);
  void shk_TerminateHooks();

  // --- Any other callback ---

  // The address to hand to the platform, 0 on failure; the same one for the same object and ordinal.
  // `nParamCount` is how many words the platform passes. A timer's callback kills its timer when the method's
  // code has vanished.
  Word scb_SetCallbackAddr(Long nParamCount, Long nOrdinal, CallbackObject* oCallback, bool bIdeSafety,
                           bool bIsTimerCallback);
  // Not inside its own call: nothing counts these.
  void scb_ReleaseCallback(Long nOrdinal, CallbackObject* oCallback);
  void scb_TerminateCallbacks();

  // Every top-level window, and every font family of a device context, to a method of `oCallback` with two
  // and four parameters; null raises EnumCallback, with "&H" and the handle in hexadecimal, or with the name.
  bool EnumWindowHandles(CallbackObject* oCallback, Long nOrdinal);
  bool EnumFonts(::HDC hdc, CallbackObject* oCallback, Long nOrdinal);

  // Writes an error to the application log and shows it in a message box, which waits for its user. For those
  // who build on this class: nothing in it calls this, so that no host is ever held up.
  static void zError(std::u16string_view routine, std::u16string_view message);

 private:
  static const Method kMethods[4];

  // The class's own receivers.
  Word FontReceiver(const LOGFONTA* font, const TEXTMETRICA* metrics, DWORD type, LPARAM parameter);
  Word WindowReceiver(::HWND window, LPARAM parameter);
  void HookReceiver(HookCall& call);
  void SubclassCallback(SubclassCall& call);

  bool Subclass(Word* block, ::HWND window, bool unicode);
  const Thunk* FindSubclass(::HWND window) const;

  SubclassOwner* owner_ = nullptr;
  SubclassEvents* events_ = nullptr;
  ThunkCollection subclasses_;
  ThunkCollection hooks_;
  ThunkCollection callbacks_;
};

}  // namespace marklet::plumbing
