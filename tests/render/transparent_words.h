// A transparent control with words, alone and in front of something.
#pragma once

#include "render/picture.h"
#include "render/render_control.h"

namespace marklet::testing {

inline const PropertyTexts kWords = {{"BackStyle", "TRANSPARENT"},
                                     {"Caption", "<b>M</b><c=C00000>M</c>"},
                                     {"ForeColor", "#2040A0"},
                                     {"FontSize", "20"}};
constexpr SIZE kWordsSize = {90, 40};

inline Picture WordsOn(const std::string& behind) {
  return PictureOf(RenderedControl(kWordsSize, kWords, 1, {{}, false, behind}).Surface());
}

}  // namespace marklet::testing
