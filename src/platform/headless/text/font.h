// The font behind a handle.
#pragma once

#include <memory>

#include "platform/headless/pixels/objects.h"
#include "platform/text.h"

namespace marklet::headless {

class Face;

struct Font final : GdiObjectHandle {
  explicit Font(LOGFONTW its_record);
  ~Font() override;

  // What the record asks for without underline and strikeout, found at the first use and shared with every
  // font of this thread that asks for the same.
  Face& RealFace() {
    if (face_ == nullptr) [[unlikely]]
      Realise();
    return *face_;
  }

  // The same, for who may outlive the font.
  const std::shared_ptr<Face>& SharedFace() {
    RealFace();
    return face_;
  }

  const LOGFONTW record;

 private:
  void Realise();
  std::shared_ptr<Face> face_;
};

}  // namespace marklet::headless
