// marklet-render from its command line to its files.
#include "render/run.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <utility>

#include "bitmaps/cdib24.h"
#include "images/png_pictures.h"
#include "png/cpng_decoder.h"
#include "support/processor_time.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

using Arguments = std::vector<std::string>;

struct RunTest : ::testing::Test {
  testing::TemporaryFolder folder;
  std::ostringstream out, err;

  int Run(const Arguments& arguments) {
    out.str("");
    err.str("");
    return RunMarkletRender(arguments, out, err);
  }
  int RunTo(const std::string& file, Arguments arguments) {
    arguments.insert(arguments.end(), {"-o", folder.File(file)});
    return Run(arguments);
  }
  // One clear line, the code 2, and no file.
  void ExpectRefused(Arguments arguments) {
    const int before = folder.Entries();
    EXPECT_EQ(RunTo("refused.png", std::move(arguments)), 2);
    const std::string line = err.str();
    EXPECT_TRUE(line.starts_with("marklet-render: ")) << line;
    EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1) << line;
    EXPECT_TRUE(line.ends_with('\n'));
    EXPECT_EQ(out.str(), "");
    EXPECT_EQ(folder.Entries(), before);
  }
  // Width and height from the header of a written picture.
  std::pair<int, int> SizeOf(const std::string& file) {
    const std::string bytes = folder.Read(file);
    if (bytes.size() < 24 || !bytes.starts_with("\x89PNG\r\n\x1A\n")) return {};
    const auto big = [&](std::size_t at) {
      return static_cast<unsigned char>(bytes[at + 2]) << 8 | static_cast<unsigned char>(bytes[at + 3]);
    };
    return {big(16), big(20)};
  }
};

using SlowRunTest = RunTest;

TEST_F(RunTest, DrawsOneControlQuietly) {
  EXPECT_EQ(RunTo("a.png",
                  {"Caption=<b>Total</b>: <c=C00000>12</c>", "TextEffect=effectStroke", "--size", "300x60"}),
            0);
  EXPECT_EQ(out.str() + err.str(), "");
  EXPECT_EQ(SizeOf("a.png"), (std::pair{300, 60}));
  EXPECT_EQ(folder.Entries(), 1) << "no temporary file stays";
}

TEST_F(RunTest, ScaleMultipliesTheSize) {
  EXPECT_EQ(RunTo("a.png", {"Caption=x", "--size", "101x41", "--scale", "1.5"}), 0);
  EXPECT_EQ(SizeOf("a.png"), (std::pair{152, 62})) << "151.5 and 61.5, halves to even";
}

TEST_F(RunTest, APictureCarriesItsDensity) {
  for (const auto& [scale, per_metre] : {std::pair{"1", 3780}, {"1.5", 5669}, {"2", 7559}}) {
    ASSERT_EQ(RunTo("a.png", {"--scale", scale}), 0);
    const std::string bytes = folder.Read("a.png");
    const std::size_t at = bytes.find("pHYs");
    ASSERT_LT(at, bytes.size() - 8);
    EXPECT_EQ(static_cast<unsigned char>(bytes[at + 6]) << 8 | static_cast<unsigned char>(bytes[at + 7]),
              per_metre);
  }
}

TEST_F(RunTest, AScaleMayBeGivenInDotsPerInch) {
  ASSERT_EQ(RunTo("factor.png", {"Caption=x", "--scale", "1.5"}), 0);
  ASSERT_EQ(RunTo("density.png", {"Caption=x", "--scale", "144"}), 0);
  EXPECT_EQ(folder.Read("factor.png"), folder.Read("density.png"));
  ASSERT_EQ(RunTo("least.png", {"--scale", "96", "--size", "10x10"}), 0);
  EXPECT_EQ(SizeOf("least.png"), (std::pair{10, 10}));
  ASSERT_EQ(RunTo("most.png", {"--scale", "192", "--size", "10x10"}), 0);
  EXPECT_EQ(SizeOf("most.png"), (std::pair{20, 20}));
}

TEST_F(RunTest, AutoSizeDecidesTheSizeOfThePicture) {
  ASSERT_EQ(RunTo("short.png", {"Caption=xx", "WordWrap=false", "AutoSize=true"}), 0);
  ASSERT_EQ(RunTo("long.png", {"AutoSize=true", "WordWrap=false", "Caption=xx xx xx xx"}), 0);
  EXPECT_LT(SizeOf("short.png").first, SizeOf("long.png").first);
  ASSERT_EQ(RunTo("padded.png", {"Caption=xx", "WordWrap=false", "AutoSize=true", "Padding=20"}), 0);
  EXPECT_EQ(SizeOf("padded.png").first, SizeOf("short.png").first + 40);
}

