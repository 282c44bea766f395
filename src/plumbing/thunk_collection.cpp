#include "plumbing/thunk_collection.h"

#include <algorithm>

namespace marklet::plumbing {
namespace {

auto WithKey(const std::string& key) {
  return [&key](const Thunk& thunk) { return thunk.key == key; };
}

}  // namespace

std::string ThunkKey(Word number) { return "h" + std::to_string(number); }

std::string ThunkKey(const CallbackObject* object, Long nOrdinal) {
  return ThunkKey(reinterpret_cast<Word>(object)) + "." + std::to_string(nOrdinal);
}

bool ThunkCollection::Add(const Thunk& thunk) {
  if (std::any_of(thunks_.begin(), thunks_.end(), WithKey(thunk.key))) return false;
  thunks_.push_back(thunk);
  return true;
}

const Thunk* ThunkCollection::Find(const std::string& key) const {
  const auto found = std::find_if(thunks_.begin(), thunks_.end(), WithKey(key));
  // A thunk that ended by itself has released its block.
  if (found == thunks_.end() || ::IsBadCodePtr(reinterpret_cast<FARPROC>(found->block))) return nullptr;
  return &*found;
}

void ThunkCollection::Remove(const std::string& key) { std::erase_if(thunks_, WithKey(key)); }

std::vector<Thunk> ThunkCollection::FromTheLast() const { return {thunks_.rbegin(), thunks_.rend()}; }

}  // namespace marklet::plumbing
