#include "control/property_access.h"

#include "base/ignore_errors.h"
#include "base/rounding.h"
#include "control/enumeration_values.h"
#include "control/layout.h"
#include "markup/font_colour_tags.h"
#include "platform/shared/os_tests.h"
#include "platform/system.h"
#include "text/string_helpers.h"

namespace marklet::property_table {

// --- Texts ------------------------------------------------------------------------------------------------

// Designers can't show every text: they get a placeholder for one that isn't plain Latin.
Value DesignerText(Marklet& control, const std::u16string& text) {
  constexpr std::u16string_view kPlaceholder = u"(Unicode Text)";
  if (!control.Host().AmbientProperties().UserMode() && IsUnicodeText(text))
    return std::u16string(kPlaceholder);
  return text;
}

namespace {

// By the rules of English (United States), whatever language the system has.
constexpr std::uint32_t kWindowTextCodePage = 1252;

// The default window procedure is called directly, so that a subclass doesn't see the text pass.
void GiveWindowText(Marklet& control) {
  const std::u16string& caption = control.State().Caption;
  if (IsNT4OrLater())
    DefWindowProcW_SetText(control.Host().hWnd(), caption);
  else
    DefWindowProcA_SetText(control.Host().hWnd(), WideCharToMultiByte(kWindowTextCodePage, caption));
}

}  // namespace

void StoreCaption(Marklet& control, const Value& value) {
  control.State().Caption = DecodeUtf8IfEncoded(std::get<std::u16string>(value));
  IgnoreErrors([&] { GiveWindowText(control); });
  if (control.State().UseMnemonic) control.UpdateAccessKeys(control.State().Caption);
}

void StoreToolTip(Marklet& control, const Value& value) {
  MarkletState& state = control.State();
  state.UniToolTipText = DecodeUtf8IfEncoded(std::get<std::u16string>(value));
  if (!state.Tooltip) return;  // the next entry of the pointer makes one
  if (state.UniToolTipText.empty())
    state.Tooltip.reset();
  else
    state.Tooltip->SetToolText(state.UniToolTipText);
}

// --- Font -------------------------------------------------------------------------------------------------

Value GetFont(Marklet& control) { return control.Host().Font(); }

void StoreFont(Marklet& control, const Value& value) {
  control.Host().PutFont(CloneFont(std::get<FontRef>(value)));
}

void LoadFont(Marklet& control, const Value& value) { control.Host().PutFont(std::get<FontRef>(value)); }

Value GetFontSize(Marklet& control) { return Value(RoundHalfEven(control.Host().Font()->Size())); }

void StoreFontSize(Marklet& control, const Value& value) {
  const FontRef font = control.Host().Font();
  font->PutSize(std::get<Long>(value));
  StoreFont(control, font);
}

// --- Properties with a rule of their own ------------------------------------------------------------------

// A change of look brings the background that goes with it; nobody is told of that colour.
void StoreAppearance(Marklet& control, const Value& value) {
  const Long appearance = std::get<Long>(value);
  MarkletState& state = control.State();
  if (state.Appearance == appearance) return;
  state.Appearance = appearance;
  state.BackColor = appearance != appearanceFlat ? kButtonFace : kWindow;
}

void StoreUseMnemonic(Marklet& control, const Value& value) {
  MarkletState& state = control.State();
  state.UseMnemonic = std::get<bool>(value);
  control.UpdateAccessKeys(state.UseMnemonic ? state.Caption : std::u16string());
}

void StoreImageSize(Marklet& control, const Value& value) {
  MarkletState& state = control.State();
  state.ImageSize = std::get<Long>(value);
  state.ImagePixels = PixelsOfImageSize(state.ImageSize);
}

// --- Properties that the host keeps -----------------------------------------------------------------------

Value GetEnabled(Marklet& control) { return control.Host().Enabled(); }
void StoreEnabled(Marklet& control, const Value& value) { control.Host().PutEnabled(std::get<bool>(value)); }

// Window handles have 32 significant bits on every system.
Value GetWindow(Marklet& control) {
  return static_cast<Long>(reinterpret_cast<std::intptr_t>(control.Host().hWnd()));
}

Value GetMouseIcon(Marklet& control) { return control.Host().MouseIcon(); }
void StoreMouseIcon(Marklet& control, const Value& value) {
  control.Host().PutMouseIcon(std::get<HostObjectRef>(value));
}

Value GetMousePointer(Marklet& control) { return control.Host().MousePointer(); }
void StoreMousePointer(Marklet& control, const Value& value) {
  control.Host().PutMousePointer(std::get<Long>(value));
}

// --- Saved forms ------------------------------------------------------------------------------------------

BagValue NoText(Marklet&) { return std::u16string(); }
BagValue AmbientBackColor(Marklet& control) {
  return static_cast<Long>(control.Host().AmbientProperties().BackColor());
}
BagValue AmbientForeColor(Marklet& control) {
  return static_cast<Long>(control.Host().AmbientProperties().ForeColor());
}
BagValue AmbientFont(Marklet& control) { return control.Host().AmbientProperties().Font(); }
BagValue AmbientRightToLeft(Marklet& control) { return control.Host().AmbientProperties().RightToLeft(); }

}  // namespace marklet::property_table
