#include "support/processor_time.h"

#include <cstdint>

#include "platform/win32/sdk.h"

namespace marklet {

// The library's own clock counts the time on the wall over here.
double ProcessorSeconds() {
  FILETIME created, ended, kernel, user;
  GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
  const auto ticks = [](const FILETIME& time) {
    return static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  };
  return static_cast<double>(ticks(kernel) + ticks(user)) / 1e7;
}

}  // namespace marklet
