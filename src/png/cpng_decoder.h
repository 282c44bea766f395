// CPngDecoder: one PNG file, from its path to a bitmap.
//
// Nothing is reported but the fields: a BitmapHandle of null means no picture. Gray and palette files never
// get one. A colour file's bitmap is bottom-up with 32 bits a pixel: straight alpha if the file has alpha,
// 255 throughout if not.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "platform/gdi.h"
#include "platform/types.h"
#include "png/chunks.h"
#include "png/inflate.h"
#include "png/scanlines.h"
#include "png/true_colour.h"

namespace marklet {

class CPngDecoder {
 public:
  CPngDecoder() {}
  ~CPngDecoder() { ReleaseBitmap(); }
  CPngDecoder(const CPngDecoder&) = delete;
  CPngDecoder& operator=(const CPngDecoder&) = delete;

  // Reads and decodes a file; once per object. A path that names no file leaves an empty one there.
  void LoadFromFile(std::u16string_view path);
  // The same with a file's bytes, which are used up as scratch memory.
  void LoadFromMemory(std::span<std::uint8_t> file);

  Long Width() const { return fields_.Width; }
  Long Height() const { return fields_.Height; }
  Long BitDepth() const { return fields_.BitDepth; }
  Long ColorType() const { return fields_.ColorType; }
  Long CompressionMethod() const { return fields_.CompressionMethod; }
  Long InterlaceMethod() const { return fields_.InterlaceMethod; }
  const png::ChunkFields& Fields() const { return fields_; }  // IdatBytes is empty by now

  // The decoder's own until it ends or ReleaseBitmap is called.
  HBITMAP BitmapHandle() const { return bitmap_; }
  void ReleaseBitmap();
  // Gives the bitmap away; there is none in here afterwards.
  ObjectRef DetachBitmap();

 private:
  using Bytes = std::span<std::uint8_t>;

  void Decode(Bytes file);
  void DecodeImage();
  void DecodeTrueColour(Bytes stream, const png::PixelFormat& format);
  bool DataReach(Bytes stream, std::size_t rows) const;
  bool InflateRows(Bytes stream, png::TrueColourPicture& picture);
  bool StartPicture(png::TrueColourPicture& picture);
  void DecodeOther(Bytes stream);
  std::vector<std::uint8_t> BareRows(std::vector<std::uint8_t> rows) const;
  void DeliverRaw(std::vector<std::uint8_t>& rows);

  png::ScanlineLayout Layout() const;
  std::int64_t InflatedSize() const;

  png::ChunkFields fields_;
  png::Inflater inflater_;
  HBITMAP bitmap_ = nullptr;
  std::uint8_t* bits_ = nullptr;  // of bitmap_
};

}  // namespace marklet
