// The control's window as a place to drop things on.
#pragma once

#include "activex/com/face.h"
#include "control/marklet.h"

namespace marklet::activex {

class EventSource;
class InputListener;

// Asks the host by OLEDragOver and OLEDragDrop what may be dropped; where nobody hears these, nothing may. A
// control that nobody listens to isn't registered at all: a thousand labels cost nothing, and what is dropped
// on one goes to the container that they stand on.
class DropTarget {
 public:
  DropTarget(FaceOwner& owner, Marklet& marklet, const EventSource& events, InputListener& input)
      : owner_(owner), marklet_(marklet), events_(events), input_(input) {}
  ~DropTarget() { Revoke(); }
  DropTarget(const DropTarget&) = delete;
  DropTarget& operator=(const DropTarget&) = delete;

  // Makes the window, which may be null, a target while it is `wanted` and somebody listens, and none
  // otherwise. Nothing happens where OLE doesn't run on this thread.
  void Update(::HWND window, bool wanted);
  // While the window is still there.
  void Revoke();

 private:
  void Register(::HWND window);
  class Target;
  enum class State : std::int16_t { Enter, Leave, Over };

  void Enter(IDataObject* data, DWORD keys, POINTL place, DWORD& effect);
  void Over(DWORD keys, POINTL place, DWORD& effect);
  void Leave();
  void Drop(DWORD keys, POINTL place, DWORD& effect);

  bool IsAsked();
  void Ask(State state, DWORD& effect);
  void Note(DWORD keys, POINTL place);

  FaceOwner& owner_;
  Marklet& marklet_;
  const EventSource& events_;
  InputListener& input_;
  ::HWND window_ = nullptr;
  Target* target_ = nullptr;  // counted
  // Of the drag that is over the control.
  HostObjectRef data_;
  PointerArguments pointer_;
};

}  // namespace marklet::activex
