#include "activex/page/open_file_dialog.h"

#include <algorithm>
#include <string>

#include "activex/com/com.h"
// commdlg.h needs windows.h first.
#include <commdlg.h>

#include "platform/system.h"
#include "platform/win32/system_function.h"
#include "platform/win32/undefine.h"

namespace marklet::activex::page {
namespace {

constexpr const wchar_t* kLibrary = L"comdlg32.dll";

std::string ToAnsi(std::u16string_view text) { return WideCharToMultiByte(CP_ACP, text); }

// A buffer that the dialog fills: at least as many bytes as it has characters.
std::string BufferOf(const std::u16string& text) {
  std::string buffer = ToAnsi(text);
  buffer.resize(std::max(buffer.size(), text.size()));
  return buffer;
}

void TakeBack(const std::string& buffer, std::u16string& text) {
  const std::size_t size = text.size();
  text = MultiByteToWideChar(CP_ACP, buffer);
  text.resize(size);
}

const char* OrNone(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

}  // namespace

// Looked up each time: it is rarely needed, and not every program has the library.
Long SystemFileDialog::GetOpenFileNameA(OpenFileRecord& record) {
  const auto show = win32::SystemFunction<BOOL(WINAPI*)(OPENFILENAMEA*)>(kLibrary, "GetOpenFileNameA");
  if (!show) return 0;
  const std::string filter = ToAnsi(record.filter), folder = ToAnsi(record.initial_directory),
                    title = ToAnsi(record.title), extension = ToAnsi(record.default_extension);
  std::string file = BufferOf(record.file), file_title = BufferOf(record.file_title);
  OPENFILENAMEA native = {};
  native.lStructSize = sizeof native;
  native.hwndOwner = Native(record.owner);
  native.lpstrFilter = OrNone(filter);
  native.nFilterIndex = static_cast<DWORD>(record.filter_index);
  native.lpstrFile = file.data();
  native.nMaxFile = static_cast<DWORD>(file.size());
  native.lpstrFileTitle = file_title.data();
  native.nMaxFileTitle = static_cast<DWORD>(file_title.size());
  native.lpstrInitialDir = OrNone(folder);
  native.lpstrTitle = OrNone(title);
  native.lpstrDefExt = OrNone(extension);
  native.Flags = record.flags;
  const Long result = show(&native);
  TakeBack(file, record.file);
  TakeBack(file_title, record.file_title);
  record.filter_index = static_cast<Long>(native.nFilterIndex);
  record.flags = native.Flags;
  return result;
}

Long SystemFileDialog::CommDlgExtendedError() {
  const auto ask = win32::SystemFunction<DWORD(WINAPI*)()>(kLibrary, "CommDlgExtendedError");
  return ask ? static_cast<Long>(ask()) : 0;
}

}  // namespace marklet::activex::page
