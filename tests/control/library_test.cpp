// The identities, enumerations and events, against tables written out by hand.
#include "control/library.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace marklet {
namespace {

struct ExpectedEnumeration {
  std::string name, guid;
  std::vector<std::pair<std::string, Long>> members;
};

const std::vector<ExpectedEnumeration> kExpected = {
    {"AppearanceConstants", "{853A7E22-BEB2-47CB-B20D-9EEE1BD4FD48}", {{"Flat", 0}, {"3d", 1}}},
    {"BorderConstants", "{154782F5-034D-427E-86A6-6E78494C06F9}", {{"None", 0}, {"Fixed Single", 1}}},
    {"HorizontalAlignment",
     "{90AE0A96-60DA-44A7-ACB4-C66489E5CA2D}",
     {{"Left Justify", 0}, {"Right Justify", 1}, {"Center", 2}}},
    {"HorizontalJAlignment",
     "{868ED000-BE70-4B48-AA4E-9713EEAEF1B6}",
     {{"Left Justify", 0}, {"Right Justify", 1}, {"Center", 2}, {"Justified", 3}}},
    {"HorizontalLRAlignment",
     "{56512B48-9033-48F0-A545-B94DBF50F02F}",
     {{"Left Justify", 0}, {"Right Justify", 1}}},
    {"VertAlignment", "{1CB4CA81-3A0B-4644-970F-BD5270BCFB43}", {{"Top", 0}, {"Center", 2}, {"Bottom", 3}}},
    {"TextEffects",
     "{DF09C74B-18B7-4424-859C-14E1D2EFCBA7}",
     {{"effectNone", 0},
      {"effectStroke", 1},
      {"effectShadow", 2},
      {"effectEmboss", 3},
      {"effectEngrave", 4},
      {"effectHollow", 5}}},
    {"ImageSizes",
     "{83FFE3BA-2BBB-472E-B64A-63BF2C247E5C}",
     {{"16x16", 0},
      {"24x24", 1},
      {"32x32", 2},
      {"48x48", 3},
      {"72x72", 4},
      {"96x96", 5},
      {"128x128", 6},
      {"256x256", 7}}},
    {"BackStyle", "{B6EEA008-90BB-4F94-BD56-33D771ABA47F}", {{"TRANSPARENT", 0}, {"OPAQUE", 1}}},
};

TEST(Library, NineEnumerationsWithTheirGuidsAndMembers) {
  const auto all = Enumerations();
  ASSERT_EQ(all.size(), kExpected.size());
  for (std::size_t i = 0; i < all.size(); ++i) {
    EXPECT_EQ(all[i]->name, kExpected[i].name);
    EXPECT_EQ(all[i]->guid, kExpected[i].guid);
    ASSERT_EQ(all[i]->members.size(), kExpected[i].members.size()) << kExpected[i].name;
    for (std::size_t k = 0; k < kExpected[i].members.size(); ++k) {
      EXPECT_EQ(all[i]->members[k].name, kExpected[i].members[k].first);
      EXPECT_EQ(all[i]->members[k].value, kExpected[i].members[k].second);
    }
  }
}

std::string Signature(const EventRow& row) {
  static constexpr const char* kTypes[] = {"i16", "i32", "f32", "Boolean", "String", "DataObject"};
  std::string result(row.name);
  for (const Argument& argument : row.arguments)
    result += " " + std::string(argument.name) + ":" + kTypes[static_cast<int>(argument.type)];
  return result;
}

TEST(Library, FourteenEventsNumberedFromOneWithTheirArguments) {
  const std::vector<std::string> expected = {
      "Change",
      "Click",
      "DblClick",
      "MouseDown Button:i16 Shift:i16 x:f32 y:f32",
      "MouseUp Button:i16 Shift:i16 x:f32 y:f32",
      "MouseMove Button:i16 Shift:i16 x:f32 y:f32",
      "MouseEnter",
      "MouseLeave",
      "OLECompleteDrag Effect:i32",
      "OLEDragDrop Data:DataObject Effect:i32 Button:i16 Shift:i16 x:f32 y:f32",
      "OLEDragOver Data:DataObject Effect:i32 Button:i16 Shift:i16 x:f32 y:f32 State:i16",
      "OLEGiveFeedback Effect:i32 DefaultCursors:Boolean",
      "OLESetData Data:DataObject DataFormat:i16",
      "OLEStartDrag Data:DataObject AllowedEffects:i32",
  };
  const auto events = Events();
  ASSERT_EQ(events.size(), expected.size());
  for (std::size_t i = 0; i < events.size(); ++i) {
    EXPECT_EQ(Signature(events[i]), expected[i]);
    EXPECT_EQ(events[i].dispid, static_cast<Long>(i + 1));
    EXPECT_EQ(events[i].ui_default, events[i].name == "Click");
  }
}

TEST(Library, IdentitiesAreThoseOfRegisteredForms) {
  EXPECT_EQ(library::kName, "zvsMarklet");
  EXPECT_EQ(library::kHelp, "Zarvo Marklet Control");
  EXPECT_EQ(library::kGuid, "{8F6B874C-6DE0-4902-A016-DBCDD8F272C1}");
  EXPECT_EQ(library::kMajorVersion, 3);
  EXPECT_EQ(library::kMinorVersion, 0);
  EXPECT_EQ(library::kLocale, 0x409u);
  EXPECT_EQ(library::kDispatch.name, "_Marklet");
  EXPECT_EQ(library::kDispatch.guid, "{310A4F20-C1CC-4F0F-90A4-9826804A23C7}");
  EXPECT_EQ(library::kClass.name, "Marklet");
  EXPECT_EQ(library::kClass.guid, "{2C94FDA3-AB60-4E3F-85FD-A5AEC6543F3F}");
  EXPECT_EQ(library::kEvents.name, "__Marklet");
  EXPECT_EQ(library::kEvents.guid, "{6E85A505-50AA-4694-9B51-64C50D1D2045}");
  EXPECT_EQ(library::kImageOwner.name, "_ISupportsAlphaImage");
  EXPECT_EQ(library::kImageOwnerClass.name, "ISupportsAlphaImage");
  EXPECT_EQ(library::kImagePage.name, "_prpImage");
  EXPECT_EQ(library::kImagePageClass.name, "prpImage");
  EXPECT_EQ(library::kImageOwner.guid, "{215FB7C9-18D0-42C9-BE97-3A3FA3C703E4}");
  EXPECT_EQ(library::kImageOwnerClass.guid, "{35D4D430-2D52-44B8-9189-8ECE9ABC223B}");
  EXPECT_EQ(library::kImagePage.guid, "{FBF96550-A8CD-41BE-9064-EBFBF5BB0A63}");
  EXPECT_EQ(library::kImagePageClass.guid, "{E7111604-8459-4582-BAD0-28915B59AB15}");
}

}  // namespace
}  // namespace marklet
