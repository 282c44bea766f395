// What icons leave behind in the table of GDI handles: nothing.
#include "platform/icon.h"

#include <gtest/gtest.h>

#include "platform/gdi.h"
#include "support/gdi_handles.h"

namespace marklet {
namespace {

ObjectRef Bitmap() {
  std::uint8_t* bits = nullptr;
  return ObjectRef(CreateDIBSection(nullptr, 16, 16, 32, bits));
}

TEST(WindowsIcons, LeaveNoHandlesBehind) {
  const ObjectRef mask = Bitmap(), colours = Bitmap();
  OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get()));
  const int before = CountGdiHandles();
  {
    const IconRef icon = CreateIconIndirect(mask.get(), colours.get());
    const PictureRef picture = OleCreatePictureIndirect(CreateIconIndirect(mask.get(), colours.get()));
    EXPECT_GE(CountGdiHandles(), before + 4) << "an icon is two bitmaps at least";
  }
  EXPECT_EQ(CountGdiHandles(), before);
}

}  // namespace
}  // namespace marklet
