// The computed colours of schemes, held against the formulas as they are written down: a text for each slot,
// evaluated here by arithmetic of its own.
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string_view>

#include "theme/scheme_fixture.h"

namespace marklet {
namespace {

using Channels = std::array<int, 3>;  // red, green, blue

Channels ChannelsOf(COLORREF colour) {
  return {static_cast<int>(colour & 255), static_cast<int>(colour >> 8 & 255),
          static_cast<int>(colour >> 16 & 255)};
}
COLORREF ColourOf(const Channels& c) {
  return static_cast<COLORREF>(c[0]) | static_cast<COLORREF>(c[1]) << 8 | static_cast<COLORREF>(c[2]) << 16;
}

Channels Mixed(const Channels& a, const Channels& b, int n) {
  Channels mixed{};
  for (std::size_t i = 0; i < 3; ++i)
    mixed[i] = static_cast<int>(std::nearbyint(a[i] * n / 255.0 + b[i] * (255 - n) / 255.0));
  return mixed;
}

int Mean(const Channels& c) { return (c[0] + c[1] + c[2]) / 3; }

Channels Darkened(Channels c) {
  while (Mean(c) >= 128)
    for (int& channel : c) channel = static_cast<int>(std::nearbyint(channel * 0.65));
  return c;
}

// Of a colour over a reference, towards slot 1. Where the rule's loop would not end the colour stays.
Channels Raised(Channels colour, const Channels& reference, const Channels& slot_1) {
  if (reference == Channels{140, 140, 28} || reference == Channels{30, 140, 28}) return colour;
  if (Mean(reference) > 101) return colour;
  if (Mean(colour) <= 0) colour = {255, 255, 255};
  return Mixed(colour, slot_1, 200);
}

double LevelAt(double q, double p, double h) {
  if (h > 360) h -= 360;
  if (h < 0) h += 360;
  if (h < 60) return q + (p - q) * h / 60;
  if (h < 180) return p;
  if (h < 240) return q + (p - q) * (240 - h) / 60;
  return q;
}

// Lightness times 1.215, in the formulas for levels up to 1.
Channels Lightened(const Channels& face) {
  const double R = face[0], G = face[1], B = face[2];
  const double M = std::fmax(R, std::fmax(G, B)), m = std::fmin(R, std::fmin(G, B));
  const double L = (M + m) / 2, d = M - m;
  double h = 0, s = 0;
  if (d >= 0.00001) {
    if (L <= 0.5) {
      s = d / (M + m);
    } else if (M + m != 2) {
      s = d / (2 - M - m);
    }
    const double r = (M - R) / d, g = (M - G) / d, b = (M - B) / d;
    if (R == M) {
      h = 60 * (b - g);
    } else if (G == M) {
      h = 60 * (2 + r - b);
    } else {
      h = 60 * (4 + g - r);
    }
    if (h < 0) h += 360;
  }
  const double l = L * 1.215;
  double levels[3] = {l, l, l};
  if (s != 0) {
    const double p = l <= 0.5 ? (s + 1) * l : l + s - l * s, q = 2 * l - p;
    levels[0] = LevelAt(q, p, h + 120);
    levels[1] = LevelAt(q, p, h);
    levels[2] = LevelAt(q, p, h - 120);
  }
  Channels result{};
  for (std::size_t i = 0; i < 3; ++i) {
    const double rounded = std::nearbyint(levels[i]);
    result[i] = rounded > 255 ? 255 : rounded < 0 ? 0 : static_cast<int>(rounded);
  }
  return result;
}

// The formulas: W, F, H and S are the system's window, button face, highlight and button shadow, K black,
// G grey 150, X white, a number its slot; B(a,b,n) blends, D(a) darkens, R(a,b) raises the contrast, L(a)
// lightens.
struct Formula {
  std::size_t slot;
  std::string_view text;
};
constexpr Formula kPlain[] = {{8, "B(B(B(W,F,246),H,180),G,235)"},
                              {1, "B(B(W,F,224),F,249)"},
                              {2, "B(K,S,51)"},
                              {15, "H"},
                              {7, "D(H)"},
                              {9, "B(F,W,213)"},
                              {16, "B(8,B(9,1,128),110)"},
                              {17, "B(9,B(8,H,96),96)"},
                              {18, "B(15,7,128)"},
                              {3, "R(3,1)"},
                              {25, "R(25,8)"},
                              {26, "R(26,8)"},
                              {5, "R(5,1)"},
                              {6, "B(B(S,B(B(W,F,224),F,249),172),K,250)"},
                              {22, "B(S,W,250)"},
                              {4, "B(S,W,240)"},
                              {21, "B(8,B(S,H,128),128)"},
                              {0, "F"}};
constexpr Formula kStyled[] = {{8, "B(K,W,120)"},
                               {1, "B(B(W,F,224),F,249)"},
                               {2, "K"},
                               {15, "H"},
                               {7, "K"},
                               {9, "K"},
                               {16, "K"},
                               {17, "K"},
                               {18, "B(15,7,128)"},
                               {3, "R(3,1)"},
                               {25, "R(25,8)"},
                               {26, "R(26,8)"},
                               {5, "R(5,1)"},
                               {6, "B(B(S,B(B(W,F,224),F,249),172),K,250)"},
                               {22, "B(K,F,164)"},
                               {4, "B(K,F,157)"},
                               {21, "B(8,B(S,8,164),128)"},
                               {0, "F"}};
constexpr Formula kMenusWithoutTheme[] = {
    {11, "B(W,9,196)"}, {12, "9"}, {13, "B(W,9,215)"}, {14, "B(W,9,128)"}};
constexpr Formula kOtherBars[] = {
    {11, "B(W,9,215)"}, {12, "B(9,B(K,S,200),213)"}, {13, "B(W,9,196)"}, {14, "B(W,9,128)"}};
constexpr Formula kThemed[] = {{28, "K"},          {29, "K"},          {31, "K"},         {32, "K"},
                               {33, "B(K,X,128)"}, {34, "B(K,X,128)"}, {35, "K"},         {36, "B(F,X,225)"},
                               {37, "B(F,K,225)"}, {38, "B(K,X,200)"}, {39, "K"},         {40, "B(K,X,128)"},
                               {41, "K"},          {42, "B(K,X,64)"},  {43, "B(K,X,255)"}};
constexpr Formula kLast[] = {{27, "L(F)"}};

class Evaluator {
 public:
  Evaluator(const ThemeColours& row, const std::array<Channels, 4>& whsf) : system_(whsf) {
    for (std::size_t i = 0; i < row.size(); ++i) slots_[i] = ChannelsOf(row[i]);
  }
  template <std::size_t kCount>
  void Run(const Formula (&formulas)[kCount]) {
    for (const Formula& formula : formulas) {
      rest_ = formula.text;
      slots_[formula.slot] = Term();
    }
  }
  COLORREF Slot(std::size_t slot) const { return ColourOf(slots_[slot]); }

