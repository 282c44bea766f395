// Enumerators over a list that was taken when they were made.
#pragma once

#include <vector>

#include "activex/com/boundary.h"
#include "activex/com/com_object.h"

namespace marklet::activex {

// `Item` is what the interface hands out; `Held` keeps it alive and is turned into one, with a reference for
// the caller, by `static Item Give(const Held&)` of `Traits`. Where memory for one is lacking, the caller
// gets those before it, and goes on with it the next time.
template <typename Interface, typename Item, typename Held, typename Traits>
class Enumerator final : public ComObject<Interface> {
 public:
  explicit Enumerator(std::vector<Held> items, std::size_t next = 0)
      : items_(std::move(items)), next_(next) {}

  STDMETHODIMP Next(ULONG count, Item* items, ULONG* fetched) override {
    if (!items || (!fetched && count != 1)) return E_POINTER;
    ULONG given = 0;
    const HRESULT result = Guarded([&] {
      for (; given < count && next_ < items_.size(); ++given, ++next_)
        items[given] = Traits::Give(items_[next_]);
      return given == count ? S_OK : S_FALSE;
    });
    if (fetched) *fetched = given;
    return given > 0 && FAILED(result) ? S_FALSE : result;
  }
  STDMETHODIMP Skip(ULONG count) override {
    const std::size_t left = items_.size() - next_;
    next_ += count < left ? count : left;
    return count <= left ? S_OK : S_FALSE;
  }
  STDMETHODIMP Reset() override {
    next_ = 0;
    return S_OK;
  }
  STDMETHODIMP Clone(Interface** clone) override {
    if (!clone) return E_POINTER;
    *clone = nullptr;
    return Guarded([&] {
      *clone = new Enumerator(items_, next_);
      return S_OK;
    });
  }

 private:
  std::vector<Held> items_;
  std::size_t next_;
};

}  // namespace marklet::activex
