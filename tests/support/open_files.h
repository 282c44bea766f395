// Counts what this process holds open. For leak tests; only differences mean something.
#pragma once

namespace marklet {

// File descriptors, or on Windows handles of every kind.
int CountOpenFiles();

}  // namespace marklet