TEST_F(RunTest, PropertiesAreSetInTheirOrder) {
  ASSERT_EQ(RunTo("kept.png", {"Appearance=Flat", "BackColor=#FF0000"}), 0);
  ASSERT_EQ(RunTo("overwritten.png", {"BackColor=#FF0000", "Appearance=Flat"}), 0);
  EXPECT_NE(folder.Read("kept.png"), folder.Read("overwritten.png"));
}

TEST_F(RunTest, ACaptionFileIsTheCaptionWithoutItsMarkAndLastLineEnd) {
  const std::string words = "Gr\xC3\xBC\xC3\x9F \xCE\xA9=1";
  ASSERT_EQ(RunTo("argument.png", {"Caption=" + words}), 0);
  for (const std::string& bytes : {words, "\xEF\xBB\xBF" + words, words + "\n", words + "\r\n"}) {
    const std::string file = folder.Write("caption.txt", bytes);
    ASSERT_EQ(RunTo("file.png", {"--caption-file", file}), 0) << err.str();
    EXPECT_EQ(folder.Read("file.png"), folder.Read("argument.png"));
  }
}

TEST_F(RunTest, AnOldPictureIsReplaced) {
  folder.Write("a.png", "old");
  ASSERT_EQ(RunTo("a.png", {"Caption=x"}), 0);
  EXPECT_EQ(SizeOf("a.png").first, 200);
}

TEST_F(RunTest, AFailureLeavesAnOldPictureAsItWas) {
  folder.Write("a.png", "old");
  EXPECT_EQ(RunTo("a.png", {"Caption=x", "FontSize=big"}), 2);
  EXPECT_EQ(folder.Read("a.png"), "old");
}

TEST_F(RunTest, FileNamesMayBeInAnyScript) {
  ASSERT_EQ(RunTo("\xCE\xA9\xE4\xB8\x96.png", {"Caption=x"}), 0) << err.str();
  EXPECT_EQ(SizeOf("\xCE\xA9\xE4\xB8\x96.png").first, 200);
}

TEST_F(RunTest, RefusesWhatItDoesNotUnderstand) {
  ExpectRefused({"Colour=1"});
  ExpectRefused({"Caption"});
  ExpectRefused({"=x"});
  ExpectRefused({"FontSize=big"});
  ExpectRefused({"BackColor=#12345"});
  ExpectRefused({"--nonsense"});
  ExpectRefused({"-x"});
  for (const char* option : {"-o", "--size", "--scale", "--caption-file", "--sheet", "--image"}) {
    EXPECT_EQ(Run({"Caption=x", option}), 2);
    EXPECT_EQ(err.str(), "marklet-render: " + std::string(option) + " needs a value behind it\n");
  }
  for (const char* size :
       {"300", "0x10", "10x0", "-1x5", "4097x10", "99999x1", "axb", "10x", "x10", "10x10x10", ""})
    ExpectRefused({"--size", size});
  for (const char* scale : {"0.9", "2.1", "95.9", "192.1", "x", "", "1.5x", "nan", "inf", "-1"})
    ExpectRefused({"--scale", scale});
}

TEST_F(RunTest, RefusesFilesItCannotRead) {
  ExpectRefused({"--caption-file", folder.File("missing.txt")});
  ExpectRefused({"--caption-file", folder.File("")});
  ExpectRefused({"--sheet", folder.File("missing.json")});
}

TEST_F(RunTest, RefusesOutputsItCannotWrite) {
  EXPECT_EQ(Run({"Caption=x", "-o", folder.File("no/such/folder/a.png")}), 2);
  EXPECT_TRUE(err.str().starts_with("marklet-render: can't write ")) << err.str();
  EXPECT_EQ(Run({"Caption=x", "-o", folder.File("")}), 2) << "a folder";
  EXPECT_EQ(folder.Entries(), 0);
  EXPECT_EQ(Run({"Caption=x"}), 2);
  EXPECT_EQ(err.str(), "marklet-render: no output file given: -o FILE.png\n");
}

TEST_F(RunTest, RefusesAControlThatComesOutEmpty) {
  ExpectRefused({"AutoSize=true", "WordWrap=false", "Padding=-2000", "Caption=x"});
}

