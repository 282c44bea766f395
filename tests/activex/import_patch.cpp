#include "activex/import_patch.h"

namespace ocx_test {
namespace {

void Write(void** slot, void* value) {
  DWORD old = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &old);
  *slot = value;
  VirtualProtect(slot, sizeof *slot, old, &old);
}

}  // namespace

// The system's loader has filled a table of addresses through which the module makes its calls.
ImportPatch::ImportPatch(HMODULE module, const std::vector<Replacement>& replacements) {
  auto* const base = reinterpret_cast<BYTE*>(module);
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
          slots_.push_back({slots, *slots});
          Write(slots, replacement.function);
        }
    }
  }
}

ImportPatch::~ImportPatch() {
  for (const Slot& slot : slots_) Write(slot.address, slot.original);
}

}  // namespace ocx_test
