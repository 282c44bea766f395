// An image file for tests to load.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

// A bitmap file of 16 by 16 pixels, white with a dot of 8 by 8 in the middle, deleted at the end. Its path
// ends in `name` and ".bmp".
class BitmapFile {
 public:
  explicit BitmapFile(const wchar_t* name = L"", COLORREF dot = 0) {
    wchar_t folder[MAX_PATH], file[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    GetTempFileNameW(folder, L"img", 0, file);
    DeleteFileW(file);
    path_ = std::wstring(file) + name + L".bmp";
    constexpr std::uint32_t kHead = 54, kRow = 16 * 3, kPixels = 16 * kRow;
    std::vector<char> bytes(kHead + kPixels, '\xFF');
    const std::uint32_t head[] = {kHead + kPixels, 0, kHead, 40, 16, 16, 1 | 24 << 16, 0,
                                  kPixels,         0, 0,     0,  0};
    bytes[0] = 'B';
    bytes[1] = 'M';
    std::copy_n(reinterpret_cast<const char*>(head), sizeof head, bytes.begin() + 2);
    const char pixel[] = {static_cast<char>(dot >> 16), static_cast<char>(dot >> 8), static_cast<char>(dot)};
    for (std::uint32_t row = 4; row < 12; ++row)
      for (std::uint32_t column = 4; column < 12; ++column)
        std::copy_n(pixel, 3, &bytes[kHead + row * kRow + column * 3]);
    const HANDLE out = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(out, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    CloseHandle(out);
    EXPECT_EQ(bytes.size(), written);
  }
  ~BitmapFile() { DeleteFileW(path_.c_str()); }
  BitmapFile(const BitmapFile&) = delete;
  BitmapFile& operator=(const BitmapFile&) = delete;
  const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
};

}  // namespace ocx_test
