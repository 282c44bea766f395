// Any bytes as a saved form.
#include <cstdint>
#include <vector>

#include "control/saved_bag.h"
#include "control/saved_extent.h"
#include "fuzz/fuzzers.h"
#include "fuzz/loading.h"
#include "fuzz/require.h"

namespace marklet {

void FuzzSavedForm(std::span<const std::uint8_t> input) {
  SavedBag bag;
  const SavedBag::State state = bag.Read({input.begin(), input.end()});
  const bool is_empty = bag.Bytes() == SavedBag().Bytes();
  if (state == SavedBag::State::NotABag || state == SavedBag::State::TooNew)
    Require(is_empty, "something was read of what is no form");
  const auto extent = ReadExtent(bag);
  Require(!extent || (extent->width >= 0 && extent->height >= 0 &&
                      std::int64_t{extent->width} * extent->height <= 40'000'000'000),
          "a size that no form has was read");
  // Painting takes most of the time: let one of four inputs do it.
  LoadAndSaveAgain(bag, input.size() % 4 == 0);
}

}  // namespace marklet
