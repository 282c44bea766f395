// The tags of the caption language, one row each: what it does, whether it makes a caption one with markup,
// and its line in the reference.
#pragma once

#include <span>
#include <string_view>

namespace marklet {

struct CaptionPen;

struct TagRow {
  using Action = void (*)(CaptionPen&);

  std::u16string_view opener;  // as it is written; of a tag with a value, with what stands for that
  bool marks;                  // a caption that holds the opener, or its first two characters, has markup
  bool takes_value;            // opened by ObeyValueTag
  Action open;                 // null for a tag with a value, and for one that is drawn as it stands
  Action close;                // of the opener's name with a slash; null without a closer
  std::string_view meaning;
};

std::span<const TagRow> Tags();

}  // namespace marklet
