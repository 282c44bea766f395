#include "file.h"

#include <windows.h>

#include <memory>

#include "property_value.h"
#include "refusal.h"

namespace designer {
namespace {

struct Closer {
  using pointer = HANDLE;
  void operator()(HANDLE file) const {
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
  }
};
using File = std::unique_ptr<HANDLE, Closer>;

[[noreturn]] void Refuse(const std::wstring& path, const std::wstring& what) {
  throw Refusal{FileName(path) + L" can't be " + what + L". " +
                FailureText(HRESULT_FROM_WIN32(GetLastError()))};
}

bool WriteAll(HANDLE file, std::span<const std::uint8_t> bytes) {
  DWORD written = 0;
  return WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
         written == bytes.size() && FlushFileBuffers(file);
}

}  // namespace

std::wstring FileName(const std::wstring& path) { return path.substr(path.find_last_of(L"\\/:") + 1); }

SavedForm ReadForm(const std::wstring& path) {
  const File file(
      CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  LARGE_INTEGER size = {};
  if (file.get() == INVALID_HANDLE_VALUE || !GetFileSizeEx(file.get(), &size)) Refuse(path, L"read");
  if (size.QuadPart > LONGLONG{kLargestFile}) throw Refusal{FileName(path) + L" is too large for a form."};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size.QuadPart));
  DWORD read = 0;
  if (!::ReadFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr))
    Refuse(path, L"read");
  bytes.resize(read);
  auto form = Decode(bytes);
  if (const auto* fault = std::get_if<FileFault>(&form))
    throw Refusal{FileName(path) + L" can't be opened. " + Describe(*fault)};
  return std::move(std::get<SavedForm>(form));
}

// First beside it, so that the older file is there until the new one is whole.
void WriteForm(const std::wstring& path, const SavedForm& form) {
  const std::wstring beside = path + L".new";
  const std::vector<std::uint8_t> bytes = Encode(form);
  if (bytes.size() > kLargestFile) throw Refusal{L"The form is too large to be saved."};
  File file(
      CreateFileW(beside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (file.get() == INVALID_HANDLE_VALUE) Refuse(path, L"saved");
  const bool written = WriteAll(file.get(), bytes);
  file.reset();
  if (written && MoveFileExW(beside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING)) return;
  const DWORD error = GetLastError();
  DeleteFileW(beside.c_str());
  SetLastError(error);
  Refuse(path, L"saved");
}

}  // namespace designer
