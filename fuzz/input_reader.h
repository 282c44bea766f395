// Takes an input apart: a few bytes that choose how, and the rest as what.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace marklet {

class InputReader {
 public:
  explicit InputReader(std::span<const std::uint8_t> input) : rest_(input) {}

  // 0 where the input has ended.
  std::uint8_t Byte() {
    if (rest_.empty()) return 0;
    const std::uint8_t byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte;
  }

  template <typename T, std::size_t n>
  const T& OneOf(const T (&choices)[n]) {
    return choices[Byte() % n];
  }

  bool Empty() const { return rest_.empty(); }
  std::span<const std::uint8_t> Rest() const { return rest_; }

  // The rest as text, in a form that mutation and dictionary work well on: ASCII as it is, 0x80 to 0xFE for a
  // code unit out of `units`, and 0xFF before the two bytes of any other.
  template <std::size_t n>
  std::u16string Text(const char16_t (&units)[n]) {
    std::u16string text;
    while (!Empty()) {
      const std::uint8_t byte = Byte();
      if (byte < 0x80) {
        text += static_cast<char16_t>(byte);
      } else if (byte < 0xFF) {
        text += units[(byte - 0x80u) % n];
      } else {
        const unsigned low = Byte();
        text += static_cast<char16_t>(low | static_cast<unsigned>(Byte()) << 8);
      }
    }
    return text;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

}  // namespace marklet
