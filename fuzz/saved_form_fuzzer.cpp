// Any bytes as a saved form.
#include <vector>

#include "control/saved_bag.h"
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
  // Painting takes most of the time: let one of four inputs do it.
  LoadAndSaveAgain(bag, input.size() % 4 == 0);
}

}  // namespace marklet
