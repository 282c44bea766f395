// What an image takes of memory while it is loaded.
#include <gtest/gtest.h>
#include <zlib.h>

#include <string>
#include <tuple>
#include <vector>

#include "images/icon_bytes.h"
#include "png/png_files.h"
#include "support/heap_watch.h"
#include "support/picture_files.h"
#include "support/temporary_folder.h"

namespace marklet {
namespace {

// Beside a large picture's own: a piece of its rows, the entry that stays, buffers of the file.
constexpr std::size_t kBesides = 600u << 10;

// A file far smaller than its pixels.
std::vector<std::uint8_t> FlatPng(std::uint32_t size) {
  const std::vector<std::uint8_t> rows(size * (std::size_t{size} * 4 + 1), 0);
  uLongf length = compressBound(rows.size());
  std::vector<std::uint8_t> stream(length);
  compress2(stream.data(), &length, rows.data(), rows.size(), 6);
  stream.resize(length);
  return png::test::File({size, size, 8, 6}, stream);
}

using LoadingMemory = HeapTest;

TEST_F(LoadingMemory, HoldsThePixelsOfAPngOnce) {
  constexpr std::uint32_t kSize = 900;
  constexpr std::size_t kPixels = std::size_t{kSize} * kSize * 4;
  const std::vector<std::uint8_t> file = FlatPng(kSize);
  const testing::TemporaryFolder folder;
  folder.Write("large.png", std::string(file.begin(), file.end()));
  CIconBytes image;
  const std::size_t peak = PeakOfHeap([&] { image.LoadFromFile(folder.Path("large.png").u16string()); });
  EXPECT_TRUE(image.HasImage256());
  EXPECT_GT(peak, kPixels);
  EXPECT_LE(peak, file.size() + kPixels + kBesides);
}

// The platform's picture, which the image keeps, has three bytes a pixel, or four and one of codes where it
// may be transparent; the surface on which its corner's colour is keyed out has three. The file is gone by
// then.
TEST_F(LoadingMemory, HoldsAPictureOfTheSystemBesideItsSurface) {
  constexpr int kSize = 480;
  constexpr std::size_t kPixels = std::size_t{kSize} * kSize;
  const testing::TemporaryFolder folder;
  const std::tuple<const char*, pictures::Bytes, std::size_t> files[] = {
      {"large.bmp", pictures::Bmp(kSize, kSize, [](int, int) { return 0x405060u; }), 3},
      {"large.gif", pictures::Gif(kSize, kSize, {0x405060}, [](int, int) { return 0u; }), 4 + 1},
      {"large.jpg", pictures::Jpeg(kSize, kSize, [](int, int) { return 100; }), 3},
  };
  for (const auto& [name, file, bytes] : files) {
    SCOPED_TRACE(name);
    folder.Write(name, std::string(file.begin(), file.end()));
    const std::u16string path = folder.Path(name).u16string();
    CIconBytes image;
    const std::size_t peak = PeakOfHeap([&] { image.LoadFromFile(path); });
    EXPECT_TRUE(image.HasImage256());
    EXPECT_GT(peak, kPixels * bytes);
    EXPECT_LE(peak, kPixels * (bytes + 3) + kBesides);
  }
}

// Whatever its name says.
TEST_F(LoadingMemory, HoldsTheStartAloneOfAFileThatIsNoPicture) {
  const testing::TemporaryFolder folder;
  for (const char* name : {"large.png", "large.bmp", "large.gif", "large.jpg", "large.ico", "large.cur"}) {
    folder.Write(name, std::string(std::size_t{2} << 20, 'x'));
    CIconBytes image;
    const std::size_t peak = PeakOfHeap([&] { image.LoadFromFile(folder.Path(name).u16string()); });
    EXPECT_LE(peak, kBesides) << name;
  }
}

}  // namespace
}  // namespace marklet
