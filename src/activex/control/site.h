// The client site: what the host shows of itself. It may be missing, come late and change; so may each of its
// interfaces, which are asked for anew at every use.
#pragma once

#include "activex/com/com.h"
#include "host/user_control.h"

namespace marklet::activex {

class Site {
 public:
  void Set(IOleClientSite* site) { site_ = site; }
  IOleClientSite* Get() const { return site_.Get(); }

  // Null when there is no site or it has no such interface.
  template <typename Interface>
  ComPtr<Interface> Query() const {
    ComPtr<Interface> result;
    // Held: the host may change the site inside the call.
    if (const ComPtr<IOleClientSite> site = site_) site.As(&result);
    return result;
  }

  // The container's own automation object, null when it shows none.
  ComPtr<IDispatch> Container() const;
  // What the host adds around the control (its position and name), null when it shows none.
  ComPtr<IDispatch> ExtendedControl() const;

 private:
  ComPtr<IOleClientSite> site_;
};

// The ambient properties of the site, with the control's own answers where it has none.
class SiteAmbient final : public Ambient {
 public:
  explicit SiteAmbient(const Site& site) : site_(site) {}

  bool UserMode() override;
  OLE_COLOR BackColor() override;
  OLE_COLOR ForeColor() override;
  FontRef Font() override;
  std::u16string DisplayName() override;
  bool RightToLeft() override;
  bool UiDead();  // the host is stopped: nothing that the user does is for the control
  LCID LocaleId();

 private:
  bool Read(DISPID dispid, VARTYPE type, VARIANT& result) const;
  bool ReadFlag(DISPID dispid, bool otherwise) const;
  OLE_COLOR ReadColour(DISPID dispid, OLE_COLOR otherwise) const;

  const Site& site_;
};

}  // namespace marklet::activex
