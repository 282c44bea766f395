// A control with everything that a repaint can meet: an image, a three-dimensional border, what lies behind,
// and a caption of 20 words with markup.
#pragma once

#include <algorithm>
#include <memory>
#include <utility>

#include "captions.h"
#include "control/marklet.h"
#include "control/properties.h"
#include "images/image_sizes.h"
#include "render/memory_host.h"

namespace marklet::bench {

struct FullControl {
  MemoryHost host{kWidth, kHeight, 96};
  marklet::Marklet control{host, host};

  // Controls differ in their captions.
  explicit FullControl(int number = 0) {
    host.SetBackdrop({MakeRgb(51, 102, 153)});
    host.Attach(control);
    control.InitProperties();
    control.State().Images->Add(u"image", Image());
    const auto set = [&](const char* name, const Value& value) { control.Set(*FindProperty(name), value); };
    set("ImageSize", Long{2});  // 32 pixels
    set("ImageKey", std::u16string(u"image"));
    set("BorderStyle", Long{1});
    set("Caption", Utf16(MarkletCaption({Kind::Rich, 20}, number)));
    set("BackStyle", Long{0});
  }
  // All of a picture's life, so that none is left to be deleted by the next repaint.
  void Repaint() {
    control.RedrawNow();
    control.State().BackBuffer.reset();
  }

 private:
  // Clear outside, opaque inside, and every alpha in between, as an icon is at its rim.
  static ImageRef Image() {
    constexpr Long kEdge = 32;
    ByteArray pixels{{{0, 4}, {0, kEdge}, {0, kEdge}}, {}};
    for (Long y = 0; y < kEdge; ++y)
      for (Long x = 0; x < kEdge; ++x) {
        const Long from_rim = std::min({x, y, kEdge - 1 - x, kEdge - 1 - y});
        const auto alpha = static_cast<std::uint8_t>(std::clamp((from_rim - 2) * 64, 0, 255));
        pixels.bytes.insert(pixels.bytes.end(), {40, 120, static_cast<std::uint8_t>(8 * x), alpha});
      }
    auto image = std::make_shared<CIconBytes>();
    image->PutKey(u"image");
    image->SetBytes(SizeIndex(kEdge), kAlphaDepthIndex, std::move(pixels));
    return image;
  }
};

// Writes the platform calls of a repaint into a file, a line each. False when that fails, or when they would
// not come out the same where they are made again.
bool SaveRepaintCalls(const char* file);

}  // namespace marklet::bench
