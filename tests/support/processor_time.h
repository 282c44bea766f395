// For tests that bound how long something takes.
#pragma once

namespace marklet {

// Seconds that this thread has had of the processor: how busy the machine is leaves them as they are. Only
// differences mean something, in steps that may be as coarse as a hundredth.
double ProcessorSeconds();

}  // namespace marklet
