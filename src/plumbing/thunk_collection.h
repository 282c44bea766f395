// The thunks of one family, by key and in the order in which they were added.
#pragma once

#include <string>
#include <vector>

#include "plumbing/thunk_block.h"

namespace marklet::plumbing {

struct Thunk {
  std::string key;
  Word* block;
  const CallbackObject* object;  // whose method it calls; may have gone
};

// "h" and the number in decimal.
std::string ThunkKey(Word number);
// The same with the method's ordinal, after a point.
std::string ThunkKey(const CallbackObject* object, Long nOrdinal);

class ThunkCollection {
 public:
  // A zeroed block for a method of the object, added under the key that `key_of` gives. Null, and nothing
  // added, when the key is there or memory isn't.
  template <typename KeyOf>
  Word* NewBlock(KeyOf&& key_of, std::size_t words, const CallbackObject& object) {
    Word* const block = AllocateBlock(words);
    if (!block) return nullptr;
    bool added = false;
    IgnoreErrors([&] { added = Add({key_of(), block, &object}); });
    if (added) return block;
    ReleaseBlock(block);
    return nullptr;
  }
  // The thunk of that key whose block is still memory; null when there is none. It stays valid until the
  // collection changes.
  const Thunk* Find(const std::string& key) const;
  void Remove(const std::string& key);
  // As they are now, from the last one added to the first.
  std::vector<Thunk> FromTheLast() const;
  void Clear() { thunks_.clear(); }

 private:
  bool Add(const Thunk& thunk);

  std::vector<Thunk> thunks_;
};

}  // namespace marklet::plumbing
