// Where something stands on a form. Of the form's window in pixels, of the saved form in twips.
#pragma once

namespace designer {

struct Point {
  int x, y;
};

struct Place {
  int left = 0, top = 0, width = 0, height = 0;

  int Right() const { return left + width; }
  int Bottom() const { return top + height; }
  bool Has(Point point) const {
    return point.x >= left && point.x < Right() && point.y >= top && point.y < Bottom();
  }
  bool operator==(const Place&) const = default;
};

// Twips don't depend on the screen: 1440 are an inch.
constexpr int kTwipsPerInch = 1440;

// Rounded to the nearest, halves away from 0.
constexpr int Scaled(int value, int times, int by) {
  const long long product = static_cast<long long>(value) * times;
  return static_cast<int>((product < 0 ? product - by / 2 : product + by / 2) / by);
}
constexpr int ToTwips(int pixels, int per_inch) { return Scaled(pixels, kTwipsPerInch, per_inch); }
constexpr int ToPixels(int twips, int per_inch) { return Scaled(twips, per_inch, kTwipsPerInch); }

constexpr Place ToTwips(const Place& pixels, int per_inch) {
  return {ToTwips(pixels.left, per_inch), ToTwips(pixels.top, per_inch), ToTwips(pixels.width, per_inch),
          ToTwips(pixels.height, per_inch)};
}
constexpr Place ToPixels(const Place& twips, int per_inch) {
  return {ToPixels(twips.left, per_inch), ToPixels(twips.top, per_inch), ToPixels(twips.width, per_inch),
          ToPixels(twips.height, per_inch)};
}

}  // namespace designer
