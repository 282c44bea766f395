// The message tables of a subclass block: which messages come to the callback, before or after the original
// procedure.
#pragma once

#include "plumbing/thunk_block.h"

namespace marklet::plumbing {

constexpr Long kAllMessages = -1;

// `table` is the index of the table's count in the block. kAllMessages takes every message from then on. A
// table that took every message takes the added one alone. False when 32 others stand there already.
bool zAddMsg(Long message, std::size_t table, Word* block);

// Leaves a 0 where the message stood, which the next one added fills and WM_NULL matches; kAllMessages
// empties the table.
void zDelMsg(Long message, std::size_t table, Word* block);

}  // namespace marklet::plumbing
