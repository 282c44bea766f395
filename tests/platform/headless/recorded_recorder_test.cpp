// What a recorder logs.
#include <stdexcept>

#include "platform/headless/recorder/recorder.h"
#include "platform/headless/system/registry.h"
#include "platform/registry.h"
#include "platform/shared/std_font.h"
#include "platform/system.h"
#include "platform/test_picture.h"
#include "platform/uniscribe.h"

namespace marklet {
namespace {

using Lines = std::vector<std::string>;

class Recorded : public testing::Test {
 protected:
  HDC Context() const { return picture_.Context(); }

  TestPicture picture_{20, 10}, source_{30, 40, 32};
};

TEST_F(Recorded, CallsAreLinesInTheirOrder) {
  const Recorder recorder;
  SetBkMode(Context(), 0);
  SetTextColor(Context(), 0x0000FF);
  GetTextColor(Context());
  EXPECT_EQ(recorder.Lines(), (Lines{"SetBkMode(0)", "SetTextColor(#FF0000)", "GetTextColor()"}));
}

TEST_F(Recorded, CallsBeforeAndAfterTheRecorderLeaveNoLines) {
  SetBkMode(Context(), TRANSPARENT);
  {
    const Recorder recorder;
    EXPECT_EQ(recorder.Lines(), Lines{});
  }
  SetBkMode(Context(), TRANSPARENT);
  const Recorder recorder;
  EXPECT_EQ(recorder.Lines(), Lines{});
}

TEST_F(Recorded, CallsOfOneKindCanBePicked) {
  const Recorder recorder;
  SetTextColor(Context(), 0x000001);
  SetBkMode(Context(), TRANSPARENT);
  SetTextColor(Context(), 0x010000);
  EXPECT_EQ(recorder.Lines("SetTextColor"), (Lines{"SetTextColor(#010000)", "SetTextColor(#000001)"}));
  EXPECT_EQ(recorder.Lines("LineTo"), Lines{});
  EXPECT_THROW(recorder.Lines("NoSuchCall"), std::invalid_argument);
}

TEST_F(Recorded, CallsAreForgottenOnClear) {
  Recorder recorder;
  SetBkMode(Context(), TRANSPARENT);
  recorder.Clear();
  SetBkMode(Context(), OPAQUE);
  EXPECT_EQ(recorder.Lines(), Lines{"SetBkMode(2)"});
}

TEST_F(Recorded, ARecorderIsAloneOnItsThread) {
  const Recorder recorder;
  EXPECT_THROW(Recorder(), std::logic_error);
  SetBkMode(Context(), TRANSPARENT);
  EXPECT_EQ(recorder.Lines(), Lines{"SetBkMode(1)"});
}

TEST_F(Recorded, ContextsAreLeftOut) {
  const Recorder recorder;
  const HDC dc = CreateCompatibleDC(Context());
  DeleteDC(dc);
  BitBlt(Context(), 1, 2, 3, 4, source_.Context(), 5, 6, SRCCOPY);
  AlphaBlend(Context(), 0, 0, 3, 4, source_.Context(), 5, 6, 7, 8, 200, true);
  MoveToEx(Context(), -1, 2);
  LineTo(Context(), 3, -4);
  EXPECT_EQ(recorder.Lines(), (Lines{"CreateCompatibleDC()", "DeleteDC()", "BitBlt(1,2,3,4,5,6,0xCC0020)",
                                     "AlphaBlend(0,0,3,4,5,6,7,8,200,1)", "MoveToEx(-1,2)", "LineTo(3,-4)"}));
}

TEST_F(Recorded, ObjectsTellWhatTheyAre) {
  const Recorder recorder;
  std::uint8_t* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(Context(), 3, 2, 24, bits);
  BITMAP told;
  GetObjectA(bitmap, told);
  DeleteObject(bitmap);
  const HBRUSH brush = CreateSolidBrush(0x0000FF);
  FillRect(Context(), {1, 2, 3, 4}, brush);
  DeleteObject(brush);
  const HPEN pen = CreatePen(1, 0xFF0000);
  const HGDIOBJ former = SelectObject(Context(), pen);
  SelectObject(Context(), former);
  DeleteObject(pen);
  SelectObject(Context(), nullptr);
  DrawFocusRect(Context(), {-1, 0, 2147483647, 4});
  EXPECT_EQ(recorder.Lines(),
            (Lines{"CreateDIBSection(3,2,24)", "GetObjectA(bitmap(3x2x24))", "DeleteObject(bitmap(3x2x24))",
                   "CreateSolidBrush(#FF0000)", "FillRect([1,2,3,4],brush(#FF0000))",
                   "DeleteObject(brush(#FF0000))", "CreatePen(1,#0000FF)", "SelectObject(pen(#0000FF))",
                   "SelectObject(pen(#000000))", "DeleteObject(pen(#0000FF))", "SelectObject(null)",
                   "DrawFocusRect([-1,0,2147483647,4])"}));
}

TEST_F(Recorded, FontsTellTheirNameHeightWeightAndStyle) {
  const Recorder recorder;
  LOGFONTW record;
  record.lfFaceName = u"Tahoma";
  record.lfHeight = -11;
  record.lfWeight = 700;
  const HFONT plain = CreateFontIndirectW(record);
  record.lfItalic = record.lfUnderline = record.lfStrikeOut = true;
  const HFONT styled = CreateFontIndirectW(record);
  DeleteObject(plain);
  DeleteObject(styled);
  EXPECT_EQ(recorder.Lines(), (Lines{R"(CreateFontIndirectW(font("Tahoma",-11,700,"")))",
                                     R"(CreateFontIndirectW(font("Tahoma",-11,700,"iuk")))",
                                     R"(DeleteObject(font("Tahoma",-11,700,"")))",
                                     R"(DeleteObject(font("Tahoma",-11,700,"iuk")))"}));
}

TEST_F(Recorded, TextCallsTellTheirArguments) {
  const Recorder recorder;
  SIZE size;
  ABC widths;
  RECT rect = {4, 0, 300, 16};
  GetTextExtentPoint32W(Context(), u"Total", size);
  GetTextExtentPoint32A(Context(), "Caf\xE9", 4, size);
  GetCharABCWidthsA(Context(), 'T', widths);
  DrawTextW(Context(), u"Total", rect, 0x40020);
  DrawTextA(Context(), "Total", rect, DT_CALCRECT);
  TextOutW(Context(), 1, -2, u"Total");
  const RECT clip = {0, 0, 5, 5};
  ExtTextOutW(Context(), 1, 2, 4, &clip, u"x");
  ExtTextOutW(Context(), 1, 2, 0, nullptr, u"x");
  SetTextAlign(Context(), TA_BASELINE);
  SetBkColor(Context(), 0x563412);
  PixelsPerInch(Context());
  EXPECT_EQ(recorder.Lines(),
            (Lines{R"(GetTextExtentPoint32W("Total"))", R"(GetTextExtentPoint32A("Café",4))",
                   "GetCharABCWidthsA(84)", R"(DrawTextW("Total",[4,0,300,16],0x40020))",
                   R"(DrawTextA("Total",[4,0,300,16],0x400))", R"(TextOutW(1,-2,"Total"))",
                   R"(ExtTextOutW(1,2,0x4,[0,0,5,5],"x"))", R"(ExtTextOutW(1,2,0x0,null,"x"))",
                   "SetTextAlign(0x18)", "SetBkColor(#123456)", "PixelsPerInch()"}));
}

TEST_F(Recorded, TextsAreUtf8WithEscapesForControlsAndLoneSurrogates) {
  const Recorder recorder;
  SIZE size;
  GetTextExtentPoint32W(Context(), std::u16string_view(u"a\0\t\x7F\x9Fé中\U0001F600\xD800z", 11), size);
  EXPECT_EQ(recorder.Lines(), Lines{R"(GetTextExtentPoint32W("a\u0000\u0009\u007F\u009Fé中😀\uD800z"))"});
}

TEST_F(Recorded, AValueThatIsNoColourKeepsItsDigits) {
  const Recorder recorder;
  SetTextColor(Context(), CLR_INVALID);
  EXPECT_EQ(recorder.Lines(), Lines{"SetTextColor(0xFFFFFFFF)"});
}

TEST_F(Recorded, SystemColoursAndScriptTestsAreLoggedToo) {
  const Recorder recorder;
  GetSysColor(15);
  ScriptIsComplex(u"abc", SIC_COMPLEX);
  EXPECT_EQ(recorder.Lines(), (Lines{"GetSysColor(15)", R"(ScriptIsComplex("abc",0x1))"}));
}

TEST_F(Recorded, WhatThePlatformAsksOfItselfIsNot) {
  Configuration().system_colours[15] = 0x112233;
  const Recorder recorder;
  COLORREF colour;
  OleTranslateColor(0x8000000F, colour);
  StdFont font;
  font.PutName(u"A typeface that nobody has asked for yet");
  font.PutSize(17);
  SelectObject(Context(), font.hFont());
  RECT rect = {0, 0, 100, 20};
  DrawTextW(Context(), u"&Total", rect, DT_SINGLELINE | DT_CENTER);
  GdiFlush();
  SelectObject(Context(), StdFont().hFont());
  EXPECT_EQ(recorder.Lines(), (Lines{R"(SelectObject(font("A typeface that nobody has aske",-23,400,"")))",
                                     R"(DrawTextW("&Total",[0,0,100,20],0x21))",
                                     R"(SelectObject(font("Tahoma",-11,400,"")))"}));
  Configuration() = {};
}

TEST_F(Recorded, CallsWithoutAContextAreLoggedAsWell) {
  const Recorder recorder;
  EXPECT_FALSE(TextOutW(nullptr, 0, 0, u"x"));
  EXPECT_EQ(recorder.Lines(), Lines{R"(TextOutW(0,0,"x"))"});
}

class Refused : public Recorded {
 protected:
  ~Refused() override { recorder_.FailNothing(); }
  Recorder recorder_;
};

TEST_F(Refused, CallsFailAsTheirContractsSay) {
  for (const char* operation : {"CreateCompatibleDC",
                                "DeleteDC",
                                "CreateDIBSection",
                                "SelectObject",
                                "DeleteObject",
                                "BitBlt",
                                "AlphaBlend",
                                "CreateSolidBrush",
                                "FillRect",
                                "CreatePen",
                                "MoveToEx",
                                "LineTo",
                                "DrawFocusRect",
                                "PixelsOf",
                                "GetObjectA",
                                "CreateFontIndirectW",
                                "PixelsPerInch",
                                "SetTextColor",
                                "GetTextColor",
                                "SetBkColor",
                                "SetBkMode",
                                "SetTextAlign",
                                "GetTextExtentPoint32W",
                                "GetTextExtentPoint32A",
                                "GetCharABCWidthsA",
                                "DrawTextW",
                                "DrawTextA",
                                "TextOutW",
                                "ExtTextOutW",
                                "GetSysColor",
                                "ScriptIsComplex"})
    recorder_.Fail(operation);
  std::uint8_t* bits = nullptr;
  SIZE size{1, 2};
  ABC widths;
  BITMAP bitmap;
  PixelView view;
  RECT rect = {0, 0, 10, 10};
  EXPECT_EQ(CreateCompatibleDC(nullptr), nullptr);
  EXPECT_FALSE(DeleteDC(Context()));
  EXPECT_EQ(CreateDIBSection(nullptr, 2, 2, 24, bits), nullptr);
  EXPECT_EQ(bits, nullptr);
  EXPECT_EQ(SelectObject(Context(), picture_.Bitmap()), nullptr);
  EXPECT_FALSE(DeleteObject(picture_.Bitmap()));
  EXPECT_FALSE(BitBlt(Context(), 0, 0, 1, 1, source_.Context(), 0, 0, SRCCOPY));
  EXPECT_FALSE(AlphaBlend(Context(), 0, 0, 1, 1, source_.Context(), 0, 0, 1, 1, 255, false));
  EXPECT_EQ(CreateSolidBrush(0), nullptr);
  EXPECT_FALSE(FillRect(Context(), rect, nullptr));
  EXPECT_EQ(CreatePen(1, 0), nullptr);
  EXPECT_FALSE(MoveToEx(Context(), 0, 0));
  EXPECT_FALSE(LineTo(Context(), 0, 0));
  EXPECT_FALSE(DrawFocusRect(Context(), rect));
  EXPECT_FALSE(PixelsOf(Context(), view));
  EXPECT_FALSE(GetObjectA(picture_.Bitmap(), bitmap));
  EXPECT_EQ(CreateFontIndirectW({}), nullptr);
  EXPECT_EQ(PixelsPerInch(Context()), 0);
  EXPECT_EQ(SetTextColor(Context(), 0x123456), CLR_INVALID);
  EXPECT_EQ(GetTextColor(Context()), CLR_INVALID);
  EXPECT_EQ(SetBkColor(Context(), 0), CLR_INVALID);
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 0);
  EXPECT_EQ(SetTextAlign(Context(), 0), 0u);
  EXPECT_FALSE(GetTextExtentPoint32W(Context(), u"x", size));
  EXPECT_FALSE(GetTextExtentPoint32A(Context(), "x", 1, size));
  EXPECT_EQ(size, (SIZE{1, 2}));
  EXPECT_FALSE(GetCharABCWidthsA(Context(), 'x', widths));
  EXPECT_EQ(DrawTextW(Context(), u"x", rect, DT_CALCRECT), 0);
  EXPECT_EQ(DrawTextA(Context(), "x", rect, DT_CALCRECT), 0);
  EXPECT_EQ(rect, (RECT{0, 0, 10, 10}));
  EXPECT_FALSE(TextOutW(Context(), 0, 0, u"x"));
  EXPECT_FALSE(ExtTextOutW(Context(), 0, 0, 0, nullptr, u"x"));
  EXPECT_EQ(GetSysColor(5), 0u);
  const Long answer = ScriptIsComplex(u"x", SIC_COMPLEX);
  EXPECT_TRUE(answer != S_OK && answer != S_FALSE);
  EXPECT_EQ(recorder_.Lines().size(), 31u) << "what fails is logged all the same";
  recorder_.FailNothing();
  EXPECT_EQ(GetTextColor(Context()), 0u) << "what failed has changed nothing";
  EXPECT_EQ(InkOf(picture_, 0), RECT{});
}

TEST_F(Refused, CallsFailAfterTheGoodOnes) {
  recorder_.Fail("SetBkMode", 2);
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 2);
  EXPECT_EQ(SetBkMode(Context(), OPAQUE), 1);
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 0);
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 0);
  recorder_.FailNothing();
  EXPECT_EQ(SetBkMode(Context(), TRANSPARENT), 2);
}

