// The platform's headers and ours in one file, the platform's first. sdk_last_windows_test.cpp has them the
// other way round.
#include "platform/win32/sdk_ole.h"
// After it, so that every constant that is a macro over there stands in the way.
#include "host/user_control.h"
#include "platform/gdi.h"
#include "platform/system.h"
#include "platform/text.h"
#include "platform/types.h"
#include "platform/uniscribe.h"
#include "platform/win32/handles.h"

#include <gtest/gtest.h>

namespace marklet::win32 {
namespace {

TEST(Sdk, LeavesOurConstantsAloneWhenItComesFirst) {
  EXPECT_EQ(SRCCOPY, 0x00CC0020u);
  EXPECT_EQ(DT_SINGLELINE, 0x20u);
  EXPECT_EQ(TA_BASELINE, 24u);
  EXPECT_EQ(CLR_INVALID, 0xFFFFFFFFu);
  EXPECT_EQ(CP_UTF8, 65001u);
  EXPECT_EQ(S_FALSE, 1);
  EXPECT_EQ(SIC_COMPLEX, 1u);
}

TEST(Sdk, GivesHandlesAndRecordsBackUnchanged) {
  int somewhere = 0;
  const ::HDC dc = reinterpret_cast<::HDC>(&somewhere);
  EXPECT_EQ(Native(Wrap(dc)), dc);
  const RECT rect = {1, -2, 3, 2147483647};
  EXPECT_EQ(Native(rect).top, -2);
  EXPECT_EQ(Wrap(Native(rect)), rect);
  EXPECT_EQ(Native(SIZE{7, 8}).cy, 8);
  EXPECT_EQ(Wrap(::ABC{-1, 2, -3}).abcC, -3);
}

}  // namespace
}  // namespace marklet::win32
