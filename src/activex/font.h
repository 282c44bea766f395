// Fonts between the control's own font object and the platform's, which hosts hold.
#pragma once

#include "activex/com.h"
#include "platform/std_font.h"

namespace marklet::activex {

// The font that the object stands for, as a copy; null when it is null or no font.
FontRef FontFromObject(IUnknown* object);

// Whether two fonts have the same properties.
bool SameFont(const StdFont& a, const StdFont& b);

// A font object of the platform for hosts. It stays connected: what a host sets on it is set on `font`, for
// as long as the control holds it.
class HostFont {
 public:
  ~HostFont() { Disconnect(); }
  HostFont() = default;
  HostFont(const HostFont&) = delete;
  HostFont& operator=(const HostFont&) = delete;

  // The object for `font`: the one handed out before while it is the same font, unchanged. Null for null.
  ComPtr<IFontDisp> For(const FontRef& font);

 private:
  void Connect();
  void Disconnect();

  FontRef font_;
  ComPtr<IFont> object_;
  ComPtr<IConnectionPoint> notifier_;
  DWORD cookie_ = 0;
};

}  // namespace marklet::activex
