#include "support/open_files.h"

#include "platform/win32/sdk.h"

namespace marklet {

int CountOpenFiles() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return static_cast<int>(count);
}

}  // namespace marklet
