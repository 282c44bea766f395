// The platform calls of one repaint of a control, as a recorder wrote them down, made again on a platform
// that has none.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "platform/types.h"

namespace marklet::bench {

class RecordedCalls {
 public:
  // The lines of a repaint after which the control's picture was dropped. Throws std::runtime_error for a
  // call that it doesn't know.
  explicit RecordedCalls(const std::vector<std::string>& lines);
  ~RecordedCalls();
  RecordedCalls(const RecordedCalls&) = delete;
  RecordedCalls& operator=(const RecordedCalls&) = delete;

  // Lines don't tell contexts: a call goes to the surface made last, but for the two copies of a repaint,
  // from what lies behind to the picture and from there to the window.
  void MakeAgain(HDC behind, HDC window);

  // What a call is made with, resolved when its line is read.
  struct Contexts {
    std::vector<HDC> surfaces;
    HDC behind = nullptr, window = nullptr;
    std::vector<HGDIOBJ> objects;             // by number
    std::map<std::string, HGDIOBJ> original;  // by kind: what the surface came with

    HDC Surface() const { return surfaces.back(); }
  };
  using Call = std::function<void(Contexts&)>;

 private:
  Contexts contexts_;
  std::vector<Call> calls_;
};

}  // namespace marklet::bench
