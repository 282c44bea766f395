// What the designer asks the user in dialogs: the system's own here, a test's there.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "value_text.h"

namespace designer {

enum class Answer { Yes, No, Cancel };

class Prompts {
 public:
  virtual ~Prompts() = default;
  // Nothing: the user chose none.
  virtual std::optional<std::wstring> FileToOpen(HWND owner);
  virtual std::optional<std::wstring> FileToSave(HWND owner, const std::wstring& suggested);
  virtual std::optional<COLORREF> Colour(HWND owner, COLORREF colour);
  virtual std::optional<FontValue> Font(HWND owner, const FontValue& font);
  virtual Answer Ask(HWND owner, const std::wstring& question);
  virtual void Tell(HWND owner, const std::wstring& text);
};

inline constexpr wchar_t kProgramName[] = L"Form designer";

}  // namespace designer
