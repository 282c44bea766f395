// The picture that a form, or a container on it, keeps of itself, and the part that lies under the control.
#pragma once

#include "host/user_control.h"

namespace marklet {

// Whether the host's forms keep a picture: then the steps below are taken, whatever comes of them.
bool KeepsPicture(UserControl& host);

// Copies the part under the control to (0, 0), errors ignored. Meanwhile the object that the picture is of is
// made to draw on it rather than on the screen.
void CopyFromForm(UserControl& host, HDC destination);

}  // namespace marklet
