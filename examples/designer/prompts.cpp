#include "prompts.h"

// commdlg.h needs windows.h first.
#include <commdlg.h>

#include <algorithm>

#include "look.h"

namespace designer {
namespace {

// Longer than any path that the system's dialog gives.
constexpr std::size_t kPathRoom = 32768;

class FileDialog {
 public:
  FileDialog(HWND owner, const std::wstring& suggested, DWORD flags) : path_(kPathRoom) {
    std::copy_n(suggested.begin(), std::min(suggested.size(), kPathRoom - 1), path_.begin());
    request_.lStructSize = sizeof request_;
    request_.hwndOwner = owner;
    request_.lpstrFilter = L"Forms (*.mform)\0*.mform\0All files (*.*)\0*.*\0";
    request_.lpstrDefExt = L"mform";
    request_.lpstrFile = path_.data();
    request_.nMaxFile = static_cast<DWORD>(path_.size());
    request_.Flags = OFN_EXPLORER | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST | flags;
  }
  std::optional<std::wstring> Show(BOOL(WINAPI* ask)(OPENFILENAMEW*)) {
    return ask(&request_) ? std::optional<std::wstring>(path_.data()) : std::nullopt;
  }

 private:
  std::vector<wchar_t> path_;
  OPENFILENAMEW request_ = {};
};

}  // namespace

std::optional<std::wstring> Prompts::FileToOpen(HWND owner) {
  return FileDialog(owner, L"", OFN_FILEMUSTEXIST).Show(GetOpenFileNameW);
}

std::optional<std::wstring> Prompts::FileToSave(HWND owner, const std::wstring& suggested) {
  return FileDialog(owner, suggested, OFN_OVERWRITEPROMPT).Show(GetSaveFileNameW);
}

std::optional<COLORREF> Prompts::Colour(HWND owner, COLORREF colour) {
  static COLORREF own[16] = {};
  CHOOSECOLORW request = {};
  request.lStructSize = sizeof request;
  request.hwndOwner = owner;
  request.rgbResult = colour;
  request.lpCustColors = own;
  request.Flags = CC_RGBINIT | CC_FULLOPEN;
  return ChooseColorW(&request) ? std::optional(request.rgbResult) : std::nullopt;
}

std::optional<FontValue> Prompts::Font(HWND owner, const FontValue& font) {
  LOGFONTW logical = {};
  logical.lfHeight = -Scaled(font.hundredths, SystemPerInch(), 7200);
  logical.lfWeight = font.bold ? FW_BOLD : FW_NORMAL;
  logical.lfItalic = font.italic;
  logical.lfUnderline = font.underline;
  logical.lfStrikeOut = font.strikethrough;
  font.name.copy(logical.lfFaceName, LF_FACESIZE - 1);
  CHOOSEFONTW request = {};
  request.lStructSize = sizeof request;
  request.hwndOwner = owner;
  request.lpLogFont = &logical;
  request.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_EFFECTS | CF_FORCEFONTEXIST;
  if (!ChooseFontW(&request)) return std::nullopt;
  constexpr int kHundredths = 10;  // the dialog counts tenths of a point
  return FontValue{logical.lfFaceName,          static_cast<int>(request.iPointSize) * kHundredths,
                   logical.lfWeight >= FW_BOLD, logical.lfItalic != 0,
                   logical.lfUnderline != 0,    logical.lfStrikeOut != 0};
}

Answer Prompts::Ask(HWND owner, const std::wstring& question) {
  switch (MessageBoxW(owner, question.c_str(), kProgramName, MB_YESNOCANCEL | MB_ICONQUESTION)) {
    case IDYES:
      return Answer::Yes;
    case IDNO:
      return Answer::No;
    default:
      return Answer::Cancel;
  }
}

void Prompts::Tell(HWND owner, const std::wstring& text) {
  MessageBoxW(owner, text.c_str(), kProgramName, MB_OK | MB_ICONEXCLAMATION);
}

}  // namespace designer
