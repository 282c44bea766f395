#include "platform/file.h"

#include <algorithm>
#include <new>
#include <string>

#include "platform/win32/sdk.h"

namespace marklet {
namespace {

class OpenFile {
 public:
  explicit OpenFile(HANDLE handle) : handle_(handle) {}
  ~OpenFile() {
    if (handle_ != INVALID_HANDLE_VALUE) CloseHandle(handle_);
  }
  OpenFile(const OpenFile&) = delete;
  OpenFile& operator=(const OpenFile&) = delete;
  HANDLE handle() const { return handle_; }

 private:
  HANDLE handle_;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// Reads on until `bytes` has that many, or as many as there are.
bool Extend(HANDLE file, std::vector<std::uint8_t>& bytes, std::size_t size) {
  std::size_t done = bytes.size();
  bytes.resize(size);
  while (done < size) {
    DWORD count = 0;
    if (!ReadFile(file, bytes.data() + done, static_cast<DWORD>(size - done), &count, nullptr)) return false;
    if (count == 0) break;  // it was cut short meanwhile
    done += count;
  }
  bytes.resize(done);
  return true;
}

bool ReadPlainFile(HANDLE file, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  LARGE_INTEGER size{};
  if (file == INVALID_HANDLE_VALUE || GetFileType(file) != FILE_TYPE_DISK || !GetFileSizeEx(file, &size))
    return false;
  if (size.QuadPart < 0 || static_cast<std::uint64_t>(size.QuadPart) > kMaxFileBytes) return false;
  const auto whole = static_cast<std::size_t>(size.QuadPart);
  if (wanted != nullptr && !(Extend(file, bytes, std::min(whole, kFileStart)) && wanted(bytes))) return false;
  return Extend(file, bytes, whole);
}

bool ReadThrough(DWORD access, DWORD disposition, std::u16string_view path, std::vector<std::uint8_t>& bytes,
                 FileTest wanted) {
  bytes.clear();
  if (path.empty() || path.find(u'\0') != path.npos) return false;
  try {
    const std::wstring native(path.begin(), path.end());
    const OpenFile file(
        CreateFileW(native.c_str(), access, kShareAll, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (ReadPlainFile(file.handle(), bytes, wanted)) return true;
  } catch (const std::bad_alloc&) {
  }
  bytes = {};
  return false;
}

}  // namespace

bool ReadWholeFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  return ReadThrough(GENERIC_READ, OPEN_EXISTING, path, bytes, wanted);
}

bool ReadOrCreateFile(std::u16string_view path, std::vector<std::uint8_t>& bytes, FileTest wanted) {
  return ReadThrough(GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS, path, bytes, wanted) ||
         ReadThrough(GENERIC_READ, OPEN_EXISTING, path, bytes, wanted);
}

}  // namespace marklet
