// Several controls on one picture, for galleries.
//
//   { "columns": 3, "margin": 24, "gap": 16, "background": "#FFFFFF",
//     "properties": { "FontName": "Tahoma" },          every control's, before its own
//     "images": { "logo": "logo.png" },                file names as seen from the sheet
//     "items": [ { "heading": "Effects" },             starts a row of its own
//                { "title": "Stroke", "size": "240x48", "span": 1, "hover": false,
//                  "properties": { "Caption": "Text", "TextEffect": "effectStroke" } } ] }
//
// Everything but "items" may be left out. Lengths are in 96ths of an inch. Headings and titles are captions
// themselves and may hold markup. Values are texts, whole numbers or Booleans. Rows are filled from the left.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "render/picture.h"
#include "render/render_control.h"

namespace marklet {

// What one control may have at most, so that a sheet takes memory and time for no more.
constexpr std::int64_t kMostSheetPixels = std::int64_t{8192} * 8192;

// Called with each control after it is painted and before it goes.
using ControlSeen = std::function<void(RenderedControl&)>;

// Paints the controls of a description in JSON, from the file of that name, one after the other. Throws
// RenderError, for a sheet of more than kMostSheetPixels too.
Picture RenderSheet(std::string_view json, double scale, const std::string& file = {},
                    const ControlSeen& seen = {});

}  // namespace marklet
