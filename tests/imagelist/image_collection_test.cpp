#include "imagelist/image_collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace marklet {
namespace {

struct Blank final : CIconBytes {
  void Render(HDC, Long, Long, Long, Long, bool, OLE_COLOR, Long) override {}
};
ImageRef NewImage() { return std::make_shared<Blank>(); }

TEST(ImageCollection, KeepsInsertionOrderAndCountsFromOne) {
  ImageCollection images;
  const ImageRef first = NewImage(), second = NewImage();
  EXPECT_TRUE(images.Add(u"zebra", first));
  EXPECT_TRUE(images.Add(u"ant", second));
  EXPECT_EQ(images.Count(), 2);
  EXPECT_EQ(images.Item(1), first);
  EXPECT_EQ(images.Item(2), second);
  EXPECT_EQ(images.Item(0), nullptr);
  EXPECT_EQ(images.Item(3), nullptr);
  EXPECT_EQ(images.Item(-1), nullptr);
}

TEST(ImageCollection, KeysCompareWithoutRegardToCase) {
  ImageCollection images;
  const ImageRef image = NewImage();
  images.Add(u"Stra\u00DFe \u00C4\u03A9\u0416\u0401", image);
  EXPECT_EQ(images.Item(u"STRA\u00DFE \u00E4\u03C9\u0436\u0451"), image);
  EXPECT_EQ(images.Item(u"Stra\u00DFe"), nullptr);
  EXPECT_EQ(images.Item(u""), nullptr);
}

TEST(ImageCollection, CaseIsOnlyThatOfLetters) {
  ImageCollection images;
  images.Add(u"@[", NewImage());
  EXPECT_EQ(images.Item(u"`{"), nullptr);
  images.Add(u"\u00D7", NewImage());  // the multiplication sign stands among the capitals
  EXPECT_EQ(images.Item(u"\u00F7"), nullptr);
}

// The last letters of ranges, and scripts of all kinds.
TEST(ImageCollection, LettersOfEveryScriptHaveTheirCase) {
  constexpr const char16_t* kPairs[] = {u"Zz",           u"\u00D6\u00F6", u"\u00DE\u00FE", u"\u0178\u00FF",
                                        u"\u017D\u017E", u"\u01C4\u01C6", u"\u03A1\u03C1", u"\u03AB\u03CB",
                                        u"\u040F\u045F", u"\u042F\u044F", u"\u04FC\u04FD", u"\u0556\u0586",
                                        u"\u1EA0\u1EA1", u"\u1EF8\u1EF9", u"\u1F0F\u1F07", u"\u216F\u217F",
                                        u"\u24CF\u24E9", u"\u2C2E\u2C5E", u"\u2C80\u2C81", u"\uFF3A\uFF5A"};
  for (const char16_t* pair : kPairs) {
    ImageCollection images;
    const ImageRef image = NewImage();
    images.Add(std::u16string(1, pair[0]), image);
    EXPECT_EQ(images.Item(std::u16string(1, pair[1])), image) << std::hex << unsigned{pair[0]};
    EXPECT_EQ(images.Item(std::u16string(1, static_cast<char16_t>(pair[0] - 1))), nullptr)
        << std::hex << unsigned{pair[0]};
  }
}

TEST(ImageCollection, KeysMayHoldAnyUnits) {
  ImageCollection images;
  const std::u16string lone = {0xD800}, other = {0xDC00};
  EXPECT_TRUE(images.Add(lone, NewImage()));
  EXPECT_TRUE(images.Add(other, NewImage()));
  EXPECT_TRUE(images.Add(lone + other, NewImage()));
  EXPECT_FALSE(images.Add(lone, NewImage()));
}

TEST(ImageCollection, ATakenKeyIsRefused) {
  ImageCollection images;
  const ImageRef first = NewImage();
  images.Add(u"key", first);
  EXPECT_FALSE(images.Add(u"KEY", NewImage()));
  EXPECT_EQ(images.Count(), 1);
  EXPECT_EQ(images.Item(u"key"), first);
}

TEST(ImageCollection, RemovalClosesTheGap) {
  ImageCollection images;
  const ImageRef second = NewImage();
  images.Add(u"a", NewImage());
  images.Add(u"b", second);
  EXPECT_TRUE(images.Remove(u"A"));
  EXPECT_FALSE(images.Remove(u"A"));
  EXPECT_EQ(images.Item(1), second);
  EXPECT_EQ(images.Count(), 1);
}

TEST(ImageCollection, AKeyIsFreeAgainAfterItsRemovalAndJoinsAtTheEnd) {
  ImageCollection images;
  const ImageRef again = NewImage();
  images.Add(u"a", NewImage());
  images.Add(u"b", NewImage());
  images.Remove(u"a");
  EXPECT_TRUE(images.Add(u"A", again));
  EXPECT_EQ(images.Item(2), again);
  EXPECT_EQ(images.Item(u"a"), again);
}

TEST(ImageCollection, AKeyThatBeginsAnotherIsAKeyOfItsOwn) {
  ImageCollection images;
  EXPECT_TRUE(images.Add(u"", NewImage()));
  EXPECT_TRUE(images.Add(u"a", NewImage()));
  EXPECT_TRUE(images.Add(std::u16string(u"a\0", 2), NewImage()));
  EXPECT_EQ(images.Count(), 3);
}

// Held against a list that is searched from its beginning.
TEST(ImageCollection, BehavesAsAListThroughAnyCalls) {
  std::mt19937 random(3);
  ImageCollection images;
  std::vector<std::pair<char16_t, ImageRef>> list;  // by lower-case letter
  for (int step = 0; step < 5000; ++step) {
    const char16_t letter = static_cast<char16_t>(u'a' + random() % 20);
    const std::u16string key(1, static_cast<char16_t>(letter - (random() % 2 ? 32 : 0)));
    const auto place =
        std::find_if(list.begin(), list.end(), [&](const auto& item) { return item.first == letter; });
    const bool is_there = place != list.end();
    ASSERT_EQ(images.Item(key), is_there ? place->second : nullptr);
    if (random() % 2) {
      const ImageRef image = NewImage();
      ASSERT_EQ(images.Add(key, image), !is_there);
      if (!is_there) list.emplace_back(letter, image);
    } else {
      ASSERT_EQ(images.Remove(key), is_there);
      if (is_there) list.erase(place);
    }
    ASSERT_EQ(images.Count(), static_cast<Long>(list.size()));
    for (std::size_t i = 0; i < list.size(); ++i)
      ASSERT_EQ(images.Item(static_cast<Long>(i + 1)), list[i].second);
  }
}

TEST(SlowImageCollection, ManyImagesAreAddedAndFoundInTheTimeThatTheirKeysTake) {
  ImageCollection images;
  const ImageRef image = NewImage();
  const auto key = [](int i) {
    const std::string digits = std::to_string(i);
    return u"Image" + std::u16string(digits.begin(), digits.end());
  };
  constexpr int kMany = 100'000;  // searched one by one, these would take minutes
  for (int i = 0; i < kMany; ++i) ASSERT_TRUE(images.Add(key(i), image));
  for (int i = 0; i < kMany; ++i) ASSERT_EQ(images.Item(key(i)), image);
}

}  // namespace
}  // namespace marklet
