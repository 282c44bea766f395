// Ours first, the platform's headers after: see sdk_windows_test.cpp.
#include "host/user_control.h"
#include "platform/gdi.h"
#include "platform/system.h"
#include "platform/text.h"
#include "platform/types.h"
#include "platform/uniscribe.h"
// The order is what is tested.
#include "platform/win32/sdk_ole.h"

#include <gtest/gtest.h>

namespace marklet {
namespace {

TEST(Sdk, LeavesOurConstantsAloneWhenItComesLast) {
  EXPECT_EQ(NOTSRCCOPY, 0x00330008u);
  EXPECT_EQ(DT_WORD_ELLIPSIS, 0x40000u);
  EXPECT_EQ(TA_RTLREADING, 256u);
  EXPECT_EQ(CP_ACP, 0u);
  EXPECT_EQ(S_OK, 0);
}

TEST(Sdk, HasTheInterfacesOfOleAndPointersToThem) {
  const Microsoft::WRL::ComPtr<IUnknown> none;
  EXPECT_EQ(none.Get(), nullptr);
  EXPECT_TRUE(FAILED(::OleTranslateColor(0x12345678, nullptr, nullptr)));
}

}  // namespace
}  // namespace marklet
