#include "control/library.h"

#include <iterator>

#include "control/enumeration_values.h"
#include "images/image_sizes.h"
#include "text/caption_style.h"

namespace marklet {
namespace {

constexpr EnumMember kAppearance[] = {{"Flat", appearanceFlat}, {"3d", appearance3d}};
constexpr EnumMember kBorder[] = {{"None", borderNone}, {"Fixed Single", borderFixedSingle}};
constexpr EnumMember kHorizontal[] = {
    {"Left Justify", alignLeft}, {"Right Justify", alignRight}, {"Center", alignCenter}};
constexpr EnumMember kHorizontalJ[] = {{"Left Justify", alignLeft},
                                       {"Right Justify", alignRight},
                                       {"Center", alignCenter},
                                       {"Justified", alignJustified}};
constexpr EnumMember kHorizontalLR[] = {{"Left Justify", alignLeft}, {"Right Justify", alignRight}};
constexpr EnumMember kVertical[] = {
    {"Top", verticalTop}, {"Center", verticalCenter}, {"Bottom", verticalBottom}};
constexpr EnumMember kEffects[] = {{"effectNone", effectNone},       {"effectStroke", effectStroke},
                                   {"effectShadow", effectShadow},   {"effectEmboss", effectEmboss},
                                   {"effectEngrave", effectEngrave}, {"effectHollow", effectHollow}};
constexpr EnumMember kSizes[] = {{"16x16", 0}, {"24x24", 1}, {"32x32", 2},   {"48x48", 3},
                                 {"72x72", 4}, {"96x96", 5}, {"128x128", 6}, {"256x256", 7}};
static_assert(std::size(kSizes) == kImageSizes);
constexpr EnumMember kBackStyle[] = {{"TRANSPARENT", backTransparent}, {"OPAQUE", backOpaque}};

constexpr Argument kMouse[] = {{"Button", ArgumentType::I2},
                               {"Shift", ArgumentType::I2},
                               {"x", ArgumentType::R4},
                               {"y", ArgumentType::R4}};
constexpr Argument kCompleteDrag[] = {{"Effect", ArgumentType::I4}};
constexpr Argument kDragDrop[] = {
    {"Data", ArgumentType::DataObject}, {"Effect", ArgumentType::I4}, {"Button", ArgumentType::I2},
    {"Shift", ArgumentType::I2},        {"x", ArgumentType::R4},      {"y", ArgumentType::R4}};
constexpr Argument kDragOver[] = {
    {"Data", ArgumentType::DataObject}, {"Effect", ArgumentType::I4}, {"Button", ArgumentType::I2},
    {"Shift", ArgumentType::I2},        {"x", ArgumentType::R4},      {"y", ArgumentType::R4},
    {"State", ArgumentType::I2}};
constexpr Argument kGiveFeedback[] = {{"Effect", ArgumentType::I4},
                                      {"DefaultCursors", ArgumentType::Boolean}};
constexpr Argument kSetData[] = {{"Data", ArgumentType::DataObject}, {"DataFormat", ArgumentType::I2}};
constexpr Argument kStartDrag[] = {{"Data", ArgumentType::DataObject}, {"AllowedEffects", ArgumentType::I4}};

constexpr EventRow kEventRows[] = {
    {"Change", 1, {}, false},
    {"Click", 2, {}, true},
    {"DblClick", 3, {}, false},
    {"MouseDown", 4, kMouse, false},
    {"MouseUp", 5, kMouse, false},
    {"MouseMove", 6, kMouse, false},
    {"MouseEnter", 7, {}, false},
    {"MouseLeave", 8, {}, false},
    {"OLECompleteDrag", 9, kCompleteDrag, false},
    {"OLEDragDrop", 10, kDragDrop, false},
    {"OLEDragOver", 11, kDragOver, false},
    {"OLEGiveFeedback", 12, kGiveFeedback, false},
    {"OLESetData", 13, kSetData, false},
    {"OLEStartDrag", 14, kStartDrag, false},
};

}  // namespace

namespace enumerations {
const Enumeration AppearanceConstants = {"AppearanceConstants", "{853A7E22-BEB2-47CB-B20D-9EEE1BD4FD48}",
                                         kAppearance};
const Enumeration BorderConstants = {"BorderConstants", "{154782F5-034D-427E-86A6-6E78494C06F9}", kBorder};
const Enumeration HorizontalAlignment = {"HorizontalAlignment", "{90AE0A96-60DA-44A7-ACB4-C66489E5CA2D}",
                                         kHorizontal};
const Enumeration HorizontalJAlignment = {"HorizontalJAlignment", "{868ED000-BE70-4B48-AA4E-9713EEAEF1B6}",
                                          kHorizontalJ};
const Enumeration HorizontalLRAlignment = {"HorizontalLRAlignment", "{56512B48-9033-48F0-A545-B94DBF50F02F}",
                                           kHorizontalLR};
const Enumeration VertAlignment = {"VertAlignment", "{1CB4CA81-3A0B-4644-970F-BD5270BCFB43}", kVertical};
const Enumeration TextEffects = {"TextEffects", "{DF09C74B-18B7-4424-859C-14E1D2EFCBA7}", kEffects};
const Enumeration ImageSizes = {"ImageSizes", "{83FFE3BA-2BBB-472E-B64A-63BF2C247E5C}", kSizes};
const Enumeration BackStyle = {"BackStyle", "{B6EEA008-90BB-4F94-BD56-33D771ABA47F}", kBackStyle};
}  // namespace enumerations

std::span<const Enumeration* const> Enumerations() {
  namespace all = enumerations;
  static constexpr const Enumeration* kAll[] = {&all::AppearanceConstants,
                                                &all::BorderConstants,
                                                &all::HorizontalAlignment,
                                                &all::HorizontalJAlignment,
                                                &all::HorizontalLRAlignment,
                                                &all::VertAlignment,
                                                &all::TextEffects,
                                                &all::ImageSizes,
                                                &all::BackStyle};
  return kAll;
}

std::span<const EventRow> Events() { return kEventRows; }

}  // namespace marklet
