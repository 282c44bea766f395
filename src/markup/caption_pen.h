// What one drawing of a caption with markup knows: where the pen stands and what the tags have changed.
#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <optional>
#include <string>
#include <string_view>

#include "markup/tokenizer.h"
#include "platform/text.h"
#include "platform/types.h"
#include "text/caption_style.h"

namespace marklet {

// Lives for one call of DrawMarkupCaption. Each saved value is one slot and no stack, so that nested tags of
// a kind go back one level only.
struct CaptionPen {
  // The tokens of a caption of usual length stand here.
  std::array<std::byte, 2048> token_bytes;
  std::pmr::monotonic_buffer_resource token_memory{token_bytes.data(), token_bytes.size()};

  HDC dc = nullptr;
  RECT rect;                   // of the caption
  Long Alignment = alignLeft;  // the caption's, where RunStyle has its own
  bool shaping = false;
  Tokens tokens;          // of the caption
  std::size_t index = 0;  // of the token at hand

  Long PenX = 0, PenY = 0;         // pixels, in the coordinates of the context
  Long LineStart = 0;              // 0 until the first wrap, so that a <p> before it goes back to x = 0
  Long AvailableWidth = 0;         // of the rectangle; compared with absolute positions all the same
  CaptionStyle RunStyle;           // ForeColor in it follows the tags
  std::optional<StdFont> RunFont;  // none only for a caption without a font
  std::optional<std::u16string> SavedFontName;  // the caption's own until a <f=...> sets it
  COLORREF SavedColor = 0;                      // shared by <a> and <c=...>
  Long SavedSize = 0;                           // points; not 0 while a <sub> or <sup> is open
  bool SubscriptActive = false;
  Long SubscriptDrop = 0;       // pixels
  std::size_t split_units = 0;  // code units measured so far in cutting words up
  bool ItalicOpen = false;
  ABC Overhang;
  bool OverhangValid = false;  // for the token at hand

  CaptionPen(HDC context, std::u16string_view caption, const RECT& caption_rect, const CaptionStyle& style);

  // Extent of a text in the font in force; nothing when the platform can't tell.
  SIZE Measure(std::u16string_view text) const {
    SIZE size;
    GetTextExtentPoint32W(dc, text, size);
    return size;
  }
  // Makes the run font, as its properties stand now, the context's.
  void SelectRunFont() const;
  void SetFontName(std::u16string_view name);  // of the run font, which there must be
  // Draws in another colour from here on, and in the one before it again.
  void OpenColour(COLORREF colour);
  void CloseColour();
  // The empty string measured (0 by 0), and LineStart moved to where right-aligned lines start.
  SIZE StartLineAtRight();

 private:
  void SetColour(COLORREF colour);
};

// Does what a tag says. False when the token is text.
bool ObeyTag(CaptionPen& pen, std::u16string_view token);

// Measures, places and draws a piece of text.
void PlaceText(CaptionPen& pen, std::u16string_view token);

}  // namespace marklet
