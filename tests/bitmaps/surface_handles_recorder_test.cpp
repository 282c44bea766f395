// The order in which surfaces of either depth get and give back their handles, and what they do when a step
// fails.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "bitmaps/recorded_handles.h"

namespace marklet {
namespace {

struct Surface24 : CDib24 {
  static constexpr const char* kDepth = "24";
  void CreateFrom(HBITMAP bitmap) { CreateFromPicture(bitmap); }
};
struct Surface32 : CDib32 {
  static constexpr const char* kDepth = "32";
  void CreateFrom(HBITMAP bitmap) { CreateFromBitmap(bitmap); }
};

template <class Surface>
class SurfaceHandles : public testing::Test {
 protected:
  static std::string Section() { return std::string("CreateDIBSection(5,3,") + Surface::kDepth + ")"; }
  static std::string Bitmap() { return std::string("bitmap(5x3x") + Surface::kDepth + ")"; }

  // A red picture of the surface's size, and of 24 bits.
  static ObjectRef Picture() {
    CDib24 picture;
    picture.Create(5, 3);
    picture.Clear(MakeRgb(255, 0, 0));
    return ObjectRef(picture.Detach());
  }
};
using Surfaces = testing::Types<Surface24, Surface32>;
TYPED_TEST_SUITE(SurfaceHandles, Surfaces);

TYPED_TEST(SurfaceHandles, AreMadeInOrderAndGivenBackInOrder) {
  Recorder recorder;
  TypeParam surface;
  surface.Create(5, 3);
  EXPECT_EQ(recorder.Lines(),
            (Lines{"CreateCompatibleDC()", this->Section(), "SelectObject(" + this->Bitmap() + ")"}));
  recorder.Clear();
  surface.ClearUp();
  EXPECT_EQ(recorder.Lines(),
            (Lines{"SelectObject(bitmap(1x1x1))", "DeleteObject(" + this->Bitmap() + ")", "DeleteDC()"}))
      << "select back, delete the bitmap, delete the context";
  recorder.Clear();
  surface.ClearUp();
  EXPECT_EQ(recorder.Lines(), Lines{});
}

TYPED_TEST(SurfaceHandles, AreGivenBackWhenTheObjectEnds) {
  Recorder recorder;
  {
    TypeParam surface;
    surface.Create(5, 3);
    recorder.Clear();
  }
  EXPECT_EQ(Names(recorder), (Lines{"SelectObject", "DeleteObject", "DeleteDC"}));
}

TYPED_TEST(SurfaceHandles, OfTheEarlierSurfaceGoBeforeANewOneIsMade) {
  Recorder recorder;
  TypeParam surface;
  surface.Create(5, 3);
  recorder.Clear();
  surface.Create(2, 2);
  EXPECT_EQ(Names(recorder), (Lines{"SelectObject", "DeleteObject", "DeleteDC", "CreateCompatibleDC",
                                    "CreateDIBSection", "SelectObject"}));
}

TYPED_TEST(SurfaceHandles, WithoutAContextCreateIsFalseAndEmpty) {
  TypeParam surface;
  surface.Create(2, 2);
  Recorder recorder;
  recorder.Fail("CreateCompatibleDC");
  EXPECT_FALSE(surface.Create(5, 3));
  EXPECT_EQ(surface.hDC(), nullptr);
  EXPECT_EQ(surface.Bits(), nullptr);
  EXPECT_EQ(Names(recorder), (Lines{"SelectObject", "DeleteObject", "DeleteDC", "CreateCompatibleDC"}));
}

TYPED_TEST(SurfaceHandles, WithoutPixelMemoryCreateDeletesTheContextAndIsEmpty) {
  TypeParam surface;
  Recorder recorder;
  recorder.Fail("CreateDIBSection");
  EXPECT_FALSE(surface.Create(5, 3));
  EXPECT_EQ(surface.hDC(), nullptr);
  EXPECT_EQ(surface.Bits(), nullptr);
  EXPECT_EQ(Names(recorder), (Lines{"CreateCompatibleDC", "CreateDIBSection", "DeleteDC"}));
}

TYPED_TEST(SurfaceHandles, AFailedSelectionLeaksNothing) {
  Recorder recorder;
  recorder.Fail("SelectObject");
  {
    TypeParam surface;
    surface.Create(5, 3);
    surface.Clear(MakeRgb(255, 0, 0));
  }
  ExpectNoLeak(recorder);
}

TYPED_TEST(SurfaceHandles, APictureIsReadThroughAContextOfItsOwn) {
  const ObjectRef picture = this->Picture();
  TypeParam surface;
  Recorder recorder;
  surface.CreateFrom(picture.get());
  EXPECT_EQ(recorder.Lines(), (Lines{"GetObjectA(bitmap(5x3x24))", "CreateCompatibleDC()", this->Section(),
                                     "SelectObject(" + this->Bitmap() + ")", "CreateCompatibleDC()",
                                     "SelectObject(bitmap(5x3x24))", "BitBlt(0,0,5,3,0,0,0xCC0020)",
                                     "SelectObject(bitmap(1x1x1))", "DeleteDC()"}));
}

TYPED_TEST(SurfaceHandles, APictureWithoutASizeOrWithoutMemoryLeavesTheSurfaceEmpty) {
  const ObjectRef picture = this->Picture();
  for (const char* failing : {"GetObjectA", "CreateDIBSection"}) {
    TypeParam surface;
    Recorder recorder;
    recorder.Fail(failing);
    surface.CreateFrom(picture.get());
    EXPECT_EQ(surface.hDC(), nullptr) << failing;
    EXPECT_EQ(surface.Bits(), nullptr) << failing;
  }
}

TYPED_TEST(SurfaceHandles, APictureThatCantBeReadLeavesAllZero) {
  const ObjectRef picture = this->Picture();
  TypeParam surface;
  Recorder recorder;
  recorder.Fail("CreateCompatibleDC", 1);
  surface.CreateFrom(picture.get());
  ASSERT_NE(surface.Bits(), nullptr);
  const std::span bytes(surface.Bits(), static_cast<std::size_t>(surface.BytesPerScanLine()) * 3);
  EXPECT_TRUE(std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; }));
}

}  // namespace
}  // namespace marklet
