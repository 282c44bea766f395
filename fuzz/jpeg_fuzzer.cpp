// What JPG files say of themselves, and what the platform's loader makes of those that are let through to it.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <string_view>
#include <vector>

#include "fuzz/fuzzers.h"
#include "fuzz/require.h"
#include "platform/host_picture.h"
#include "platform/shared/picture_header.h"
#include "platform/text.h"
#include "tests/support/temporary_folder.h"

namespace marklet {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::int64_t kMostDecoded = 1 << 16;  // scans times pixels

std::int64_t CountOf(std::string_view marker, std::span<const std::uint8_t> file) {
  const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
  std::int64_t count = 0;
  for (auto at = text.find(marker); at != text.npos; at = text.find(marker, at + 1)) ++count;
  return count;
}

bool Same(const std::optional<JpegClaims>& a, const std::optional<JpegClaims>& b) {
  if (!a || !b) return !a && !b;
  return a->width == b->width && a->height == b->height && a->scans == b->scans &&
         a->arithmetic == b->arithmetic;
}

void CheckClaims(const JpegClaims& claims, std::span<const std::uint8_t> file) {
  Require(claims.scans <= CountOf("\xFF\xDA", file), "there are more scans than markers of one");
  if (!CheckPictureFile(file)) return;
  Require(claims.width >= 1 && claims.height >= 1 && claims.width * claims.height <= kMostPixels &&
              claims.width * claims.height * claims.scans <= kMostScannedPixels,
          "a picture without bounds is let through");
}

// A segment that means nothing changes nothing, whatever it holds.
void CheckWithComment(const std::optional<JpegClaims>& claims, std::span<const std::uint8_t> file) {
  constexpr std::uint8_t kComment[] = {0xFF, 0xFE, 0, 6, 0xFF, 0xDA, 0xFF, 0xD9};
  Bytes longer(file.begin(), file.end());
  longer.insert(longer.begin() + 2, std::begin(kComment), std::end(kComment));
  Require(Same(ReadJpegClaims(longer), claims), "a comment changes what a file claims");
}

// The loader must find the size that memory was granted for.
void CheckDecoded(const JpegClaims& claims, std::span<const std::uint8_t> file) {
  static const testing::TemporaryFolder folder;
  std::ofstream(folder.Path("a.jpg"), std::ios::binary)
      .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
  const PictureRef picture = LoadPicture(folder.Path("a.jpg").u16string());
  if (picture == nullptr) return;
  const auto pixels = [](Long himetric) { return std::lround(himetric / 2540.0 * PixelsPerInch(nullptr)); };
  const SIZE size = PictureSize(picture);
  Require(pixels(size.cx) == claims.width && pixels(size.cy) == claims.height,
          "a picture isn't of the size that it claimed");
}

}  // namespace

void FuzzJpeg(std::span<const std::uint8_t> rest) {
  Bytes file = {0xFF, 0xD8};  // what every input begins with
  file.insert(file.end(), rest.begin(), rest.end());
  const std::optional<JpegClaims> claims = ReadJpegClaims(file);
  CheckWithComment(claims, file);
  Require(claims || CheckPictureFile(file) == std::nullopt, "a picture without claims is let through");
  if (!claims) return;
  CheckClaims(*claims, file);
  if (claims->width * claims->height * std::max<std::int64_t>(claims->scans, 1) <= kMostDecoded)
    CheckDecoded(*claims, file);
}

}  // namespace marklet
