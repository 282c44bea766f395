// What a key of an image may look like.
#pragma once

#include <string_view>

namespace marklet {

// Keys may not: a digit where a key is expected means a position.
constexpr bool StartsWithDigit(std::u16string_view key) {
  return !key.empty() && key.front() >= u'0' && key.front() <= u'9';
}

}  // namespace marklet
