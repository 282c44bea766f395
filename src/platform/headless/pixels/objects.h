// What stands behind the opaque handles.
//
// An object that is deleted while a context still holds it goes when the context lets go of it, so that no
// order of deletion leaves a context with a dangling selection.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>

#include "platform/headless/pixels/surface.h"
#include "platform/types.h"

namespace marklet {

struct GdiObjectHandle {
  enum class Kind : std::uint8_t { kBitmap, kBrush, kPen, kFont };

  explicit GdiObjectHandle(Kind its_kind) : kind(its_kind) {}
  GdiObjectHandle(const GdiObjectHandle&) = delete;
  GdiObjectHandle& operator=(const GdiObjectHandle&) = delete;
  virtual ~GdiObjectHandle() = default;

  const Kind kind;
  bool stock = false;    // belongs to the platform; never deleted
  bool deleted = false;  // by its owner, while selected
  int selections = 0;    // by how many contexts it is held
};

namespace headless {

struct Bitmap final : GdiObjectHandle {
  Bitmap() : GdiObjectHandle(Kind::kBitmap) {}
  struct Free {
    void operator()(std::uint8_t* pixels) const { std::free(pixels); }
  };
  Surface surface;  // empty for the bitmap of a new context
  std::unique_ptr<std::uint8_t, Free> memory;
};

struct Brush final : GdiObjectHandle {
  explicit Brush(COLORREF its_colour) : GdiObjectHandle(Kind::kBrush), colour(its_colour) {}
  COLORREF colour;
};

struct Pen final : GdiObjectHandle {
  Pen(Long its_width, COLORREF its_colour)
      : GdiObjectHandle(Kind::kPen), width(its_width), colour(its_colour) {}
  Long width;
  COLORREF colour;
};

struct Font;  // font.h

// The object behind a handle when it is of the kind asked for, else null.
template <typename Object>
Object* As(HGDIOBJ handle, GdiObjectHandle::Kind kind) {
  return handle != nullptr && handle->kind == kind ? static_cast<Object*>(handle) : nullptr;
}
inline Bitmap* AsBitmap(HGDIOBJ handle) { return As<Bitmap>(handle, GdiObjectHandle::Kind::kBitmap); }
inline Brush* AsBrush(HGDIOBJ handle) { return As<Brush>(handle, GdiObjectHandle::Kind::kBrush); }
inline Pen* AsPen(HGDIOBJ handle) { return As<Pen>(handle, GdiObjectHandle::Kind::kPen); }

}  // namespace headless
}  // namespace marklet
