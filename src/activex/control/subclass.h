// What the control subclasses its own window for: to learn that the pointer has left, to keep the background
// from being erased, to answer print messages and the text's length, and for the extended mouse buttons.
#pragma once

#include <memory>

#include "activex/com/face.h"
#include "plumbing/csubclass_asm.h"

namespace marklet {
class Marklet;
class UserControl;
}  // namespace marklet

namespace marklet::activex {

class InputListener;

class WindowSubclass final : private plumbing::SubclassOwner {
 public:
  WindowSubclass(FaceOwner& owner, Marklet& marklet, UserControl& host, InputListener& input)
      : owner_(owner), marklet_(marklet), host_(host), input_(input) {}
  ~WindowSubclass();
  WindowSubclass(const WindowSubclass&) = delete;
  WindowSubclass& operator=(const WindowSubclass&) = delete;

  // The control was loaded in run mode. There is a window only from activation on, and a load may come before
  // or after that: subclassing begins as soon as both hold, and anew with each window.
  void Loaded(::HWND window, bool extended_buttons);
  void Entered(::HWND window);
  void WindowGone();

 private:
  using Handler = void (WindowSubclass::*)(plumbing::SubclassCall& call);
  struct Row {
    Long message;
    Long when;
    bool extended;    // only where the extended buttons are asked for
    Handler handler;  // null: nothing is done with it
  };
  static const Row kRows[];

  void StartSubclass(::HWND window);
  void AddMessages(::HWND window, Long when, bool extended);
  void CreateProxyWindow(::HWND window);
  void SubclassMessage(plumbing::SubclassCall& call) override;

  void OnEraseBackground(plumbing::SubclassCall& call);
  void OnMouseLeave(plumbing::SubclassCall& call);
  void OnPrint(plumbing::SubclassCall& call);
  void OnGetTextLength(plumbing::SubclassCall& call);
  void OnGetText(plumbing::SubclassCall& call);
  void OnExtendedButton(plumbing::SubclassCall& call);
  void OnNonClientExtendedButton(plumbing::SubclassCall& call);
  struct Press {
    Long buttons, shift;
    float x, y;
  };
  void RaiseExtended(UINT message, const Press& press);

  FaceOwner& owner_;
  Marklet& marklet_;
  UserControl& host_;
  InputListener& input_;
  bool loaded_ = false;
  bool extended_buttons_ = false;
  bool subclassed_ = false;
  ::HWND proxy_window_ = nullptr;
  std::unique_ptr<plumbing::CSubClassAsm> subclasser_;
};

}  // namespace marklet::activex
