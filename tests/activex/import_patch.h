// Puts functions of a test's in the place of those that a module calls.
#pragma once

#include <string_view>
#include <vector>

#include "activex/server.h"

namespace ocx_test {

struct Replacement {
  std::string_view name;  // of a function that the module imports from wherever
  void* function;
};

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

// While it lives, the module's own calls of the functions go to their replacements. The module stays loaded
// for as long.
class ImportPatch {
 public:
  ImportPatch(HMODULE module, const std::vector<Replacement>& replacements);
  ~ImportPatch();
  ImportPatch(const ImportPatch&) = delete;
  ImportPatch& operator=(const ImportPatch&) = delete;

  std::size_t Count() const { return slots_.size(); }

 private:
  struct Slot {
    void** address;
    void* original;
  };
  std::vector<Slot> slots_;
};

}  // namespace ocx_test