TEST_F(Refused, CallsMustHaveANameThatExists) {
  EXPECT_THROW(recorder_.Fail("DrawTxet"), std::invalid_argument);
}

TEST(Replay, DrawsTheSameAgain) {
  TestPicture picture(60, 20);
  Recorder recorder;
  const auto paint = [&picture] {
    const HBRUSH brush = CreateSolidBrush(0xC0FFFF);
    FillRect(picture.Context(), {0, 0, 60, 20}, brush);
    DeleteObject(brush);
    const HPEN pen = CreatePen(1, 0x0000FF);
    const HGDIOBJ former = SelectObject(picture.Context(), pen);
    MoveToEx(picture.Context(), 1, 1);
    LineTo(picture.Context(), 50, 1);
    SelectObject(picture.Context(), former);
    DeleteObject(pen);
    SetTextColor(picture.Context(), 0x800000);
    RECT rect = {2, 2, 58, 18};
    DrawTextW(picture.Context(), u"Total", rect, DT_SINGLELINE | DT_CENTER);
  };
  paint();
  const std::vector<COLORREF> painted = picture.Colours();
  const Lines lines = recorder.Lines();
  picture.Fill(0x55);
  recorder.Replay();
  EXPECT_EQ(picture.Colours(), painted);
  EXPECT_EQ(recorder.Lines(), lines) << "a replay isn't recorded";
  recorder.Replay();
  EXPECT_EQ(picture.Colours(), painted);
}

