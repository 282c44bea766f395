// CUnicodeTextRender: the drawing of a text by a numbered route, with the name of the route after it. A tool
// for finding out by which route a system draws; the control's paint doesn't use it.
#pragma once

#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

class CUnicodeTextRender {
 public:
  virtual ~CUnicodeTextRender() = default;

  // How many units of `text` fit in `max_width` pixels in one line: all, or the longest prefix that does. A
  // text with a CR or LF answers the position of the first one, counted from 1, whatever fits.
  Long FitLength(HDC dc, std::u16string_view text, Long max_width) const;

  // 1 for LF and CR, else 0.
  static Long IsLineBreak(Long code);

  // Draws `text` in `rect` in an RGB colour and leaves the route's tag, and "<map>" with `mark_route`, at its
  // end. Only a `length` of -1 and a text that isn't empty are drawn. `format` holds DT_ flags; 0 is one line
  // with an ellipsis. A text with a NUL is drawn up to it. `rect` changes only under DT_CALCRECT.
  void DrawText(HDC dc, std::u16string& text, Long length, RECT& rect, std::uint32_t format, COLORREF color,
                bool rtl, bool mark_route);

  // The text alignment under which a route draws at a point. `format` has no say in it.
  static std::uint32_t TextAlignFlags(std::uint32_t format, bool rtl);

  // Always empty: only a text with nothing left in it is handed back.
  static std::u16string StripControlCodes(std::u16string_view text);

 protected:
  // 1 DrawTextW, 2 ExtTextOutW, 3 script shaping, 4 the Unicode layer of older systems; any other number is
  // whatever the system has.
  virtual int RenderRoute() const { return 3; }

 private:
  struct Run;
  struct Route;
  static const Route& ChooseRoute(int number);
  void DrawPlainW(const Run& run);
  void DrawAtPoint(const Run& run);
  void DrawShaped(const Run& run);
  void DrawPlainA(const Run& run);

  bool busy_ = false;  // inside the shaping route
};

}  // namespace marklet
