// Logs the platform calls of this thread and can make any of them fail.
//
// While a Recorder lives, every call that the program makes of those in operations.cpp (drawing, text,
// pictures, icons, the registry, themes, colours and boxes) adds one line, "Name(arguments)", in call order;
// calls that the platform makes of itself do not. Contexts, pictures, icons, keys and themes are left out; of
// the arguments,
//   colours read #RRGGBB, rectangles [left,top,right,bottom], texts "in UTF-8" with \uXXXX for controls and
//   lone surrogates, objects font("Tahoma",-11,400,"iuk") (the last: italic, underline, strikeout, where
//   set), bitmap(WxHxDEPTH), brush(#RRGGBB), pen(#RRGGBB), analysis("text") or null, flags and raster
//   operations 0x.., other numbers decimal.
// For example: SetTextColor(#FF0000)   SelectObject(font("Tahoma",-11,700,""))
// DrawTextW("Total",[4,0,300,16],0x40020)
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace marklet {

class Recorder {
 public:
  Recorder();  // one at a time on a thread
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  // The lines so far, or only those of one operation.
  std::vector<std::string> Lines() const;
  std::vector<std::string> Lines(std::string_view operation) const;
  void Clear();

  // From now on calls of `operation` fail as its contract says, after `good_calls` more that don't.
  void Fail(std::string_view operation, int good_calls = 0);
  void FailNothing();

  // Makes the recorded calls again, on the same contexts and with the same arguments, but for those that work
  // on a picture, an icon or a key. Contexts and objects must still live.
  void Replay() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace marklet
