// What CNonClientFont asks of the platform, and what it keeps when that fails.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/headless/recorder/recorder.h"
#include "text/non_client_font.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

class NonClientFontCalls : public testing::Test {
 protected:
  NonClientFontCalls() {
    NONCLIENTMETRICSA metrics{};
    metrics.cbSize = 340;
    metrics.iMenuWidth = 8;
    LOGFONTA icon_title{};
    icon_title.lfHeight = -13;
    ConfiguredNonClient() = {metrics, icon_title};
  }
  ~NonClientFontCalls() override { ConfiguredNonClient() = {}; }

  Recorder recorder_;
};

TEST_F(NonClientFontCalls, BothRecordsAreReadOnceAtTheStart) {
  CNonClientFont fonts;
  EXPECT_EQ(recorder_.Lines(),
            (Lines{"SystemParametersInfoA(41,340,0x0)", "SystemParametersInfoA(31,60,0x0)"}));
  EXPECT_TRUE(fonts.GetMetrics());
  EXPECT_EQ(recorder_.Lines().size(), 4u);
}

TEST_F(NonClientFontCalls, AFailedReadLeavesTheRecordAndTheOtherIsReadAllTheSame) {
  CNonClientFont fonts;
  ConfiguredNonClient().metrics->iMenuWidth = 80;
  ConfiguredNonClient().icon_title->lfHeight = -26;
  recorder_.Fail("SystemParametersInfoA", 1);
  EXPECT_FALSE(fonts.GetMetrics());
  EXPECT_EQ(fonts.MenuWidth(), 80);
  EXPECT_EQ(fonts.LogFont(1).font.lfHeight, -13);
  recorder_.Fail("SystemParametersInfoA");
  EXPECT_FALSE(fonts.GetMetrics());
  EXPECT_EQ(fonts.MenuWidth(), 80);
}

TEST_F(NonClientFontCalls, WithoutConfigurationThereIsNothingHere) {
  ConfiguredNonClient() = {};
  CNonClientFont fonts;
  EXPECT_FALSE(fonts.GetMetrics());
  EXPECT_EQ(fonts.CaptionHeight(), 0);
  ASSERT_TRUE(fonts.Font(nullptr, 1));
  EXPECT_EQ(fonts.Font(nullptr, 1)->Size(), 0);
}

TEST_F(NonClientFontCalls, WithoutAResolutionTheSizeStays) {
  recorder_.Fail("PixelsPerInch");
  LOGFONTA record{};
  record.lfHeight = -13;
  StdFont font;
  font.PutSize(20);
  CNonClientFont::MakeStdFont(record, nullptr, font);
  EXPECT_EQ(font.Size(), 20);
}

}  // namespace
}  // namespace marklet
