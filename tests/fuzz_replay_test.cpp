// Every input of the fuzzers' corpora once more, among them all that ever made one fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/fuzzers.h"

namespace marklet {
namespace {

struct Fuzzer {
  const char* name;  // of its folder in fuzz/corpus
  void (*run)(std::span<const std::uint8_t>);
};

class FuzzReplay : public testing::TestWithParam<Fuzzer> {};

std::vector<std::filesystem::path> InputsOf(const Fuzzer& fuzzer) {
  std::vector<std::filesystem::path> inputs;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::path(MARKLET_FUZZ_CORPUS) / fuzzer.name)) {
    inputs.push_back(entry.path());
  }
  std::sort(inputs.begin(), inputs.end());
  return inputs;
}

TEST_P(FuzzReplay, EndsOnEveryInput) {
  const std::vector<std::filesystem::path> inputs = InputsOf(GetParam());
  ASSERT_FALSE(inputs.empty());
  for (const std::filesystem::path& path : inputs) {
    std::ifstream file(path, std::ios::binary);
    ASSERT_TRUE(file) << path;
    const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    SCOPED_TRACE(path.filename().string());
    GetParam().run({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
  }
}

INSTANTIATE_TEST_SUITE_P(, FuzzReplay,
                         testing::Values(Fuzzer{"markup", FuzzMarkup}, Fuzzer{"icon", FuzzIcon},
                                         Fuzzer{"saved_form", FuzzSavedForm},
                                         Fuzzer{"property_bag", FuzzPropertyBag}, Fuzzer{"png", FuzzPng},
                                         Fuzzer{"jpeg", FuzzJpeg}, Fuzzer{"form_file", FuzzFormFile}),
                         [](const auto& fuzzer) { return std::string(fuzzer.param.name); });

}  // namespace
}  // namespace marklet
