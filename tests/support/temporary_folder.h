// A folder that lives as long as a test.
#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace marklet::testing {

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() / ("marklet-" + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  // Names in UTF-8.
  std::filesystem::path Path(const std::string& name) const {
    return path_ / std::u8string(name.begin(), name.end());
  }
  std::string File(const std::string& name) const {
    const std::u8string file = Path(name).u8string();
    return {file.begin(), file.end()};
  }
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(Path(name), std::ios::binary) << bytes;
    return File(name);
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }
  int Entries() const {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator(path_), {}));
  }

 private:
  std::filesystem::path path_;
};

}  // namespace marklet::testing
