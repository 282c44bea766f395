// A form to look at, and a picture of it.
#pragma once

#include <string>

#include "designer.h"

namespace designer {

// Places a few controls with captions and images, as a user would.
void PlaceSample(Designer& designer);

// Opens the page for images of the control that is selected, writes a picture of the designer with it to a
// PNG file and closes it. False when there is no page, or no file.
bool TakePicture(Designer& designer, const std::wstring& file);

}  // namespace designer
