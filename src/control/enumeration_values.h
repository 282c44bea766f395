// The values of the control's own enumerations; those of captions stand in text/caption_style.h. Properties
// hold them as plain numbers, since any number may stand in a saved form.
#pragma once

#include "platform/types.h"

namespace marklet {

enum AppearanceConstants : Long { appearanceFlat = 0, appearance3d = 1 };
enum BorderConstants : Long { borderNone = 0, borderFixedSingle = 1 };
enum BackStyleConstants : Long { backTransparent = 0, backOpaque = 1 };

}  // namespace marklet