TEST(Replay, MakesContextsAndBitmapsOfItsOwn) {
  TestPicture picture(20, 10);
  const Recorder recorder;
  std::uint8_t* bits = nullptr;
  const HDC scratch = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateDIBSection(scratch, 5, 5, 24, bits);
  const HGDIOBJ former = SelectObject(scratch, bitmap);
  const HBRUSH brush = CreateSolidBrush(0x00FF00);
  FillRect(scratch, {0, 0, 5, 5}, brush);
  DeleteObject(brush);
  BitBlt(picture.Context(), 3, 3, 5, 5, scratch, 0, 0, SRCCOPY);
  SelectObject(scratch, former);
  DeleteObject(bitmap);
  DeleteDC(scratch);
  picture.Fill(0);
  recorder.Replay();
  EXPECT_EQ(InkOf(picture, 0), (RECT{3, 3, 8, 8}));
}

// The leak checker watches this one.
TEST(Replay, OwnsWhatTheProgramKept) {
  TestPicture picture(20, 10);
  const Recorder recorder;
  std::uint8_t* bits = nullptr;
  const HDC kept = CreateCompatibleDC(nullptr);
  const HBITMAP bitmap = CreateDIBSection(kept, 50, 50, 32, bits);
  const HGDIOBJ former = SelectObject(kept, bitmap);
  const HBRUSH brush = CreateSolidBrush(0x00FF00);
  for (int i = 0; i < 3; ++i) recorder.Replay();
  EXPECT_EQ(bits[0], 0);
  SelectObject(kept, former);
  DeleteObject(bitmap);
  DeleteObject(brush);
  DeleteDC(kept);
}

// The leak checker watches this one too.
TEST(Replay, OpensNoKeyOfTheRegistry) {
  headless::Registry()[{"Colours", "Name"}] = "Blue";
  const Recorder recorder;
  RegistryKeyHandle* key = nullptr;
  EXPECT_TRUE(RegOpenKeyExA(kCurrentUserHive, "Colours", key));
  EXPECT_TRUE(RegCloseKey(key));
  recorder.Replay();
  headless::Registry().clear();
}

TEST(Replay, LeavesOutWhatWasMadeToFail) {
  TestPicture picture(20, 10);
  const HBRUSH brush = CreateSolidBrush(0x00FF00);
  Recorder recorder;
  recorder.Fail("FillRect", 1);
  FillRect(picture.Context(), {0, 0, 2, 2}, brush);
  FillRect(picture.Context(), {5, 5, 9, 9}, brush);
  picture.Fill(0);
  recorder.Replay();
  EXPECT_EQ(InkOf(picture, 0), (RECT{0, 0, 2, 2}));
  DeleteObject(brush);
}

TEST(Replay, OfNothingDoesNothing) {
  const Recorder recorder;
  recorder.Replay();
  EXPECT_EQ(recorder.Lines(), Lines{});
}

}  // namespace
}  // namespace marklet
