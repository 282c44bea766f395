// A container for one control, every interface of whose site can be left out.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

// The interfaces of the site that can be left out.
enum class SiteInterface {
  InPlaceSite,
  ControlSite,
  Ambients,
  Container,       // IOleClientSite::GetContainer
  InPlaceContext,  // IOleInPlaceSite::GetWindowContext
  Frame,           // the frame that comes with the context
  PosRectChange,   // IOleInPlaceSite::OnPosRectChange does nothing
};
constexpr SiteInterface kSiteInterfaces[] = {SiteInterface::InPlaceSite,    SiteInterface::ControlSite,
                                             SiteInterface::Ambients,       SiteInterface::Container,
                                             SiteInterface::InPlaceContext, SiteInterface::Frame,
                                             SiteInterface::PosRectChange};

struct AmbientValues {
  bool user_mode = true;
  bool ui_dead = false;
  long back_color = static_cast<long>(0x8000000F);
  long fore_color = static_cast<long>(0x80000012);
  std::wstring display_name;
  bool right_to_left = false;
  ComPtr<IDispatch> font;
};

class SiteObject;

class Container {
 public:
  Container();
  ~Container();
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  // Before Host.
  std::set<SiteInterface> missing;
  AmbientValues ambients;
  RECT position = {10, 20, 210, 80};  // in the container's window
  RECT clip = {0, 0, 1000, 1000};

  // How the site takes what it is asked. A rectangle that is wished for becomes `position` and comes back in
  // SetObjectRects unless `place` makes another of it; nothing comes back where that gives none.
  std::function<std::optional<RECT>(const RECT& wished)> place;
  HRESULT pos_rect_answer = S_OK;
  HRESULT save_answer = S_OK;
  HRESULT property_frame_answer = E_NOTIMPL;
  HRESULT accelerator_answer = S_FALSE;
  ComPtr<IMoniker> moniker;  // the control's full name; null: it has none

  // What surrounds the control in a form: the object of the form, in place of the site's own; what the form
  // adds around the control; and the window on it that the control is in. Null: none.
  ComPtr<IOleContainer> form;
  ComPtr<IDispatch> extender;
  HWND frame_window = nullptr;

  // What the control called, in order: "OnInPlaceActivate", "ShowObject", "OnPosRectChange(10,20,60,40)", ...
  std::vector<std::string> log;
  // Called from inside the named call of the control.
  std::function<void(const std::string& call)> on_call;
  // Called from inside each read of what stays out of the log: "ambient -709", "container", "member". With it
  // the container shows its background colour as a member, too.
  std::function<void(const std::string& what)> on_read;

  // A new control in this site: site, InitNew, extent, in the usual order.
  void Host();
  // The same control in the site, without InitNew.
  void HostObject(ComPtr<IUnknown> object);
  HRESULT Activate(LONG verb = OLEIVERB_INPLACEACTIVATE);
  // Closes the control and takes it out.
  void Close();

  IUnknown* Object() const { return object_.Get(); }
  ComPtr<IDispatch> Dispatch() const { return As<IDispatch>(object_); }
  void Drop() { object_.Reset(); }  // the container's last reference, without Close
  HWND Window() const { return window_; }
  void NewWindow();  // in the place of one that is gone
  HWND ControlWindow() const;
  IOleClientSite* ClientSite() const;
  // Site references that the control holds.
  ULONG SiteReferences() const;

  bool Has(SiteInterface what) const { return missing.count(what) == 0; }
  void Note(const std::string& call);
  int Count(const std::string& call) const;

 private:
  HWND window_ = nullptr;
  ComPtr<IUnknown> object_;
  SiteObject* site_;
};

// A sink for events and property changes.
class Sink {
 public:
  Sink();
  ~Sink();
  Sink(const Sink&) = delete;
  Sink& operator=(const Sink&) = delete;

  // "Click", "MouseDown(1,0,5,6)", and for properties "Changed(-501)".
  std::vector<std::string> log;
  std::function<void(const std::string& event)> on_event;
  // The arguments of the event that runs, last to first.
  DISPPARAMS* arguments = nullptr;

  // Connected to the control's events or its property changes until Disconnect or the end.
  HRESULT ConnectEvents(IUnknown* control);
  HRESULT ConnectChanges(IUnknown* control);
  void Disconnect();
  IUnknown* Object() const;
  ULONG References() const;

  void Note(const std::string& event);

 private:
  HRESULT Connect(IUnknown* control, const IID& iid);
  class SinkObject;
  SinkObject* object_;
  ComPtr<IConnectionPoint> point_;
  DWORD cookie_ = 0;
};

}  // namespace ocx_test