TEST_F(SlowRunTest, RefusesAControlThatSizesItselfTooLarge) {
  for (const char* padding : {"Padding=5000", "Padding=65536", "Padding=2000000000"}) {
    const double start = ProcessorSeconds();
    ExpectRefused({"Caption=x", "WordWrap=false", padding, "AutoSize=true"});
    EXPECT_LT(ProcessorSeconds() - start, 5) << "no picture of that size was painted";
  }
  EXPECT_EQ(RunTo("long.png", {"Caption=" + std::string(5000, 'x'), "WordWrap=false", "AutoSize=true"}), 0);
}

TEST_F(RunTest, ReadsNothingTwice) {
  ExpectRefused({"Caption=x", "--sheet", folder.File("s.json")});
  ExpectRefused({"--caption-file", folder.File("c.txt"), "--sheet", folder.File("s.json")});
  ExpectRefused({"--size", "20x20", "--sheet", folder.File("s.json")});
}

TEST_F(RunTest, HelpListsEveryPropertyThatCanBeGiven) {
  EXPECT_EQ(Run({"--help"}), 0);
  const std::string help = out.str();
  for (const char* name : {"AutoSize", "Caption", "FontBold", "TextEffect", "effectHollow", "Left Justify",
                           "Padding", "VerticalAlignment", "--scale"})
    EXPECT_NE(help.find(name), std::string::npos) << name;
  EXPECT_EQ(help.find("hwnd"), std::string::npos);
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 110u) << line;
}

TEST_F(RunTest, VersionIsThatOfTheLibrary) {
  EXPECT_EQ(Run({"--version"}), 0);
  EXPECT_EQ(out.str(), "marklet-render 3.0\n");
}

// --- Sheets -----------------------------------------------------------------------------------------------

TEST_F(RunTest, RefusesBrokenSheets) {
  const char* broken[] = {
      "",
      "{",
      "[]",
      "{}",
      "7",
      R"({"items": []})",
      R"({"items": {}})",
      R"({"items": [7]})",
      R"({"items": [{"size": "10"}]})",
      R"({"items": [{"size": [10, 10]}]})",
      R"({"items": [{"colour": 1}]})",
      R"({"items": [{"span": 0}]})",
      R"({"items": [{"span": 1e3}]})",
      R"({"items": [{"properties": []}]})",
      R"({"items": [{"properties": {"Caption": null}}]})",
      R"({"items": [{"properties": {"FontSize": 8.25}}]})",
      R"({"items": [{"properties": {"Colour": 1}}]})",
      R"({"items": [{"title": 5}]})",
      R"({"columns": 0, "items": [{}]})",
      R"({"columns": 99999999999999999999, "items": [{}]})",
      R"({"columns": "3", "items": [{}]})",
      R"({"margin": -1, "items": [{}]})",
      R"({"background": "white", "items": [{}]})",
      R"({"title": "x", "items": [{}]})",
      "{\"items\": [{\"title\": \"\xFF\"}]}",
  };
  for (const char* json : broken) {
    SCOPED_TRACE(json);
    ExpectRefused({"--sheet", folder.Write("s.json", json)});
  }
}

TEST_F(RunTest, ASheetsMessageNamesTheItem) {
  const std::string file = folder.Write("s.json", R"({"items": [{}, {"spam": 2}]})");
  EXPECT_EQ(RunTo("a.png", {"--sheet", file}), 2);
  EXPECT_EQ(err.str(), "marklet-render: item 2: \"spam\" means nothing here\n");
}

TEST_F(RunTest, ASheetMayBeginWithAByteOrderMark) {
  const std::string file = folder.Write("s.json", "\xEF\xBB\xBF{\"items\": [{}]}");
  EXPECT_EQ(RunTo("a.png", {"--sheet", file}), 0) << err.str();
}

// --- Images -----------------------------------------------------------------------------------------------

struct RunImages : RunTest {
  void SetUp() override {
    WritePng("red.png", 0xFFFF0000u);
    WritePng("green.png", 0xFF00FF00u);
    WritePng("wide.png", 0xFF00FF00u, 15);
  }
  void WritePng(const std::string& name, std::uint32_t colour, int height = 0) {
    const auto png = pictures::Png(
        16, [colour](int, int) { return colour; }, true, height);
    folder.Write(name, std::string(png.begin(), png.end()));
  }
  std::string Image(const std::string& key, const std::string& file) { return key + "=" + folder.File(file); }
  // Red, green and blue of a written picture.
  std::uint32_t ColourIn(const std::string& file, std::size_t x, std::size_t y) {
    CPngDecoder decoder;
    decoder.LoadFromFile(folder.Path(file).u16string());
    CDib24 picture;
    picture.CreateFromPicture(decoder.BitmapHandle());
    GdiFlush();
    if (picture.Bits() == nullptr) return 0x123456;
    const std::uint8_t* pixel = picture.Bits() +
                                (static_cast<std::size_t>(picture.Height()) - 1 - y) *
                                    static_cast<std::size_t>(picture.BytesPerScanLine()) +
                                x * 3;
    return static_cast<std::uint32_t>(pixel[2] << 16 | pixel[1] << 8 | pixel[0]);
  }
};

