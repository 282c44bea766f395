#include "activex/control/site.h"

#include "activex/automation/dispatch_reader.h"
#include "activex/automation/font.h"
#include "activex/automation/value_conversion.h"
#include "activex/com/text.h"
#include "platform/system_colours.h"

namespace marklet::activex {

ComPtr<IDispatch> Site::Container() const {
  ComPtr<IOleContainer> container;
  ComPtr<IDispatch> result;
  const ComPtr<IOleClientSite> site = site_;
  if (site && SUCCEEDED(site->GetContainer(container.GetAddressOf())) && container) container.As(&result);
  return result;
}

ComPtr<IDispatch> Site::ExtendedControl() const {
  ComPtr<IDispatch> result;
  if (const ComPtr<IOleControlSite> site = Query<IOleControlSite>())
    if (FAILED(site->GetExtendedControl(result.GetAddressOf()))) result.Reset();
  return result;
}

bool SiteAmbient::Read(DISPID dispid, VARTYPE type, VARIANT& result) const {
  const ComPtr<IDispatch> ambient = site_.Query<IDispatch>();
  return ambient && ReadProperty(*ambient.Get(), dispid, type, result);
}

bool SiteAmbient::ReadFlag(DISPID dispid, bool otherwise) const {
  Variant value;
  return Read(dispid, VT_BOOL, value) ? value.boolVal != VARIANT_FALSE : otherwise;
}

OLE_COLOR SiteAmbient::ReadColour(DISPID dispid, OLE_COLOR otherwise) const {
  Variant value;
  Long colour = 0;
  return Read(dispid, VT_EMPTY, value) && ColourFromVariant(value, colour) ? static_cast<OLE_COLOR>(colour)
                                                                           : otherwise;
}

bool SiteAmbient::UserMode() { return ReadFlag(DISPID_AMBIENT_USERMODE, true); }
bool SiteAmbient::RightToLeft() { return ReadFlag(DISPID_AMBIENT_RIGHTTOLEFT, false); }
bool SiteAmbient::UiDead() { return ReadFlag(DISPID_AMBIENT_UIDEAD, false); }

LCID SiteAmbient::LocaleId() {
  Variant value;
  return Read(DISPID_AMBIENT_LOCALEID, VT_I4, value) ? static_cast<LCID>(value.lVal) : LOCALE_USER_DEFAULT;
}

OLE_COLOR SiteAmbient::BackColor() { return ReadColour(DISPID_AMBIENT_BACKCOLOR, kButtonFace); }
OLE_COLOR SiteAmbient::ForeColor() { return ReadColour(DISPID_AMBIENT_FORECOLOR, kButtonText); }

FontRef SiteAmbient::Font() {
  Variant value;
  FontRef font;
  if (Read(DISPID_AMBIENT_FONT, VT_DISPATCH, value)) font = FontFromObject(value.pdispVal);
  return font ? font : std::make_shared<StdFont>();
}

std::u16string SiteAmbient::DisplayName() {
  Variant value;
  return Read(DISPID_AMBIENT_DISPLAYNAME, VT_BSTR, value) ? FromBstr(value.bstrVal) : std::u16string();
}

}  // namespace marklet::activex
