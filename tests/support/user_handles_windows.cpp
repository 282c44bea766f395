#include "support/user_handles.h"

#include <vector>

#include "platform/win32/sdk.h"

namespace marklet {
namespace {

// A handle's low half is its place in the table.
int PlaceOf(HACCEL handle) {
  constexpr unsigned kFirst = 0x20;
  return static_cast<int>(((reinterpret_cast<ULONG_PTR>(handle) & 0xFFFF) - kFirst) / 2);
}

// Fills the places that are free with handles of its own, until the table grows with each one; all the others
// up to there are in use.
int CountPlacesInUse() {
  constexpr int kFreshInARow = 200, kMost = 0x7000;
  std::vector<HACCEL> own;
  int end = 0;  // past the highest place so far
  for (int fresh = 0; fresh < kFreshInARow && static_cast<int>(own.size()) < kMost;) {
    ACCEL key = {FVIRTKEY, 'A', 1};
    own.push_back(CreateAcceleratorTableW(&key, 1));
    const int place = PlaceOf(own.back());
    fresh = place == end ? fresh + 1 : 0;
    if (place >= end) end = place + 1;
  }
  for (const HACCEL handle : own) DestroyAcceleratorTable(handle);
  return end - static_cast<int>(own.size());
}

}  // namespace

int CountUserHandles() {
  const DWORD told = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  return told ? static_cast<int>(told) : CountPlacesInUse();
}

}  // namespace marklet
