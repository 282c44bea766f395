// Drags that begin at the control. The automation interface has no method for it; hosts reach it by a verb.
#pragma once

#include "activex/com/face.h"
#include "control/marklet.h"

namespace marklet::activex {

class ControlWindow;
class EventSource;
class InputListener;

class DragSource {
 public:
  DragSource(FaceOwner& owner, Marklet& marklet, const EventSource& events, ControlWindow& window,
             InputListener& input)
      : owner_(owner), marklet_(marklet), events_(events), window_(window), input_(input) {}

  // Raises OLEStartDrag, whose handler puts the data together and says what may be done with them; nothing
  // is dragged unless something may. Then the user drags until he lets go, with OLEGiveFeedback on the way
  // and OLESetData for data that are still missing, and OLECompleteDrag tells what became of it. One at a
  // time, and not where the control doesn't take the mouse.
  HRESULT OLEDrag();

 private:
  class Source;
  void Drag(IDataObject& store, DWORD allowed);

  FaceOwner& owner_;
  Marklet& marklet_;
  const EventSource& events_;
  ControlWindow& window_;
  InputListener& input_;
  bool dragging_ = false;
};

}  // namespace marklet::activex
