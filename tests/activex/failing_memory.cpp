#include "activex/failing_memory.h"

#include <cstdlib>
#include <string_view>

#include "activex/server.h"

namespace ocx_test {
namespace {

int count = 0, fail_at = 0;
bool fail_on = false, failed = false;

bool Fails() {
  ++count;
  const bool fails =
      fail_at > 0 && (count == fail_at || (fail_on && count > fail_at && (count - fail_at) % 2 == 0));
  failed = failed || fails;
  return fails;
}

void* Malloc(std::size_t size) { return Fails() ? nullptr : std::malloc(size); }
void* Calloc(std::size_t items, std::size_t size) { return Fails() ? nullptr : std::calloc(items, size); }
void* Realloc(void* block, std::size_t size) { return Fails() ? nullptr : std::realloc(block, size); }
LPVOID WINAPI TaskAlloc(SIZE_T size) { return Fails() ? nullptr : CoTaskMemAlloc(size); }
BSTR WINAPI StringLen(const OLECHAR* text, UINT length) {
  return Fails() ? nullptr : SysAllocStringLen(text, length);
}

struct Replacement {
  std::string_view name;
  void* function;
};

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

void Write(void** slot, void* value) {
  DWORD old = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &old);
  *slot = value;
  VirtualProtect(slot, sizeof *slot, old, &old);
}

}  // namespace

// The system's loader has filled a table of addresses through which the server makes its calls.
FailingMemory::FailingMemory() {
  const Replacement replacements[] = {{"malloc", Address(Malloc)},
                                      {"calloc", Address(Calloc)},
                                      {"realloc", Address(Realloc)},
                                      {"CoTaskMemAlloc", Address(TaskAlloc)},
                                      {"SysAllocStringLen", Address(StringLen)}};
  auto* const base = reinterpret_cast<BYTE*>(Server::Get().Module());
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
  for (; library->Name; ++library) {
    const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library->OriginalFirstThunk);
    auto** slots = reinterpret_cast<void**>(base + library->FirstThunk);
    for (; names->u1.AddressOfData; ++names, ++slots) {
      if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
      const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
      for (const Replacement& replacement : replacements)
        if (replacement.name == reinterpret_cast<const char*>(&name->Name[0])) {
          patches_.push_back({slots, *slots});
          Write(slots, replacement.function);
        }
    }
  }
  EXPECT_GE(patches_.size(), 4u);
  Stop();
}

FailingMemory::~FailingMemory() {
  Stop();
  for (const Patch& patch : patches_) Write(patch.slot, patch.original);
}

void FailingMemory::FailAt(int number, bool and_on) {
  count = 0;
  failed = false;
  fail_at = number;
  fail_on = and_on;
}

void FailingMemory::Stop() { fail_at = 0; }

bool FailingMemory::HasFailed() const { return failed; }

}  // namespace ocx_test
