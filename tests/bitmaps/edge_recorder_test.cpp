// The lines of an edge: through the platform with the system's colours, its own with any other.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

#include "bitmaps/edge.h"
#include "platform/headless/recorder/recorder.h"

namespace marklet {
namespace {

constexpr std::uint32_t kSunken = 10, kAllSides = 15;

class EdgeLines : public testing::Test {
 protected:
  EdgeLines() { edge_.Attach(0x0000FF, 0x00FF00, 0xFF0000, 0x00FFFF); }
  ~EdgeLines() override { DeleteDC(dc_); }

  std::vector<std::string> Draw(std::uint32_t edge, std::uint32_t flags, RECT rect = {10, 20, 30, 35}) {
    Recorder recorder;
    rect_ = rect;
    flags_ = flags;
    edge_.DrawEdge(dc_, rect_, edge, flags_);
    return recorder.Lines();
  }

  const HDC dc_ = CreateCompatibleDC(nullptr);
  CEdge edge_;  // red face, green dark shadow, blue highlight, yellow shadow
  RECT rect_;
  std::uint32_t flags_ = 0;
};

std::vector<std::string> Without(std::vector<std::string> lines, std::string_view start) {
  std::erase_if(lines, [&](const std::string& line) { return line.starts_with(start); });
  return lines;
}

TEST_F(EdgeLines, GoToThePlatformWithTheSystemsColours) {
  CEdge fresh;
  Recorder recorder;
  RECT rect = {1, 2, 30, 40};
  std::uint32_t flags = kAllSides | 0x800;
  fresh.DrawEdge(dc_, rect, kSunken, flags);
  EXPECT_EQ(recorder.Lines(), std::vector<std::string>{"DrawEdge([1,2,30,40],0xA,0x80F)"});
  EXPECT_EQ(flags, kAllSides | 0x800);
}

TEST_F(EdgeLines, AreItsOwnWithAnyChangedColour) {
  for (int changed = 0; changed < 4; ++changed) {
    CEdge edge;
    if (changed == 0) edge.PutFaceColor(0x123456);
    if (changed == 1) edge.PutDkShadowColor(0x123456);
    if (changed == 2) edge.PutHighlightColor(0x123456);
    if (changed == 3) edge.PutShadowColor(0x123456);
    Recorder recorder;
    RECT rect = {1, 2, 30, 40};
    std::uint32_t flags = kAllSides;
    edge.DrawEdge(dc_, rect, kSunken, flags);
    EXPECT_TRUE(recorder.Lines("DrawEdge").empty());
    EXPECT_EQ(recorder.Lines("LineTo").size(), 8u);
  }
}

TEST_F(EdgeLines, AreItsOwnWithASystemColourSetAsSuch) {
  CEdge edge;
  edge.PutFaceColor(0x8000000F);
  Recorder recorder;
  RECT rect = {1, 2, 30, 40};
  std::uint32_t flags = kAllSides;
  edge.DrawEdge(dc_, rect, kSunken, flags);
  EXPECT_TRUE(recorder.Lines("DrawEdge").empty());
}

TEST_F(EdgeLines, RunLeftTopRightBottomTheOuterBeforeTheInner) {
  const std::vector<std::string> lines = Without(Without(Draw(kSunken, kAllSides), "Create"), "GetSysColor");
  EXPECT_EQ(lines, (std::vector<std::string>{
                       "SelectObject(pen(#FFFF00))", "MoveToEx(10,34)", "LineTo(10,20)",  // left
                       "SelectObject(pen(#00FF00))", "MoveToEx(11,33)", "LineTo(11,21)",  //
                       "SelectObject(pen(#FFFF00))", "MoveToEx(10,20)", "LineTo(30,20)",  // top
                       "SelectObject(pen(#00FF00))", "MoveToEx(11,21)", "LineTo(29,21)",  //
                       "SelectObject(pen(#0000FF))", "MoveToEx(29,20)", "LineTo(29,34)",  // right
                       "SelectObject(pen(#FF0000))", "MoveToEx(28,22)", "LineTo(28,33)",  //
                       "SelectObject(pen(#0000FF))", "MoveToEx(29,34)", "LineTo(10,34)",  // bottom
                       "SelectObject(pen(#FF0000))", "MoveToEx(28,33)", "LineTo(11,33)",  //
                       "SelectObject(pen(#000000))"}));
}

TEST_F(EdgeLines, TakeTheirPensBySide) {
  struct Row {
    std::uint32_t edge;
    const char *near_side, *far_side;
  };
  const Row rows[] = {{1, "#FF0000", "#00FF00"},
                      {2, "#FFFF00", "#0000FF"},
                      {4, "#0000FF", "#FFFF00"},
                      {8, "#00FF00", "#FF0000"}};
  for (const Row& row : rows) {
    for (const std::uint32_t side : {1u, 2u, 4u, 8u}) {
      const std::vector<std::string> lines = Without(Without(Draw(row.edge, side), "Create"), "GetSysColor");
      ASSERT_EQ(lines.size(), 4u) << row.edge << " " << side;
      const std::string colour = side <= 2 ? row.near_side : row.far_side;
      EXPECT_EQ(lines[0], "SelectObject(pen(" + colour + "))") << row.edge << " " << side;
    }
  }
}

TEST_F(EdgeLines, OfBothBitsOfAPairTakeThePenThatIsThere) {
  const HPEN pen = CreatePen(1, 0x445566);
  const HGDIOBJ former = SelectObject(dc_, pen);
  const std::vector<std::string> lines = Without(Draw(3, 1), "Create");
  EXPECT_EQ(Without(lines, "GetSysColor"),
            (std::vector<std::string>{"SelectObject(null)", "MoveToEx(10,34)", "LineTo(10,20)"}));
  SelectObject(dc_, former);
  DeleteObject(pen);
}

TEST_F(EdgeLines, AreNoneForSidesAndEdgesNotAskedFor) {
  EXPECT_TRUE(Without(Without(Draw(kSunken, 0), "Create"), "GetSysColor").empty());
  EXPECT_TRUE(Without(Without(Draw(0, kAllSides), "Create"), "GetSysColor").empty());
}

TEST_F(EdgeLines, FillTheMiddleFirstAndForgetIt) {
  const std::vector<std::string> lines = Without(Without(Draw(2, 0x801), "Create"), "GetSysColor");
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0], "FillRect([10,20,30,35],brush(#FF0000))");
  EXPECT_EQ(flags_, 1u);
}

