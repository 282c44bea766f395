// One control, from properties to a picture.
#pragma once

#include <memory>
#include <string>

#include "bitmaps/cdib24.h"
#include "control/marklet.h"
#include "render/memory_host.h"
#include "render/options.h"
#include "render/picture.h"

namespace marklet {

// Pixels for a length in 96ths of an inch.
Long ScaledPixels(double units, double scale);

// A control in memory, painted and ready to be shown.
class RenderedControl {
 public:
  // Sets the properties in their order on a new control of that size (96ths of an inch), and paints it.
  // Throws RenderError for a property that can't be set, an image that can't be used, and a control that came
  // out empty.
  RenderedControl(SIZE size, const PropertyTexts& properties, double scale,
                  const Surroundings& surroundings = {});

  Long Width() const { return host_.Surface().Width(); }  // pixels
  Long Height() const { return host_.Surface().Height(); }
  const CDib24& Surface() const { return host_.Surface(); }
  // The picture with alpha, as it looks in front of nothing: whole only where the control draws.
  Picture PictureOfItself();
  bool IsTransparent() const;
  void Redraw() { control_.RedrawNow(); }

 private:
  void SetAll(const PropertyTexts& properties);
  void LoadImage(const std::string& key, const std::string& file);
  Picture PictureOn(COLORREF behind);

  MemoryHost host_;
  Marklet control_;
};

// While it lives, fonts are made for a screen of 96 times `scale` dots per inch.
class ScaledScreen {
 public:
  explicit ScaledScreen(double scale);
  ~ScaledScreen();
  ScaledScreen(const ScaledScreen&) = delete;
  ScaledScreen& operator=(const ScaledScreen&) = delete;

 private:
  std::optional<Long> former_;
};

}  // namespace marklet
