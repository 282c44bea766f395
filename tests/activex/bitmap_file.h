// An image file for tests to load.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

// A bitmap file of 16 by 16 pixels, white with a black dot in the middle, deleted at the end. Its path ends
// in `name` and ".bmp".
class BitmapFile {
 public:
  explicit BitmapFile(const wchar_t* name = L"") {
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
    for (std::uint32_t row = 4; row < 12; ++row) std::fill_n(&bytes[kHead + row * kRow + 4 * 3], 8 * 3, '\0');
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