TEST_F(EdgeLines, ShrinkTheRectangleByFourWhateverWasDrawn) {
  Draw(2, 0x2001);
  EXPECT_EQ(rect_, (RECT{14, 24, 26, 31}));
  Draw(kSunken, 0x200F);
  EXPECT_EQ(rect_, (RECT{14, 24, 26, 31}));
  Draw(kSunken, kAllSides);
  EXPECT_EQ(rect_, (RECT{10, 20, 30, 35}));
}

TEST_F(EdgeLines, MakeTheirPensOnFirstNeedAndOneAnewForEachColourSet) {
  EXPECT_EQ(Draw(kSunken, 1).size(), 5u + 7u);  // four pens, a brush; two lines and the old pen back
  EXPECT_EQ(Draw(kSunken, 1).size(), 7u);
  Recorder recorder;
  edge_.PutShadowColor(0x010203);
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{"DeleteObject(pen(#FFFF00))", "CreatePen(1,#030201)"}));
  recorder.Clear();
  edge_.PutFaceColor(0x010203);
  EXPECT_EQ(recorder.Lines(),
            (std::vector<std::string>{"DeleteObject(brush(#FF0000))", "DeleteObject(pen(#FF0000))",
                                      "CreatePen(1,#030201)", "CreateSolidBrush(#030201)"}));
}

TEST_F(EdgeLines, LeaveNoHandlesBehind) {
  Recorder recorder;
  {
    CEdge edge;
    edge.PutFaceColor(0x123456);
    RECT rect = {1, 2, 30, 40};
    std::uint32_t flags = kAllSides;
    edge.DrawEdge(dc_, rect, kSunken, flags);
    edge.PutBaseColor(0x654321);
    edge.DestoryGDIHandles();
    edge.DrawEdge(dc_, rect, kSunken, flags);
  }
  EXPECT_EQ(recorder.Lines("CreatePen").size() + recorder.Lines("CreateSolidBrush").size(),
            recorder.Lines("DeleteObject").size());
  EXPECT_GT(recorder.Lines("DeleteObject").size(), 10u);
}

TEST_F(EdgeLines, AreTriedAgainWithoutPens) {
  Recorder recorder;
  recorder.Fail("CreatePen");
  RECT rect = {1, 2, 30, 40};
  std::uint32_t flags = kAllSides;
  edge_.DrawEdge(dc_, rect, kSunken, flags);
  EXPECT_EQ(recorder.Lines("LineTo").size(), 8u);
  recorder.FailNothing();
  recorder.Clear();
  edge_.PutShadowColor(0x010203);
  EXPECT_EQ(recorder.Lines("CreatePen").size(), 4u);
}

TEST(EdgeHandles, AreValidButForZeroAndMinusOne) {
  EXPECT_FALSE(CEdge::IsValidHandle(nullptr));
  EXPECT_FALSE(CEdge::IsValidHandle(std::bit_cast<HGDIOBJ>(std::intptr_t{-1})));
  const HPEN pen = CreatePen(1, 0);
  EXPECT_TRUE(CEdge::IsValidHandle(pen));
  DeleteObject(pen);
}

// The picture of an edge with system colours is that of one with the same colours set by hand.
TEST(EdgePicture, IsTheSameFromThePlatformAndFromItself) {
  for (std::uint32_t bits = 0; bits < 16; ++bits) {
    if ((bits & 3) == 3 || (bits & 12) == 12) continue;
    for (std::uint32_t flags = 0; flags < 16; ++flags) {
      std::vector<std::uint8_t> pictures[2];
      for (int own = 0; own < 2; ++own) {
        std::uint8_t* pixels = nullptr;
        const HDC dc = CreateCompatibleDC(nullptr);
        const HBITMAP bitmap = CreateDIBSection(dc, 16, 12, 24, pixels);
        const HGDIOBJ former = SelectObject(dc, bitmap);
        CEdge edge;
        if (own == 1) edge.PutFaceColor(0x8000000F);
        RECT rect = {2, 1, 14, 10};
        std::uint32_t all_flags = flags | 0x800;
        edge.DrawEdge(dc, rect, bits, all_flags);
        pictures[own].assign(pixels, pixels + std::ptrdiff_t{16} * 3 * 12);
        SelectObject(dc, former);
        DeleteObject(bitmap);
        DeleteDC(dc);
      }
      EXPECT_EQ(pictures[0], pictures[1]) << bits << " " << flags;
    }
  }
}

}  // namespace
}  // namespace marklet
