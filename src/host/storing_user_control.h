// A host's half of a control that keeps what it is given.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "host/user_control.h"
#include "platform/system_colours.h"

namespace marklet {

// The properties that mean nothing but what was put last. New: enabled, on the button face, in a font of its
// own, the rest empty.
class StoringUserControl : public UserControl {
 public:
  bool Enabled() override { return enabled_; }
  void PutEnabled(bool enabled) override { enabled_ = enabled; }
  FontRef Font() override { return font_; }
  void PutFont(FontRef font) override {
    if (font) font_ = std::move(font);
  }
  OLE_COLOR BackColor() override { return back_color_; }
  void PutBackColor(OLE_COLOR colour) override { back_color_ = colour; }
  HostObjectRef MouseIcon() override { return mouse_icon_; }
  void PutMouseIcon(HostObjectRef icon) override { mouse_icon_ = std::move(icon); }
  Long MousePointer() override { return mouse_pointer_; }
  void PutMousePointer(Long pointer) override { mouse_pointer_ = pointer; }
  std::u16string AccessKeys() override { return access_keys_; }
  void PutAccessKeys(std::u16string keys) override { access_keys_ = std::move(keys); }

 private:
  bool enabled_ = true;
  FontRef font_ = std::make_shared<StdFont>();
  OLE_COLOR back_color_ = kButtonFace;
  HostObjectRef mouse_icon_;
  Long mouse_pointer_ = 0;
  std::u16string access_keys_;
};

}  // namespace marklet
