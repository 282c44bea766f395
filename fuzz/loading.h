// What the fuzzers of saved forms share.
#pragma once

#include "host/property_bag.h"

namespace marklet {

// Loads a control from the bag and has it paint, then saves and loads it again: what it saves must be whole,
// and the same the next time. Ends the program when it isn't.
void LoadAndSaveAgain(PropertyBag& bag, bool paints);

}  // namespace marklet
