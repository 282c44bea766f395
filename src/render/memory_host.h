// A host made of memory for one control: ambient answers, a font, and a surface of the control's size to
// paint on.
#pragma once

#include <optional>

#include "bitmaps/cdib24.h"
#include "control/marklet.h"
#include "host/storing_user_control.h"
#include "render/backdrop.h"

namespace marklet {

class MemoryHost final : public StoringUserControl, public MarkletEvents {
 public:
  // Sizes are in pixels. `pixels_per_inch` tells how long a twip is.
  MemoryHost(Long width, Long height, Long pixels_per_inch);

  // The surface as painted so far; empty when there is none of that size.
  const CDib24& Surface() const { return surface_; }
  // What is drawn behind a transparent control. Before the control is made.
  void SetBackdrop(Backdrop backdrop) { backdrop_ = std::move(backdrop); }
  // Who hears of a change of size.
  void Attach(Marklet& control) { control_ = &control; }

  Ambient& AmbientProperties() override { return ambient_; }
  HWND hWnd() override { return nullptr; }
  HDC hDC() override;
  double ScaleWidth() override { return TooLarge() ? 0 : width_; }
  double ScaleHeight() override { return TooLarge() ? 0 : height_; }
  double Width() override { return width_ * TwipsPerPixelX(); }
  double Height() override { return height_ * TwipsPerPixelY(); }
  void PutWidth(double twips) override;
  void PutHeight(double twips) override;
  double TwipsPerPixelX() override { return kTwipsPerInch / pixels_per_inch_; }
  double TwipsPerPixelY() override { return kTwipsPerInch / pixels_per_inch_; }
  HWND ContainerHwnd() override { return nullptr; }
  NamedMembersRef Parent() override { return nullptr; }
  NamedMembersRef Extender() override { return nullptr; }
  bool PaintBehind(HDC dc) override;
  void PropertyChanged(std::string_view) override {}

 private:
  static constexpr double kTwipsPerInch = 1440;

  class DefaultAmbient final : public Ambient {
   public:
    bool UserMode() override { return true; }
    OLE_COLOR BackColor() override { return kButtonFace; }
    OLE_COLOR ForeColor() override { return kButtonText; }
    FontRef Font() override { return font_; }
    std::u16string DisplayName() override { return {}; }
    bool RightToLeft() override { return false; }

   private:
    FontRef font_ = std::make_shared<StdFont>();
  };

  // A control that sizes itself can ask for more memory than there is: of such a size it has no picture.
  bool TooLarge() const {
    constexpr std::int64_t kMostPixels = std::int64_t{8192} * 8192;
    return std::int64_t{width_} * height_ > kMostPixels;
  }
  void Resized();

  DefaultAmbient ambient_;
  std::optional<Backdrop> backdrop_;
  Marklet* control_ = nullptr;
  Long width_, height_;
  double pixels_per_inch_;
  CDib24 surface_;
  Long surface_width_ = 0, surface_height_ = 0;  // what the surface was made for
};

}  // namespace marklet
