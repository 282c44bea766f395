#include "plumbing/message_table.h"

namespace marklet::plumbing {

bool zAddMsg(Long message, std::size_t table, Word* block) {
  Word& count = zData(table, block);
  if (message == kAllMessages) {
    count = kAllMessages;
    return true;
  }
  Word slot = 1;
  for (; slot <= count; ++slot) {
    Word& entry = zData(table + static_cast<std::size_t>(slot), block);
    if (entry == 0) entry = message;
    if (entry == message) return true;
  }
  if (slot > static_cast<Word>(kTableEntries)) return false;
  zData(table + static_cast<std::size_t>(slot), block) = message;
  count = slot;
  return true;
}

void zDelMsg(Long message, std::size_t table, Word* block) {
  Word& count = zData(table, block);
  if (message == kAllMessages) {
    count = 0;
    return;
  }
  for (Word slot = 1; slot <= count; ++slot) {
    Word& entry = zData(table + static_cast<std::size_t>(slot), block);
    if (entry != message) continue;
    entry = 0;
    return;
  }
}

}  // namespace marklet::plumbing
