// What stands behind a host picture.
#pragma once

#include "platform/host_picture.h"
#include "platform/win32/sdk_ole.h"

namespace marklet {

struct HostPicture {
  Microsoft::WRL::ComPtr<IPicture> picture;
};

namespace win32 {

// Null without memory; the picture is released then.
PictureRef WrapPicture(Microsoft::WRL::ComPtr<IPicture> picture);

}  // namespace win32

}  // namespace marklet
