// CIconBytes: one named image, held as raw pixels at up to eight sizes and five depths.
//
// Files become pixels when they are loaded; drawing goes by the pixels alone. Nothing here throws or reports
// but the two messages of the load, and a failing step is skipped.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/byte_array.h"
#include "images/image_sizes.h"
#include "platform/gdi.h"
#include "platform/host_picture.h"
#include "platform/types.h"

namespace marklet {

class CFileIcon;

class CIconBytes {
 public:
  static constexpr Long kSizes = kImageSizes, kDepths = kImageDepths;

  CIconBytes() = default;
  virtual ~CIconBytes() = default;
  CIconBytes(const CIconBytes&) = delete;
  CIconBytes& operator=(const CIconBytes&) = delete;

  const std::u16string& Key() const { return state_.Key; }
  void PutKey(std::u16string key) { state_.Key = std::move(key); }

  // The entry for a size and a depth, laid out as bits.h says; an empty array outside 0..7 and 0..4.
  const ByteArray& GetBytes(Long size_index, Long depth_index) const;
  // Replaces the entry; nothing happens outside 0..7 and 0..4.
  void SetBytes(Long size_index, Long depth_index, ByteArray bytes);
  // The channels of an entry, 0 for an empty one.
  static Long ByteCount(const ByteArray& bytes) { return bytes.UpperBound() + 1; }
  // Empties all entries. The key stays.
  void ClearImages() { state_.Images = {}; }
  void Reset() { ClearImages(); }

  // Whether a size is there at any depth but the lowest.
  bool HasImage(Long size_index) const;
  bool HasImage16() const { return HasImage(0); }
  bool HasImage24() const { return HasImage(1); }
  bool HasImage32() const { return HasImage(2); }
  bool HasImage48() const { return HasImage(3); }
  bool HasImage72() const { return HasImage(4); }
  bool HasImage96() const { return HasImage(5); }
  bool HasImage128() const { return HasImage(6); }
  bool HasImage256() const { return HasImage(7); }

  // Adds what a file holds to what is here. The last three characters of the path choose the way: ICO, PNG,
  // and the host's loader for all others. A file that can't be read or used leaves everything as it is; one
  // that isn't square says so in a message box, in which the program may be entered again.
  void LoadFromFile(std::u16string_view path);
  void LoadPng(std::u16string_view path);
  // `fuzzy` takes colours close to the top left corner's for transparent, otherwise only that colour is.
  void LoadFromPictureObject(const PictureRef& picture, bool fuzzy);
  // What the host's loader made of the file loaded last; null after an icon file, a PNG, or nothing.
  const PictureRef& Picture() const { return state_.Picture; }
  // Makes an entry of a rectangle of a context: four channels when `bit_count` is 32, else three. Nothing
  // happens when the depth isn't 1 to 4 or the size not 0 to 7.
  void StoreBits(Long size_index, Long depth_index, Long bit_count, Long x, Long y, Long width, Long height,
                 HDC dc);

  // Draws the image with its top left corner at (x, y), in the edge length that `size_index` stands for, grey
  // when it isn't enabled. The last two arguments are of no account. Not re-entrant.
  virtual void Render(HDC dc, Long size_index, Long depth_index, Long x, Long y, bool enabled,
                      OLE_COLOR background, Long further);
  // Draws Picture(), resized to a square. Magenta is transparent, and what lies beside it, mixed with it, is
  // KeyColour.
  void RenderPicture(HDC dc, Long size, Long x, Long y) const;

 private:
  struct State {
    std::array<ByteArray, kImageEntries> Images{};
    // What the search for bytes found, while an image is drawn; 0 at all other times.
    bool UsedFallback = false;  // in another size
    std::u16string Key{};
    Long SelectDepth = 0;  // how deep the search is nested
    Long ChosenSize = 0;   // pixels
    bool ChosenIsAlpha = false;
    bool IsPicture = false;  // draws the picture instead of the entries; nothing sets it
    PictureRef Picture{};
  };

  void LoadIcon(std::u16string_view path);
  void LoadIconImage(const CFileIcon& icon, Long index);
  const ByteArray* SelectBytes(Long size_index, Long depth_index);
  void RenderAlpha(HDC dc, const ByteArray& bytes, Long size, Long x, Long y, bool enabled) const;
  void RenderKeyed(HDC dc, const ByteArray& bytes, Long size, Long x, Long y, bool enabled) const;

  State state_;
};

}  // namespace marklet
