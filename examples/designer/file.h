// Form files on the disk.
#pragma once

#include <string>

#include "file_format.h"

namespace designer {

// Throw a Refusal. A file that can't be written stays as it was.
SavedForm ReadForm(const std::wstring& path);
void WriteForm(const std::wstring& path, const SavedForm& form);

// The last part of a path.
std::wstring FileName(const std::wstring& path);

}  // namespace designer
