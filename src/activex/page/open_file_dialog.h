// The system's dialog for opening a file.
#pragma once

#include "imagelist/common_dialog.h"

namespace marklet::activex::page {

// Texts go to the system in its ANSI code page and come back from it: a path with characters beyond that page
// comes back with "?" in their place, or as the short name that the system has for it.
class SystemFileDialog final : public OpenFileDialog {
 public:
  // 0 also where the system has no such dialog.
  Long GetOpenFileNameA(OpenFileRecord& record) override;
  Long CommDlgExtendedError() override;
};

}  // namespace marklet::activex::page
