// What a context is put back to when a call that changes it ends.
#pragma once

#include "platform/win32/coordinates.h"
#include "platform/win32/handles.h"

namespace marklet::win32 {

// Saves the clip, the selections, the colours and the modes, and brings them back.
class SavedState {
 public:
  explicit SavedState(::HDC dc) : dc_(dc), level_(SaveDC(dc)) {}
  ~SavedState() {
    if (level_ != 0) RestoreDC(dc_, level_);
  }
  SavedState(const SavedState&) = delete;
  SavedState& operator=(const SavedState&) = delete;

 private:
  ::HDC dc_;
  int level_;
};

inline void ClipTo(::HDC dc, const RECT& rect) {
  const RECT near = Near(rect);
  IntersectClipRect(dc, near.left, near.top, near.right, near.bottom);
}

}  // namespace marklet::win32
