// Files of any kind into images, and what came of them onto a surface. Icon files above all; the others go
// the same way and are told apart by a byte. Stored arrays of any shape take the place of a file that was
// read.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "fuzz/failing_calls.h"
#include "fuzz/fuzzers.h"
#include "fuzz/input_reader.h"
#include "images/file_icon.h"
#include "images/icon_bytes.h"
#include "platform/system.h"
#include "tests/support/temporary_folder.h"

namespace marklet {
namespace {

// Names of the file, and none for an array.
constexpr const char* kNames[] = {"a.ico", "a.ico", "a.ico", "a.ico", "a.png", "a.bmp", "a.jpg", ""};

constexpr std::string_view kOperations[] = {"",
                                            "",
                                            "",
                                            "",
                                            "CreateDIBSection",
                                            "CreateCompatibleDC",
                                            "SelectObject",
                                            "BitBlt",
                                            "PixelsOf",
                                            "LoadPicture",
                                            "RenderPicture",
                                            "FillRect"};

constexpr std::uint32_t kRasterOperations[] = {SRCCOPY, SRCAND, SRCINVERT, NOTSRCCOPY};

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

void CheckDrawing(std::span<const std::uint8_t> file, HDC dc, std::uint32_t rop, Long stretch) {
  constexpr Long kMostDrawn = 8;
  CFileIcon icon;
  const bool opened = icon.OpenIconBytes({file.begin(), file.end()});
  Require(opened == (icon.ImageCount() > 0), "an icon file is open without images, or not with them");
  for (Long index = 0; index <= std::min(icon.ImageCount() + 1, kMostDrawn); ++index) {
    for (const bool mask : {false, true})
      icon.DrawImage(dc, index, mask, icon.ImageWidth(index) - 16, icon.ImageBitCount(index) % 16, stretch, 0,
                     rop);
    RenderPicture(icon.PictureFromImage(dc, index), dc);
  }
}

// What loading has stored has the shape that the store promises.
void CheckEntry(const ByteArray& entry) {
  if (entry.bytes.empty()) return;
  Require(entry.bounds.size() == 3, "an entry doesn't have three dimensions");
  const Long channels = entry.bounds[0].count, width = entry.bounds[1].count, height = entry.bounds[2].count;
  Require(channels == 3 || channels == 4, "an entry has neither three nor four channels");
  Require(channels == 4 || width % 4 == 0, "rows of three channels need padding");
  const auto size =
      static_cast<std::size_t>(channels) * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
  Require(size == entry.bytes.size(), "an entry's bounds and bytes differ");
}

void LoadFile(CIconBytes& image, const std::string& name, std::span<const std::uint8_t> bytes) {
  static const testing::TemporaryFolder folder;
  std::ofstream(folder.Path(name), std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  image.LoadFromFile(folder.Path(name).u16string());
  for (Long size = 0; size < CIconBytes::kSizes; ++size)
    for (Long depth = 0; depth < CIconBytes::kDepths; ++depth) CheckEntry(image.GetBytes(size, depth));
}

// An array as a saved form may hold it.
void PutArray(CIconBytes& image, InputReader& input) {
  const Long size = input.Byte() % 9, depth = input.Byte() % 6, repeats = input.Byte();
  ByteArray array;
  for (unsigned i = input.Byte() % 4; i > 0; --i) array.bounds.push_back({input.Byte() % 4, input.Byte()});
  for (Long i = 0; i <= repeats; ++i)
    array.bytes.insert(array.bytes.end(), input.Rest().begin(), input.Rest().end());
  image.SetBytes(size, depth, std::move(array));
}

}  // namespace

void FuzzIcon(std::span<const std::uint8_t> bytes) {
  InputReader input(bytes);
  const std::string name = input.OneOf(kNames);
  const Long size = input.Byte() % 9, depth = 3 + input.Byte() % 2, stretch = input.Byte();
  const bool enabled = input.Byte() % 2 == 0;
  const std::uint32_t rop = input.OneOf(kRasterOperations);
  const std::string_view operation = input.OneOf(kOperations);
  const FailingCalls failing(operation, input.Byte());
  Configuration().message_box = [](std::u16string_view, std::u16string_view) {};

  CDib32 surface;
  surface.Create(32, 32);
  CDib24 target;
  target.Create(64, 64);
  if (name == "a.ico") CheckDrawing(input.Rest(), surface.hDC(), rop, stretch);
  CIconBytes image;
  if (name.empty())
    PutArray(image, input);
  else
    LoadFile(image, name, input.Rest());
  image.Render(target.hDC(), size, depth, stretch - 128, 3, enabled, 0x8000000F, 0);
  image.RenderPicture(target.hDC(), SizeFromIndex(size), 3, stretch - 128);
  Configuration().message_box = nullptr;
}

}  // namespace marklet
