// The size of a control in a saved form of its own. A host's property bag holds none: hosts that save there
// keep the sizes of their controls themselves.
#pragma once

#include <optional>

#include "host/property_bag.h"
#include "platform/types.h"

namespace marklet {

// In hundredths of a millimetre.
struct SavedExtent {
  Long width = 0, height = 0;
  friend bool operator==(const SavedExtent&, const SavedExtent&) = default;
};

void WriteExtent(PropertyBag& bag, SavedExtent extent);
// Nothing when the bag holds no size, half a one, or one that no form has: a negative side, one of more than
// ten metres, or an area that would take hundreds of megabytes to paint.
std::optional<SavedExtent> ReadExtent(PropertyBag& bag);

}  // namespace marklet
