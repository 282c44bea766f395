// The seam's vocabulary: the platform's own names for numbers, colours, rectangles and handles, as portable
// types.
//
// Handles are opaque pointers. Null is the platform's "no handle"; passing one to any call of the seam is
// allowed and makes that call fail quietly.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/rounding.h"

namespace marklet {

using COLORREF = std::uint32_t;  // red in the low byte, green in the next, blue in the third
using OLE_COLOR =
    std::uint32_t;  // a COLORREF, or with the top bit set a system colour whose index is the low byte

struct RECT {
  Long left = 0, top = 0, right = 0, bottom = 0;  // pixels
  friend bool operator==(const RECT&, const RECT&) = default;
};

struct SIZE {
  Long cx = 0, cy = 0;  // pixels
  friend bool operator==(const SIZE&, const SIZE&) = default;
};

// The A, B and C spacing of one character, in pixels: lead, black box and trail. A and C are often negative.
struct ABC {
  Long abcA = 0;
  std::uint32_t abcB = 0;
  Long abcC = 0;
};

struct DeviceContextHandle;
struct GdiObjectHandle;
struct WindowHandle;
struct ModuleHandle;
using HDC = DeviceContextHandle*;
using HGDIOBJ = GdiObjectHandle*;  // a bitmap, brush, font or pen
using HBITMAP = HGDIOBJ;
using HBRUSH = HGDIOBJ;
using HFONT = HGDIOBJ;
using HPEN = HGDIOBJ;
using HWND = WindowHandle*;
using HMODULE = ModuleHandle*;

// Red, green and blue from 0 to 255 as one colour value; only the low byte of each counts.
constexpr COLORREF MakeRgb(unsigned red, unsigned green, unsigned blue) {
  return (red & 0xFFu) | (green & 0xFFu) << 8 | (blue & 0xFFu) << 16;
}
constexpr unsigned RedOf(COLORREF colour) { return colour & 0xFFu; }
constexpr unsigned GreenOf(COLORREF colour) { return colour >> 8 & 0xFFu; }
constexpr unsigned BlueOf(COLORREF colour) { return colour >> 16 & 0xFFu; }

// Marks a transparent pixel in everything that has no alpha: RGB(254, 3, 253).
constexpr COLORREF KeyColour = 0x00FD03FE;

// The answer of a colour translation that failed, and the colour no text or pen can have.
constexpr COLORREF CLR_INVALID = 0xFFFFFFFF;

// Raster operations of BitBlt.
constexpr std::uint32_t SRCCOPY = 0x00CC0020;
constexpr std::uint32_t SRCAND = 0x008800C6;
constexpr std::uint32_t SRCINVERT = 0x00660046;
constexpr std::uint32_t NOTSRCCOPY = 0x00330008;

// How StretchBlt makes one pixel of several: by averaging.
constexpr int HALFTONE = 4;

// Which lines of an edge DrawEdge raises or sinks.
constexpr std::uint32_t BDR_RAISEDOUTER = 1;
constexpr std::uint32_t BDR_SUNKENOUTER = 2;
constexpr std::uint32_t BDR_RAISEDINNER = 4;
constexpr std::uint32_t BDR_SUNKENINNER = 8;
constexpr std::uint32_t BDR_OUTER = BDR_RAISEDOUTER | BDR_SUNKENOUTER;
constexpr std::uint32_t BDR_INNER = BDR_RAISEDINNER | BDR_SUNKENINNER;
constexpr std::uint32_t EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;

// The sides that DrawEdge draws, and what it does beyond that.
constexpr std::uint32_t BF_LEFT = 1;
constexpr std::uint32_t BF_TOP = 2;
constexpr std::uint32_t BF_RIGHT = 4;
constexpr std::uint32_t BF_BOTTOM = 8;
constexpr std::uint32_t BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM;
constexpr std::uint32_t BF_MIDDLE = 0x800;   // fills the middle with the face colour
constexpr std::uint32_t BF_ADJUST = 0x2000;  // takes the lines' width off the drawn sides of the rectangle

// Format flags of DrawTextW and DrawTextA.
constexpr std::uint32_t DT_CENTER = 0x1;
constexpr std::uint32_t DT_RIGHT = 0x2;
constexpr std::uint32_t DT_VCENTER = 0x4;
constexpr std::uint32_t DT_BOTTOM = 0x8;
constexpr std::uint32_t DT_WORDBREAK = 0x10;
constexpr std::uint32_t DT_SINGLELINE = 0x20;
constexpr std::uint32_t DT_NOCLIP = 0x100;
constexpr std::uint32_t DT_CALCRECT = 0x400;
constexpr std::uint32_t DT_RTLREADING = 0x20000;
constexpr std::uint32_t DT_WORD_ELLIPSIS = 0x40000;

// Values of SetTextAlign.
constexpr std::uint32_t TA_RIGHT = 2;
constexpr std::uint32_t TA_CENTER = 6;
constexpr std::uint32_t TA_BASELINE = 24;
constexpr std::uint32_t TA_RTLREADING = 256;

// Style of MessageBoxW: an exclamation mark and an OK button.
constexpr std::uint32_t MB_ICONEXCLAMATION = 0x30;

// Code pages.
constexpr std::uint32_t CP_ACP = 0;
constexpr std::uint32_t CP_UTF8 = 65001;

}  // namespace marklet
