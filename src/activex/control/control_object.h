// The COM object of one control: its identity, its parts and its interfaces, and who of them knows whom.
//
// A new interface is a Face in a file of its own, here or, when it needs no part of this floor, in
// automation/. It takes a reference to each part that it uses, becomes a member below and gets a row in
// kInterfaces. Parts don't know this object; what they must tell it goes through a listener.
#pragma once

#include "activex/automation/connection_points.h"
#include "activex/automation/dispatch.h"
#include "activex/automation/error_report.h"
#include "activex/automation/event_source.h"
#include "activex/automation/font.h"
#include "activex/automation/image_owner.h"
#include "activex/automation/type_info.h"
#include "activex/com/face.h"
#include "activex/com/module.h"
#include "activex/control/data_object.h"
#include "activex/control/designer.h"
#include "activex/control/drag_source.h"
#include "activex/control/drop_target.h"
#include "activex/control/extent.h"
#include "activex/control/hidden_list.h"
#include "activex/control/in_place.h"
#include "activex/control/ole_control.h"
#include "activex/control/ole_object.h"
#include "activex/control/persist.h"
#include "activex/control/picture.h"
#include "activex/control/quick_activate.h"
#include "activex/control/safety.h"
#include "activex/control/site.h"
#include "activex/control/subclass.h"
#include "activex/control/user_control.h"
#include "activex/control/view.h"
#include "activex/control/window.h"
#include "control/marklet.h"

namespace marklet::activex {

// Its IUnknown is the one that an outer object holds when the control is aggregated, and its own identity
// otherwise.
class ControlObject final : public IUnknown,
                            private FaceOwner,
                            private ChangeListener,
                            private SaveListener,
                            private FontListener {
 public:
  // A new control in `*object`, aggregated into `outer` unless that is null.
  static HRESULT Create(IUnknown* outer, REFIID iid, void** object);

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;

 private:
  struct InterfaceRow {
    const IID& iid;
    IUnknown* (*get)(ControlObject& control);
  };
  static const InterfaceRow kInterfaces[];
  template <auto Member>
  static IUnknown* Get(ControlObject& control);

  explicit ControlObject(IUnknown* outer) : FaceOwner(outer ? *outer : *this) {
    connections_.Events().on_change = [this] { host_.ListenersChanged(); };
  }
  ~ControlObject() = default;
  void Shutdown();

  // For the parts.
  void LastCallEnds() override { window_.ReleaseContext(); }
  void PropertyChanged(DISPID id) override;
  void LookChanged() override;
  void Saved() override { ole_object_.TellSaved(); }
  void FontChanged() override;

  ULONG references_ = 1;
  ModuleReference module_;

  // What the control knows of its host and has on its screen, below the control itself.
  Site site_;
  Extent extent_;
  HostFont host_font_{*this};
  ConnectionPointContainer connections_{*this};
  EventSource events_{connections_.Events()};
  OleUserControl host_{*this,     site_,     extent_,      host_font_, window_,
                       in_place_, subclass_, drop_target_, marklet_};
  WindowSubclass subclass_{*this, marklet_, host_, host_};
  DropTarget drop_target_{*this, marklet_, events_, host_};
  DragSource drag_source_{*this, marklet_, events_, window_, host_};
  ControlWindow window_{*this, marklet_, host_, host_, host_};
  InPlace in_place_{site_, extent_, window_, active_object_, host_};
  ControlPicture picture_{host_, marklet_};
  ViewFace view_{*this, picture_, extent_};
  Persist persist_{marklet_, extent_, host_, *this};
  Marklet marklet_{host_, events_};

  // The other interfaces.
  DispatchFace dispatch_{*this, marklet_, host_font_};
  OleObjectFace ole_object_{*this, site_, extent_, in_place_, drag_source_, persist_, host_};
  OleControlFace ole_control_{*this, host_, events_};
  InPlaceObjectFace in_place_object_{*this, in_place_};
  ActiveObjectFace active_object_{*this, in_place_, site_};
  PersistStreamFace persist_stream_{*this, persist_};
  PersistBagFace persist_bag_{*this, persist_, host_font_};
  PersistStorageFace persist_storage_{*this, persist_};
  ClassInfoFace class_info_{*this};
  ErrorInfoFace error_info_{*this};
  QuickActivateFace quick_activate_{*this, ole_object_, view_, connections_};
  SafetyFace safety_{*this, marklet_.State()};
  ConstituentsFace constituents_{*this, marklet_, host_font_};
  PropertyPagesFace property_pages_{*this};
  PropertyBrowsingFace property_browsing_{*this, marklet_};
  CategoriesFace categories_{*this};
  DataFace data_{*this, picture_, extent_};
  ImageOwnerFace image_owner_{*this, marklet_};
  OwnLabelFace own_label_{*this, marklet_};
};

}  // namespace marklet::activex
