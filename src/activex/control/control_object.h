// The COM object of one control: its identity, its parts and its interfaces.
#pragma once

#include "activex/automation/connection_points.h"
#include "activex/automation/dispatch.h"
#include "activex/automation/event_source.h"
#include "activex/automation/font.h"
#include "activex/automation/image_owner.h"
#include "activex/com/module.h"
#include "activex/control/class_info.h"
#include "activex/control/data_object.h"
#include "activex/control/designer.h"
#include "activex/control/extent.h"
#include "activex/control/in_place.h"
#include "activex/control/ole_control.h"
#include "activex/control/ole_object.h"
#include "activex/control/persist.h"
#include "activex/control/quick_activate.h"
#include "activex/control/safety.h"
#include "activex/control/site.h"
#include "activex/control/user_control.h"
#include "activex/control/view.h"
#include "activex/control/window.h"
#include "control/marklet.h"

namespace marklet::activex {

// Its IUnknown is the one that an outer object holds when the control is aggregated, and its own identity
// otherwise.
class ControlObject final : public IUnknown {
 public:
  // A new control in `*object`, aggregated into `outer` unless that is null.
  static HRESULT Create(IUnknown* outer, REFIID iid, void** object);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

  IUnknown& Outer() { return *outer_; }

 private:
  friend class Entry;
  IUnknown* outer_;  // not counted: it holds this object
  ULONG references_ = 1;
  unsigned depth_ = 0;  // of calls from outside
  ModuleReference module_;

 public:
  // What the control knows of its host and has on its screen, below the control itself.
  Site site;
  Extent extent;
  HostFont host_font;
  ConnectionPointContainer connections{*this};
  EventSource events{*this};
  ControlWindow window{*this};
  InPlace in_place{*this};
  ViewFace view{*this};
  Persist persist{*this};
  OleUserControl host{*this};
  Marklet marklet{host, events};

  // The other interfaces.
  DispatchFace dispatch{*this};
  OleObjectFace ole_object{*this};
  OleControlFace ole_control{*this};
  InPlaceObjectFace in_place_object{*this};
  ActiveObjectFace active_object{*this};
  PersistStreamFace persist_stream{*this};
  PersistBagFace persist_bag{*this};
  PersistStorageFace persist_storage{*this};
  ClassInfoFace class_info{*this};
  ErrorInfoFace error_info{*this};
  QuickActivateFace quick_activate{*this};
  SafetyFace safety{*this};
  PropertyPagesFace property_pages{*this};
  PropertyBrowsingFace property_browsing{*this};
  CategoriesFace categories{*this};
  DataFace data{*this};
  ImageOwnerFace image_owner{*this};

  // Tells everybody who keeps a picture that the control looks different.
  void NotifyLook();

 private:
  explicit ControlObject(IUnknown* outer) : outer_(outer ? outer : this) {}
  ~ControlObject() = default;
  void Shutdown();
};

}  // namespace marklet::activex
