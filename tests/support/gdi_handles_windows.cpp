#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/win32/sdk.h"
#include "support/gdi_handles.h"

namespace marklet {
namespace {

// Of 64-bit systems, for 32-bit programs on them too.
struct TableEntry {
  std::uint64_t object;
  std::uint16_t process;  // or 0 where the table isn't shared between processes
  std::uint16_t lock_count;
  std::uint16_t generation;
  std::uint8_t type;  // 0 when the entry is free
  std::uint8_t flags;
  std::uint64_t user;
};
static_assert(sizeof(TableEntry) == 24);

constexpr std::size_t kTableEntries = 0x10000;

// The system's own way to the process's block; it has no header.
const std::byte* ProcessBlock() {
  using Getter = const std::byte*(WINAPI*)();
  const auto getter =
      reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleW(L"ntdll"), "RtlGetCurrentPeb"));
  return reinterpret_cast<Getter>(getter)();
}

std::span<const TableEntry> HandleTable() {
  constexpr std::size_t kTableInBlock = sizeof(void*) == 8 ? 0xF8 : 0x94;
  return {*reinterpret_cast<const TableEntry* const*>(ProcessBlock() + kTableInBlock), kTableEntries};
}

}  // namespace

int CountGdiHandles() {
  const auto own = static_cast<std::uint16_t>(GetCurrentProcessId());
  const std::span<const TableEntry> table = HandleTable();
  return static_cast<int>(std::count_if(table.begin(), table.end(), [own](const TableEntry& entry) {
    return entry.type != 0 && (entry.process == 0 || entry.process == own);
  }));
}

}  // namespace marklet
