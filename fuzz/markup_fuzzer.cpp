// Captions of any kind through tokenizer and interpreter, on any generation of the system, in any rectangle
// and font. The tokens are held against the naive tokenizer of the tests.
#include <algorithm>
#include <limits>
#include <memory>
#include <string>

#include "fuzz/failing_calls.h"
#include "fuzz/fuzzers.h"
#include "fuzz/input_reader.h"
#include "fuzz/require.h"
#include "markup/markup_caption.h"
#include "markup/tokenizer.h"
#include "platform/gdi.h"
#include "platform/text.h"
#include "tests/markup/naive_tokenizer.h"
#include "tests/markup/played_system.h"

namespace marklet {
namespace {

constexpr char16_t kUnits[] = {0x0000, 0x0085, 0x00A0, 0x00AD, 0x00B4, 0x00C5, 0x00FF, 0x0301, 0x0391,
                               0x0416, 0x058A, 0x05D0, 0x05D1, 0x0627, 0x0644, 0x064B, 0x0915, 0x094D,
                               0x0E01, 0x0E33, 0x1100, 0x200B, 0x200D, 0x200E, 0x2014, 0x2028, 0x202E,
                               0x2066, 0x3000, 0x4E00, 0xA000, 0xAC00, 0xD800, 0xDBFF, 0xDC00, 0xDFFF,
                               0xF900, 0xFEFF, 0xFF15, 0xFFFE, 0xFFFF};

constexpr SystemGeneration kGenerations[] = {generation::kVista, generation::kXP, generation::kWindows2000,
                                             generation::kNT4, generation::kWindows95};

constexpr Long kEdges[] = {0,
                           1,
                           10,
                           40,
                           64,
                           100,
                           300,
                           -1,
                           -50,
                           1000000,
                           -1000000,
                           std::numeric_limits<Long>::max(),
                           std::numeric_limits<Long>::min()};

constexpr double kSizes[] = {8.25, 10, 12, 9, 0, 0.4, 1, 13, 20, 72, 300, 32767};

constexpr const char16_t* kNames[] = {u"Tahoma", u"", u"DejaVu Sans", u"no such face"};

constexpr std::string_view kOperations[] = {"",
                                            "GetTextExtentPoint32W",
                                            "GetTextExtentPoint32A",
                                            "GetCharABCWidthsA",
                                            "SelectObject",
                                            "SetTextColor",
                                            "GetTextColor",
                                            "DrawTextW",
                                            "ScriptIsComplex",
                                            "CreatePen",
                                            "TextOutW",
                                            "PixelsOf"};

void CheckTokens(const std::u16string& caption, bool shaping) {
  std::vector<std::u16string> tokens;
  for (const std::u16string_view token : TokenizeMarkup(caption)) tokens.emplace_back(token);
  Require(tokens == naive::TokenizeMarkup(caption, shaping),
          "the tokens are not those of the naive tokenizer");
  Require(HasMarkup(caption) == naive::HasMarkup(caption), "markup is seen where there is none, or not seen");
}

// A small picture in memory.
struct Surface {
  HDC dc = CreateCompatibleDC(nullptr);
  std::uint8_t* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(dc, 64, 48, 24, bits);
  HGDIOBJ old_bitmap = SelectObject(dc, bitmap);
  HGDIOBJ old_font = SelectObject(dc, StdFont().hFont());

  ~Surface() {
    SelectObject(dc, old_font);
    SelectObject(dc, old_bitmap);
    DeleteObject(bitmap);
    DeleteDC(dc);
  }
};

CaptionStyle ReadStyle(InputReader& input, HDC dc) {
  const unsigned flags = input.Byte();
  CaptionStyle style;
  style.RightToLeft = (flags & 1) != 0;
  style.SingleLine = (flags & 2) == 0;
  style.SurfaceDC = (flags & 4) != 0 ? nullptr : dc;
  style.Alignment = input.Byte() % 5;
  style.VerticalAlignment = input.Byte() % 5;
  style.TextEffect = input.Byte() % 8;
  style.ForeColor = MakeRgb(0, 0, 0);
  style.BackColor = input.Byte() % 2 == 0 ? MakeRgb(200, 100, 50) : CLR_INVALID;
  if ((flags & 8) != 0) return style;  // a caption without a font
  style.Font = std::make_shared<StdFont>();
  style.Font->PutSize(input.OneOf(kSizes));
  style.Font->PutName(input.OneOf(kNames));
  style.Font->PutWeight((flags & 16) != 0 ? 700 : 400);
  style.Font->PutItalic((flags & 32) != 0);
  return style;
}

RECT ReadRect(InputReader& input) {
  RECT rect;
  for (Long* edge : {&rect.left, &rect.top, &rect.right, &rect.bottom}) *edge = input.OneOf(kEdges);
  return rect;
}

void CheckDrawing(const std::u16string& caption, const RECT& rect, CaptionStyle style, HDC dc) {
  RECT drawn_rect = rect;
  DrawMarkupCaption(dc, caption, drawn_rect, style);
  if (!HasMarkup(caption)) return;
  Require(drawn_rect == rect, "the rectangle of a caption with markup changed");
  Require(style.TextHeight == 0, "the style of a caption with markup changed");
}

}  // namespace

void FuzzMarkup(std::span<const std::uint8_t> bytes) {
  InputReader input(bytes);
  const SystemGeneration& played = input.OneOf(kGenerations);
  const PlayedSystem system(played);
  Surface surface;
  const std::string_view operation = input.OneOf(kOperations);
  const FailingCalls failing(operation, input.Byte());
  const RECT rect = ReadRect(input);
  const CaptionStyle style = ReadStyle(input, surface.dc);
  const std::u16string caption = input.Text(kUnits);
  CheckTokens(caption, played.has_script_library);
  CheckDrawing(caption, rect, style, surface.dc);
}

}  // namespace marklet
