#include "imagelist/image_collection.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace marklet
