// Marks the calls that the platform's own portable code makes through the seam, so that no recorder takes
// them for the program's.
#pragma once

namespace marklet {

inline thread_local int unrecorded_depth = 0;

class UnrecordedScope {
 public:
  UnrecordedScope() { ++unrecorded_depth; }
  ~UnrecordedScope() { --unrecorded_depth; }
  UnrecordedScope(const UnrecordedScope&) = delete;
  UnrecordedScope& operator=(const UnrecordedScope&) = delete;
};

}  // namespace marklet