TEST_F(RunImages, AreDrawnUnderTheirKeys) {
  EXPECT_EQ(RunTo("a.png", {"--image", Image("a", "red.png"), "--image", Image("b", "green.png"),
                            "ImageKey=B", "ImageAlignment=1", "--size", "60x30"}),
            0);
  EXPECT_EQ(out.str() + err.str(), "");
  EXPECT_EQ(ColourIn("a.png", 60 - 17 + 5, 5), 0x00FF00u);
  EXPECT_NE(ColourIn("a.png", 5, 5), 0xFF0000u);
}

TEST_F(RunImages, ChangeUnderThePointer) {
  const Arguments arguments = {"--image",    Image("a", "red.png"), "--image", Image("b", "green.png"),
                               "ImageKey=a", "ImageKeyhover=b"};
  EXPECT_EQ(RunTo("away.png", arguments), 0);
  Arguments hovering = arguments;
  hovering.push_back("--hover");
  EXPECT_EQ(RunTo("on.png", hovering), 0);
  EXPECT_EQ(ColourIn("away.png", 5, 5), 0xFF0000u);
  EXPECT_EQ(ColourIn("on.png", 5, 5), 0x00FF00u);
}

TEST_F(RunImages, ThatAreMissingAreToldAndLeaveNoFile) {
  ExpectRefused({"--image", Image("a", "missing.png")});
  EXPECT_NE(err.str().find("missing.png"), std::string::npos);
}

TEST_F(RunImages, ThatCantBeUsedAreTold) {
  ExpectRefused({"--image", Image("a", "wide.png")});
  EXPECT_NE(err.str().find("PNG images must have equal width and height."), std::string::npos) << err.str();
  folder.Write("text.bmp", "no picture");
  ExpectRefused({"--image", Image("a", "text.bmp")});
  EXPECT_NE(err.str().find("no picture in"), std::string::npos) << err.str();
  ExpectRefused({"--image", Image("1a", "red.png")});
  ExpectRefused({"--image", Image("", "red.png")});
  ExpectRefused({"--image", Image("a", "red.png"), "--image", Image("A", "red.png")});
  ExpectRefused({"--image", "red.png"});
  ExpectRefused({"--image"});
}

TEST_F(RunImages, OfASheetLieBesideIt) {
  std::filesystem::create_directory(folder.Path("sub"));
  std::filesystem::copy(folder.Path("red.png"), folder.Path("sub/one.png"));
  const std::string sheet = folder.Write("sub/sheet.json", R"({ "margin": 0, "columns": 1, "gap": 0,
    "images": { "a": "one.png", "b": "../green.png" },
    "items": [ { "size": "40x20", "properties": { "ImageKey": "a" } },
               { "size": "40x20", "hover": true, "properties": { "ImageKey": "a", "ImageKeyhover": "b" } } ] })");
  EXPECT_EQ(RunTo("sheet.png", {"--sheet", sheet}), 0) << err.str();
  EXPECT_EQ(ColourIn("sheet.png", 3, 3), 0xFF0000u);
  EXPECT_EQ(ColourIn("sheet.png", 3, 23), 0x00FF00u);
  ExpectRefused({"--sheet", sheet, "--hover"});
  ExpectRefused({"--sheet", sheet, "--image", Image("a", "red.png")});
}

TEST_F(RunImages, OfASheetAreAnObjectOfTexts) {
  for (const char* json :
       {R"({ "images": [], "items": [ {} ] })", R"({ "images": { "a": 1 }, "items": [ {} ] })",
        R"({ "items": [ { "hover": 1 } ] })",
        R"({ "images": { "a": "no.png" }, "items": [ { "properties": { "imagekey": "a" } } ] })"})
    ExpectRefused({"--sheet", folder.Write("sheet.json", json)});
}

}  // namespace
}  // namespace marklet
