// Golden pictures: each input under tests/golden with the picture beside it that it must give, to the pixel.
//
// An input is NAME.args, one argument of marklet-render a line ("#" begins a comment), or a sheet NAME.json.
// What stands in pixels/ shows no glyph and is the same everywhere; text/ depends on fonts and is compared
// where they are pinned. A mismatch leaves the actual picture and the difference in golden/ of the build
// folder. A new picture, or a changed one, is looked at and then copied from there by hand. The pictures of
// the documentation, in docs/pictures, are held to the same; scripts/docs draws them anew.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "render/run.h"
#include "support/compare_pictures.h"

namespace marklet {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> InputsIn(const char* folder) {
  std::vector<fs::path> result;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    const fs::path extension = entry.path().extension();
    if (extension == ".args" || extension == ".json") result.push_back(entry.path());
  }
  std::sort(result.begin(), result.end());
  return result;
}

std::vector<std::string> ArgumentsOf(const fs::path& input) {
  if (input.extension() == ".json") return {"--sheet", input.string()};
  std::vector<std::string> result;
  std::ifstream file(input);
  for (std::string line; std::getline(file, line);) {
    if (line.ends_with('\r')) line.pop_back();
    if (!line.empty() && line[0] != '#') result.push_back(line);
  }
  return result;
}

std::string NameOf(const ::testing::TestParamInfo<fs::path>& info) {
  std::string name = info.param.stem().string();
  std::replace_if(
      name.begin(), name.end(), [](unsigned char ch) { return !std::isalnum(ch); }, '_');
  return name;
}

// What a mismatch leaves; inputs of different folders may have the same name.
std::string OutputFor(const fs::path& input, const char* ending) {
  const std::string folder = input.parent_path().filename().string();
  return (fs::path(MARKLET_GOLDEN_OUT) / (folder + "-" + input.stem().string() + ending)).string();
}

// Renders the input; the file, or empty after a failure.
std::string Render(const fs::path& input) {
  fs::create_directories(MARKLET_GOLDEN_OUT);
  const std::string actual = OutputFor(input, ".actual.png");
  std::vector<std::string> arguments = ArgumentsOf(input);
  arguments.insert(arguments.end(), {"-o", actual});
  std::ostringstream out, err;
  EXPECT_EQ(RunMarkletRender(arguments, out, err), 0) << err.str();
  return ::testing::Test::HasFailure() ? std::string() : actual;
}

void ExpectGolden(const fs::path& input) {
  const std::string actual = Render(input);
  ASSERT_FALSE(actual.empty());
  fs::path expected = input;
  expected.replace_extension(".png");
  const std::string difference = OutputFor(input, ".difference.png");
  const std::string what = testing::ComparePictures(expected.string(), actual, difference);
  EXPECT_EQ(what, "") << "actual: " << actual;
  if (what.empty()) fs::remove(actual);
}

class PixelGolden : public ::testing::TestWithParam<fs::path> {};
TEST_P(PixelGolden, IsExact) { ExpectGolden(GetParam()); }
INSTANTIATE_TEST_SUITE_P(All, PixelGolden, ::testing::ValuesIn(InputsIn(MARKLET_TESTS "/golden/pixels")),
                         NameOf);

// The picture's size, from its header.
std::pair<unsigned, unsigned> SizeOf(const fs::path& file) {
  std::ifstream in(file, std::ios::binary);
  unsigned char head[24] = {};
  in.read(reinterpret_cast<char*>(head), sizeof head);
  const auto big = [&](int at) {
    return static_cast<unsigned>(head[at] << 24 | head[at + 1] << 16 | head[at + 2] << 8 | head[at + 3]);
  };
  return {big(16), big(20)};
}

class TextGolden : public ::testing::TestWithParam<fs::path> {};
TEST_P(TextGolden, IsExactWithPinnedFontsAndOfItsSizeWithOthers) {
  if (testing::FontsArePinned()) return ExpectGolden(GetParam());
  const std::string actual = Render(GetParam());
  fs::path expected = GetParam();
  expected.replace_extension(".png");
  // The titles of a sheet are as tall as their font.
  if (GetParam().extension() == ".args") {
    EXPECT_EQ(SizeOf(actual), SizeOf(expected));
  }
}
INSTANTIATE_TEST_SUITE_P(All, TextGolden, ::testing::ValuesIn(InputsIn(MARKLET_TESTS "/golden/text")),
                         NameOf);
INSTANTIATE_TEST_SUITE_P(Documentation, TextGolden,
                         ::testing::ValuesIn(InputsIn(MARKLET_TESTS "/../docs/pictures")), NameOf);

// The number of pictures below the folder.
int ExpectAnInputForEachPictureIn(const char* folder) {
  int pictures = 0;
  for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".png") continue;
    ++pictures;
    fs::path args = entry.path(), json = entry.path();
    args.replace_extension(".args");
    json.replace_extension(".json");
    EXPECT_TRUE(fs::exists(args) != fs::exists(json)) << entry.path();
  }
  return pictures;
}

TEST(Golden, EveryPictureHasItsInput) {
  EXPECT_GE(ExpectAnInputForEachPictureIn(MARKLET_TESTS "/golden"), 20);
}

TEST(Golden, EveryPictureOfTheDocumentationHasItsInput) {
  EXPECT_GE(ExpectAnInputForEachPictureIn(MARKLET_TESTS "/../docs/pictures"), 3);
}

}  // namespace
}  // namespace marklet
