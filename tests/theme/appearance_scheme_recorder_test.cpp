// The desktop's scheme from a registry of the test's own.
#include "theme/appearance_scheme.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/headless/recorder/recorder.h"
#include "platform/headless/system/registry.h"
#include "platform/registry.h"

namespace marklet {
namespace {

using namespace std::string_literals;
using Lines = std::vector<std::string>;

struct SchemeName : testing::Test {
  ~SchemeName() override { headless::Registry().clear(); }
  static void Put(const std::string& bytes) {
    headless::Registry()[{"Control Panel\\Appearance", "Current"}] = bytes;
  }
};

TEST_F(SchemeName, IsEmptyWhereThereIsNoRegistry) { EXPECT_EQ(AppearanceScheme(), u""); }

TEST_F(SchemeName, IsTheCurrentAppearanceOfTheUser) {
  Put("Windows Standard\0"s);
  const Recorder recorder;
  EXPECT_EQ(AppearanceScheme(), u"Windows Standard");
  EXPECT_EQ(recorder.Lines(),
            (Lines{"RegOpenKeyExA(0x80000001,\"Control Panel\\Appearance\")",
                   "RegQueryValueExA(\"Current\",0)", "RegQueryValueExA(\"Current\",18)", "RegCloseKey()"}))
      << "the buffer is a character longer than the value";
}

TEST_F(SchemeName, IsEmptyWithoutTheValue) {
  headless::Registry()[{"Control Panel\\Appearance", "Other"}] = "x";
  const Recorder recorder;
  EXPECT_EQ(AppearanceScheme(), u"");
  EXPECT_EQ(recorder.Lines("RegCloseKey").size(), 1u);
}

TEST_F(SchemeName, LosesOneNulAtItsEndAndNoMore) {
  for (const auto& [bytes, text] :
       std::vector<std::pair<std::string, std::u16string>>{{"", u""},
                                                           {"\0"s, u""},
                                                           {"a", u"a"},
                                                           {"a\0"s, u"a"},
                                                           {"a\0\0"s, std::u16string(u"a\0", 2)},
                                                           {"a\0b"s, std::u16string(u"a\0b", 3)}}) {
    Put(bytes);
    EXPECT_EQ(AppearanceScheme(), text) << bytes.size();
  }
}

TEST_F(SchemeName, IsEmptyWhenACallFailsAndTheKeyIsClosedAllTheSame) {
  Put("Windows Standard\0"s);
  for (int good_calls = 0; good_calls < 2; ++good_calls) {
    Recorder recorder;
    recorder.Fail("RegQueryValueExA", good_calls);
    EXPECT_EQ(AppearanceScheme(), u"");
    EXPECT_EQ(recorder.Lines("RegCloseKey").size(), 1u);
  }
  Recorder recorder;
  recorder.Fail("RegOpenKeyExA");
  EXPECT_EQ(AppearanceScheme(), u"");
  EXPECT_EQ(recorder.Lines(), Lines{"RegOpenKeyExA(0x80000001,\"Control Panel\\Appearance\")"});
}

}  // namespace
}  // namespace marklet
