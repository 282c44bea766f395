#include "render/files.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

#include "render/render_error.h"
#include "render/text.h"

namespace marklet {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kMostBytes = 64u << 20;

fs::path PathOf(const std::string& name) { return fs::path(std::u8string(name.begin(), name.end())); }

// A name of our own in the same folder, so that the rename stays within one file system.
fs::path TemporaryBeside(const fs::path& file) {
  std::random_device random;
  fs::path result = file;
  result += "." + std::to_string(random()) + ".part";
  return result;
}

bool Write(const fs::path& file, const std::vector<std::uint8_t>& bytes) {
  std::ofstream out(file, std::ios::binary | std::ios::trunc);
  out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  out.close();
  return !out.fail();
}

bool Replace(const fs::path& file, const std::vector<std::uint8_t>& bytes) {
  const fs::path temporary = TemporaryBeside(file);
  std::error_code error;
  bool written = Write(temporary, bytes);
  if (written) {
    fs::rename(temporary, file, error);
    written = !error;
  }
  if (!written) fs::remove(temporary, error);
  return written;
}

// The file that a link leads to, so that the link stays.
fs::path Followed(const fs::path& file) {
  std::error_code error;
  if (!fs::is_symlink(file, error)) return file;
  const fs::path target = fs::canonical(file, error);
  return error ? file : target;
}

// Devices and pipes are no files that could be replaced by another.
bool IsReplaceable(const fs::path& file) {
  std::error_code error;
  const fs::file_status status = fs::status(file, error);
  return !fs::exists(status) || fs::is_regular_file(status);
}

}  // namespace

void RequireFile(const std::string& name) {
  std::error_code error;
  if (!fs::is_regular_file(PathOf(name), error)) throw RenderError("there is no file " + Quoted(name));
}

std::string NameBeside(const std::string& file, const std::string& name) {
  const std::u8string path = (PathOf(file).parent_path() / PathOf(name)).u8string();
  return {path.begin(), path.end()};
}

std::string ReadTextFile(const std::string& name) {
  RequireFile(name);
  const fs::path file = PathOf(name);
  std::error_code error;
  if (fs::file_size(file, error) > kMostBytes || error) throw RenderError(Quoted(name) + " is too large");
  std::ifstream in(file, std::ios::binary);
  std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in) throw RenderError("can't read " + Quoted(name));
  return text;
}

void WriteFileWhole(const std::string& name, const std::vector<std::uint8_t>& bytes) {
  const fs::path file = Followed(PathOf(name));
  const bool written = IsReplaceable(file) ? Replace(file, bytes) : Write(file, bytes);
  if (!written) throw RenderError("can't write " + Quoted(name));
}

}  // namespace marklet
