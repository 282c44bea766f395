// Objects whose methods the platform calls through thunks, and the forms of these methods.
//
// A thunk knows an object and the address of one of its methods. The method is named by its ordinal, its
// place from the end of the object's method table: 1 is the last. A class lists its methods with MethodOf:
//
//   const Method Watcher::kMethods[] = {MethodOf<&Watcher::OnKey>(), MethodOf<&Watcher::OnMessage>()};
//   Watcher::Watcher() : CallbackObject(kMethods) {}
//
// Nothing that a method throws leaves it. A method may end its own object; neither the thunk nor what stands
// between it and the method touches the object after the call.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "platform/win32/sdk.h"

namespace marklet::plumbing {

// A word of a block, and an argument or result of a callback: as wide as a pointer.
using Word = LONG_PTR;

// The address that a word holds.
template <typename Pointer>
Pointer PointerIn(Word word) {
  return std::bit_cast<Pointer>(word);
}

// What a thunk calls; the real type depends on the thunk's family.
using Method = void (*)();

// One message on its way through a subclassed window.
struct SubclassCall {
  bool bBefore;    // before the original procedure, which has not run yet; after it otherwise
  Long& bHandled;  // set before to something else than 0: the original procedure is left out
  Word& lReturn;   // the message's result; 0 before, the original procedure's after
  ::HWND hWnd;
  UINT uMsg;
  WPARAM wParam;
  LPARAM lParam;
  Word& lParamUser;  // of the window's thunk; what is written stays
};

// One call of a hook, with the next hook of the chain in the place of the original procedure.
struct HookCall {
  bool bBefore;
  Long& bHandled;
  Word& lReturn;
  Long nCode;
  WPARAM wParam;
  LPARAM lParam;
  Long lHookType;
  Word& lParamUser;
};

class CallbackObject {
 public:
  CallbackObject(const CallbackObject&) = delete;
  CallbackObject& operator=(const CallbackObject&) = delete;

  std::span<const Method> Methods() const { return {methods_, static_cast<std::size_t>(count_)}; }

 protected:
  // The table stays for as long as the object.
  template <std::size_t count>
  explicit CallbackObject(const Method (&methods)[count])
      : methods_(methods), count_(static_cast<std::uint32_t>(count)) {}
  ~CallbackObject() { count_ = 0; }

 private:
  const Method* methods_;
  // Hook thunks compare what stands at byte 8 with what stood there when they were made, to see whether the
  // object still lives; volatile, so that its end is written.
  alignas(8) volatile std::uint32_t count_;
};

// --- Methods from member functions -------------------------------------------------------------------------

template <typename Member, Member member>
struct MethodEntry;

// void Class::OnMessage(SubclassCall&)
template <class Class, void (Class::*member)(SubclassCall&)>
struct MethodEntry<void (Class::*)(SubclassCall&), member> {
  static void CALLBACK Call(CallbackObject* object, Long bBefore, Long* bHandled, Word* lReturn, ::HWND hWnd,
                            UINT uMsg, WPARAM wParam, LPARAM lParam, Word* lParamUser) noexcept {
    SubclassCall call{bBefore != 0, *bHandled, *lReturn, hWnd, uMsg, wParam, lParam, *lParamUser};
    IgnoreErrors([&] { (static_cast<Class*>(object)->*member)(call); });
  }
};

// void Class::OnHook(HookCall&)
template <class Class, void (Class::*member)(HookCall&)>
struct MethodEntry<void (Class::*)(HookCall&), member> {
  static void CALLBACK Call(CallbackObject* object, Long bBefore, Long* bHandled, Word* lReturn, Long nCode,
                            WPARAM wParam, LPARAM lParam, Long lHookType, Word* lParamUser) noexcept {
    HookCall call{bBefore != 0, *bHandled, *lReturn, nCode, wParam, lParam, lHookType, *lParamUser};
    IgnoreErrors([&] { (static_cast<Class*>(object)->*member)(call); });
  }
};

template <typename Argument>
constexpr bool kFitsIntoWord = sizeof(Argument) <= sizeof(Word);

// Word Class::OnCallback(arguments...), each no wider than a Word: any other callback. What throws gives 0.
template <class Class, typename... Arguments, Word (Class::*member)(Arguments...)>
struct MethodEntry<Word (Class::*)(Arguments...), member> {
  static_assert((kFitsIntoWord<Arguments> && ...));
  static void CALLBACK Call(CallbackObject* object, Arguments... arguments, Word* result) noexcept {
    IgnoreErrors([&] { *result = (static_cast<Class*>(object)->*member)(arguments...); });
  }
};

template <auto member>
Method MethodOf() {
  return reinterpret_cast<Method>(&MethodEntry<decltype(member), member>::Call);
}

}  // namespace marklet::plumbing
