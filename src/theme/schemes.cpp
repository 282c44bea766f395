#include "theme/schemes.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "theme/theme_colours.h"

namespace marklet {
namespace {

constexpr std::size_t kPlainSlots = 28;

constexpr COLORREF Grey(unsigned level) { return MakeRgb(level, level, level); }
constexpr COLORREF kBlack = 0;
constexpr COLORREF kWhite = Grey(255);

// The rows hold colours as 0xRRGGBB.
constexpr COLORREF ColourOf(unsigned rgb) { return MakeRgb(rgb >> 16, rgb >> 8, rgb); }

// From slot 0 to 23, and slot 27. Slots 24 and 25 are slot 3 again, and 26 is slot 5.
constexpr std::array<COLORREF, kPlainSlots> Row(const std::array<unsigned, 24>& first, unsigned slot_27) {
  std::array<COLORREF, kPlainSlots> row{};
  std::ranges::transform(first, row.begin(), ColourOf);
  row[24] = row[25] = row[3];
  row[26] = row[5];
  row[27] = ColourOf(slot_27);
  return row;
}

constexpr ThemeColours MenuRow(const std::array<COLORREF, kPlainSlots>& plain,
                               const std::array<unsigned, kThemeColours - kPlainSlots>& further) {
  ThemeColours row{};
  std::ranges::transform(further, std::ranges::copy(plain, row.begin()).out, ColourOf);
  return row;
}

constexpr auto kDefault =
    Row({0xD4D0C8, 0xF9F8F7, 0x666666, 0x000000, 0xA6A6A6, 0x000000, 0xA6A6A6, 0x0A246A,
         0xB6BDD2, 0xDBD8D1, 0xCCC8C1, 0xF6F5F4, 0xD5D1C9, 0xF8F7F6, 0xEDEBE7, 0x0A246A,
         0xD4D5D8, 0x8592B5, 0x0A246A, 0xABA9A5, 0x818181, 0x888D9D, 0x8D8D8D, 0x000000},
        0xFBFAFF);

constexpr auto kWindowsClassic =
    Row({0xC0C0C0, 0xF6F6F6, 0x666666, 0x000000, 0xA6A6A6, 0x000000, 0xA6A6A6, 0x000080,
         0xADADD1, 0xCACACA, 0xBABABA, 0xF6F6F6, 0xC4C4C4, 0xF5F5F5, 0xE3E3E3, 0x000080,
         0xCCCCD8, 0x8080C0, 0x000080, 0xA1A1A1, 0x828282, 0x81819C, 0x8D8D8D, 0x000000},
        0xE3E3E3);

constexpr auto kNormalColorMenu =
    MenuRow(Row({0xA2C1F5, 0xF6F6F6, 0x002D96, 0x000000, 0x8D8D8D, 0x000000, 0x6A8CCB, 0x000080,
                 0xFFEEC2, 0x87ADE4, 0x84ABE3, 0xE3EFFF, 0x87ADE4, 0xE3EEFF, 0x93B4E5, 0x000080,
                 0xFFC06F, 0xFE803E, 0x141480, 0x75A6F1, 0x043994, 0xFFC06F, 0x6A8DCC, 0x000000},
                0xFFFBE9),
            {0x638ADE, 0x003894, 0xFFFFFF, 0x5A8ADE, 0x10419C, 0xCEDFFF, 0xA5BEF7, 0x9CBEF7, 0xD6E7FF,
             0x7BA6E7, 0xFFEB9C, 0xF79A18, 0xFFDF7B, 0xEF8208, 0xFFFFDE, 0xFFC35A});

constexpr std::array<Scheme, 25> kSchemes = {
    {{u"BRICK", kWhite, MakeRgb(194, 191, 165), MakeRgb(141, 137, 97)},
     {u"DESERT", kWhite, MakeRgb(213, 204, 187), MakeRgb(0, 128, 128)},
     {u"EGGPLANT", kWhite, MakeRgb(144, 176, 168), MakeRgb(88, 128, 120)},
     {u"HIGH CONTRAST #1", kBlack, kBlack, kBlack},
     {u"HIGH CONTRAST #2", kBlack, kBlack, kBlack},
     {u"HIGH CONTRAST BLACK", kBlack, kBlack, kBlack},
     {u"HIGH CONTRAST WHITE", kBlack, kBlack, kBlack},
     {u"LILAC", kWhite, MakeRgb(174, 168, 217), MakeRgb(90, 78, 177)},
     {u"MAPLE", kWhite, MakeRgb(230, 216, 174), MakeRgb(198, 166, 70)},
     {u"MARINE (HIGH COLOR)", MakeRgb(200, 224, 216), MakeRgb(136, 192, 184), MakeRgb(0, 0, 128)},
     {u"PLUM (HIGH COLOR)", MakeRgb(216, 208, 200), MakeRgb(168, 152, 144), MakeRgb(0, 128, 128)},
     {u"PUMPKIN", kWhite, MakeRgb(236, 213, 157), MakeRgb(128, 0, 128)},
     {u"RAINY DAY", kWhite, MakeRgb(131, 153, 177), MakeRgb(79, 101, 125)},
     {u"RED, WHITE, AND BLUE (VGA)", kWhite, Grey(192), MakeRgb(128, 0, 0)},
     {u"ROSE", kWhite, MakeRgb(207, 175, 183), MakeRgb(159, 96, 112)},
     {u"SLATE", kWhite, MakeRgb(157, 185, 200), MakeRgb(85, 128, 151)},
     {u"SPRUCE", kWhite, MakeRgb(162, 200, 169), MakeRgb(89, 151, 100)},
     {u"STORM (VGA)", kWhite, Grey(192), MakeRgb(128, 0, 128)},
     {u"TEAL (VGA)", kWhite, Grey(192), MakeRgb(0, 128, 128)},
     {u"WHEAT", kWhite, MakeRgb(222, 222, 160), MakeRgb(128, 128, 0)},
     {u"WINDOWS CLASSIC", kWhite, Grey(192), MakeRgb(0, 0, 128), kWindowsClassic, kWindowsClassic},
     {u"WINDOWS STANDARD", kWhite, MakeRgb(212, 208, 200), MakeRgb(10, 36, 106)},
     {u"NORMALCOLOR", kWhite, MakeRgb(236, 233, 216), MakeRgb(49, 106, 197), {}, kNormalColorMenu},
     {u"HOMESTEAD", kWhite, MakeRgb(236, 233, 216), MakeRgb(147, 160, 112)},
     {u"METALLIC", kWhite, MakeRgb(224, 223, 227), MakeRgb(178, 180, 191)}}};

}  // namespace

const Scheme* SchemeNamed(std::u16string_view name) {
  const auto found = std::ranges::find(kSchemes, name, &Scheme::name);
  return found == kSchemes.end() ? nullptr : &*found;
}

std::span<const COLORREF> DefaultSlots() { return kDefault; }

}  // namespace marklet
