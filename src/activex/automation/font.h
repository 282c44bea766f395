// Fonts between the control's own font object and the platform's, which hosts hold.
#pragma once

#include "activex/com/com.h"
#include "platform/shared/std_font.h"

namespace marklet::activex {

// The font that the object stands for; null when it is null or no font. It is of our kind and remembers the
// object: a control that takes it without a copy goes on with that object (see HostFont).
FontRef FontFromObject(IUnknown* object);

// Whether two fonts have the same properties.
bool SameFont(const StdFont& a, const StdFont& b);

// Hears when a host has set a member of the font object.
class FontListener {
 public:
  virtual void FontChanged() = 0;

 protected:
  ~FontListener() = default;
};

// The platform's object for the font that the control has. The two stay connected: what a host sets on the
// object is set on the font, and the other way round, for as long as the control has that font.
class HostFont {
 public:
  explicit HostFont(FontListener& listener) : listener_(listener) {}
  ~HostFont() { Disconnect(); }
  HostFont(const HostFont&) = delete;
  HostFont& operator=(const HostFont&) = delete;

  // The control has another font now. One that remembers an object is connected to it; any other gets one
  // when a host asks. What was set on the font before is on its object by then.
  void Follow(const FontRef& font);
  // The object for `font`, the same at every call until there is another font. Null for null.
  ComPtr<IFontDisp> For(const FontRef& font);

 private:
  void Connect(const FontRef& font, ComPtr<IFont> object);
  void Disconnect();
  void Write();

  FontListener& listener_;
  FontRef font_;
  ComPtr<IFont> object_;
  ComPtr<IPropertyNotifySink> link_;
  ComPtr<IConnectionPoint> notifier_;
  DWORD cookie_ = 0;
};

}  // namespace marklet::activex
