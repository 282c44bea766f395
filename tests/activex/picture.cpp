#include "activex/picture.h"

#include "support/picture_files.h"

namespace ocx_test {

void Picture::Save(const wchar_t* name) const {
  const std::wstring folder = FolderOfProgram() + L"\\pictures";
  CreateDirectoryW(folder.c_str(), nullptr);
  const auto bytes = marklet::pictures::Bmp(width_, height_, [this](int x, int y) { return At(x, y); });
  const HANDLE file =
      CreateFileW((folder + L"\\" + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
  CloseHandle(file);
}

}  // namespace ocx_test
