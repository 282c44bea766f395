// Memory that a call hands out and its caller frees.
#pragma once

#include <cstddef>
#include <new>
#include <string_view>
#include <type_traits>

#include "activex/com/com.h"

namespace marklet::activex {

// An array of the task allocator, all zero, which frees itself and the strings in it unless somebody takes
// it.
template <typename Item>
class TaskArray {
 public:
  explicit TaskArray(std::size_t count)
      : items_(static_cast<Item*>(::CoTaskMemAlloc(count * sizeof(Item)))), count_(count) {
    if (!items_) throw std::bad_alloc();
    for (std::size_t i = 0; i < count; ++i) items_[i] = {};
  }
  ~TaskArray() {
    if constexpr (std::is_same_v<Item, LPOLESTR>)
      for (std::size_t i = 0; items_ && i < count_; ++i) ::CoTaskMemFree(items_[i]);
    ::CoTaskMemFree(items_);
  }
  TaskArray(const TaskArray&) = delete;
  TaskArray& operator=(const TaskArray&) = delete;

  Item& operator[](std::size_t index) { return items_[index]; }
  // To the caller, in the shape of OLE's counted arrays.
  template <typename Counted>
  void GiveTo(Counted& counted) {
    counted.cElems = static_cast<ULONG>(count_);
    counted.pElems = items_;
    items_ = nullptr;
  }

 private:
  Item* items_;
  std::size_t count_;
};

// A copy that the caller frees.
inline LPOLESTR NewTaskString(std::wstring_view text) {
  const auto copy = static_cast<LPOLESTR>(::CoTaskMemAlloc((text.size() + 1) * sizeof(wchar_t)));
  if (!copy) throw std::bad_alloc();
  text.copy(copy, text.size());
  copy[text.size()] = 0;
  return copy;
}

}  // namespace marklet::activex