 private:
  char Take() {
    const char c = rest_.front();
    rest_.remove_prefix(1);
    return c;
  }
  int Number() {
    int number = 0;
    while (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9')
      number = number * 10 + Take() - '0';
    return number;
  }
  Channels Term() {
    if (rest_.front() >= '0' && rest_.front() <= '9') return slots_[static_cast<std::size_t>(Number())];
    switch (const char c = Take()) {
      case 'B':
      case 'R': {
        Take();  // the bracket
        const Channels a = Term();
        Take();  // the comma
        const Channels b = Term();
        if (Take() == ')') return Raised(a, b, slots_[1]);
        const int weight = Number();
        Take();
        return Mixed(a, b, weight);
      }
      case 'D':
      case 'L': {
        Take();
        const Channels a = Term();
        Take();
        return c == 'D' ? Darkened(a) : Lightened(a);
      }
      case 'G':
        return {150, 150, 150};
      case 'K':
        return {0, 0, 0};
      case 'X':
        return {255, 255, 255};
      default:
        return system_[std::string_view("WFHS").find(c)];
    }
  }

  std::array<Channels, kThemeColours> slots_{};
  std::array<Channels, 4> system_;
  std::string_view rest_;
};

// Palettes of every kind: any colours, dark ones, few levels, greys.
Channels RandomColour(std::mt19937& random, int kind) {
  const auto below = [&random](unsigned bound) { return static_cast<int>(random() % bound); };
  switch (kind) {
    case 0:
      return {below(256), below(256), below(256)};
    case 1:
      return {below(110), below(110), below(110)};
    case 2:
      return {below(2) * 255, below(2) * 255, below(2) * 255};
    case 3:
      return {below(4), below(4), below(4)};
    default: {
      const int level = below(256);
      return {level, level, level};
    }
  }
}

class SlowComputedColours : public testing::SchemeTest {
 protected:
  static std::array<Channels, 4> ShowRandomColours(std::mt19937& random) {
    const int kind = static_cast<int>(random() % 6);
    std::array<Channels, 4> whsf;
    for (Channels& colour : whsf)
      colour = RandomColour(random, kind < 5 ? kind : static_cast<int>(random() % 5));
    ShowColours(ColourOf(whsf[0]), ColourOf(whsf[1]), ColourOf(whsf[2]), ColourOf(whsf[3]));
    return whsf;
  }
  static ThemeColours Expected(const ThemeColours& row, const std::array<Channels, 4>& whsf, bool themed,
                               bool menu_style) {
    Evaluator evaluator(row, whsf);
    if (themed && menu_style) {
      evaluator.Run(kStyled);
    } else {
      evaluator.Run(kPlain);
    }
    if (menu_style && !themed) {
      evaluator.Run(kMenusWithoutTheme);
    } else {
      evaluator.Run(kOtherBars);
    }
    if (themed) evaluator.Run(kThemed);
    evaluator.Run(kLast);
    ThemeColours colours;
    for (std::size_t i = 0; i < colours.size(); ++i) colours[i] = evaluator.Slot(i);
    return colours;
  }
  // The slots that a scheme starts from: what it shows when its system colours are there.
  static ThemeColours RowOf(std::u16string_view scheme) {
    scheme == u"WINDOWS CLASSIC" ? ShowClassic() : ShowNormalColor();
    return ColoursOf(std::u16string(scheme));
  }
};

constexpr ThemeColours kDefaultRow = {
    MakeRgb(212, 208, 200), MakeRgb(249, 248, 247), MakeRgb(102, 102, 102), MakeRgb(0, 0, 0),
    MakeRgb(166, 166, 166), MakeRgb(0, 0, 0),       MakeRgb(166, 166, 166), MakeRgb(10, 36, 106),
    MakeRgb(182, 189, 210), MakeRgb(219, 216, 209), MakeRgb(204, 200, 193), MakeRgb(246, 245, 244),
    MakeRgb(213, 209, 201), MakeRgb(248, 247, 246), MakeRgb(237, 235, 231), MakeRgb(10, 36, 106),
    MakeRgb(212, 213, 216), MakeRgb(133, 146, 181), MakeRgb(10, 36, 106),   MakeRgb(171, 169, 165),
    MakeRgb(129, 129, 129), MakeRgb(136, 141, 157), MakeRgb(141, 141, 141), MakeRgb(0, 0, 0),
    MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(0, 0, 0),       MakeRgb(251, 250, 255)};

TEST_F(SlowComputedColours, FollowTheFormulasOnAThousandDesktops) {
  const ThemeColours classic = RowOf(u"WINDOWS CLASSIC"), normal_color = RowOf(u"NORMALCOLOR");
  std::mt19937 random(20);
  for (int round = 0; round < 1000; ++round) {
    const std::array<Channels, 4> whsf = ShowRandomColours(random);
    for (const bool themed : {false, true}) {
      for (const bool menu_style : {false, true}) {
        for (const char16_t* name : {u"unknown", u"WINDOWS CLASSIC", u"NORMALCOLOR", u"METALLIC"}) {
          if (themed) ShowTheme(name);
          const bool is_classic = std::u16string_view(name) == u"WINDOWS CLASSIC";
          const bool is_normal_color = std::u16string_view(name) == u"NORMALCOLOR" && menu_style;
          const ThemeColours& row = is_classic ? classic : is_normal_color ? normal_color : kDefaultRow;
          ASSERT_EQ(ColoursOf(name, menu_style, themed ? testing::kSomeWindow : nullptr),
                    Expected(row, whsf, themed, menu_style))
              << "round " << round << (themed ? ", themed" : "") << (menu_style ? ", menus" : "");
        }
      }
    }
  }
}

// All channels, all weights.
TEST_F(SlowComputedColours, BlendEveryPairOfChannelsAtEveryWeight) {
  for (int a = 0; a < 256; ++a) {
    for (int b = 0; b < 256; b += 3) {
      const Channels seconds = {b, std::min(b + 1, 255), std::min(b + 2, 255)};
      for (int weight = 0; weight < 256; ++weight) {
        const COLORREF mixed = CColorXP::Blend(ColourOf({a, a, a}), ColourOf(seconds), weight);
        ASSERT_EQ(mixed, ColourOf(Mixed({a, a, a}, seconds, weight))) << a << ' ' << b << ' ' << weight;
        // Never half way between two integers: 255 is odd. So whole numbers give the same.
        ASSERT_EQ(static_cast<int>(mixed & 255), (2 * (a * weight + b * (255 - weight)) + 255) / 510);
      }
    }
  }
}

TEST_F(SlowComputedColours, LightenEveryFaceOfEverySixthLevel) {
  for (int red = 0; red < 256; red += red < 6 ? 1 : 6)
    for (int green = 0; green < 256; green += green < 6 ? 1 : 6)
      for (int blue = 0; blue < 256; blue += blue < 6 ? 1 : 6) {
        ShowColours(0, ColourOf({red, green, blue}), 0);
        ASSERT_EQ(ColoursOf(u"")[27], ColourOf(Lightened({red, green, blue})))
            << red << ' ' << green << ' ' << blue;
      }
}

}  // namespace
}  // namespace marklet
