// Recorded calls made again.
#pragma once

#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/headless/recorder/recording.h"

namespace marklet::headless {

// Walks through a recording. Each call that is made again asks for its arguments in their types, and passes
// on what it made.
class Player {
 public:
  explicit Player(const Recording& recording) : recording_(recording) {}

  // No recorder may be active. What the recorded program kept is deleted at the end.
  void Play();

  // The next argument, held while the call runs. Of a type that only carries a result: a fresh one.
  template <typename Parameter>
  auto Next();

  void Pass(HDC made) { Keep(made); }
  void Pass(HGDIOBJ made) { Keep(made); }
  void Pass(SCRIPT_STRING_ANALYSIS made) { Keep(made); }
  template <typename Result>
  void Pass(const Result&) {}

 private:
  const Word& NextWord() { return *word_++; }
  void* NextHandle();
  void Keep(void* made);
  void Forget(const RecordedCall& call);
  void DeleteLeftovers();

  const Recording& recording_;
  const RecordedCall* call_ = nullptr;
  const Word* word_ = nullptr;
  std::vector<void*> made_;  // results by call, from the first call that made something
};

// A null or a rectangle, where a call takes either.
struct OptionalRect {
  RECT rect;
  bool null;
  // NOLINTNEXTLINE(google-explicit-constructor): it is passed on as the argument
  operator const RECT*() const { return null ? nullptr : &rect; }
};

template <typename Parameter>
auto Player::Next() {
  using Type = std::remove_cvref_t<Parameter>;
  if constexpr (std::is_same_v<Type, HDC> || std::is_same_v<Type, HGDIOBJ> ||
                std::is_same_v<Type, SCRIPT_STRING_ANALYSIS>) {
    return static_cast<Type>(NextHandle());
  } else if constexpr (std::is_same_v<Type, RECT>) {
    const Word::Rect& rect = NextWord().rect;
    return RECT{rect.left, rect.top, rect.right, rect.bottom};
  } else if constexpr (std::is_same_v<Type, const RECT*>) {
    const Word::Rect& rect = NextWord().rect;
    return OptionalRect{{rect.left, rect.top, rect.right, rect.bottom}, call_->null_rect};
  } else if constexpr (std::is_same_v<Type, std::u16string_view>) {
    const Word::Piece piece = NextWord().piece;
    return std::u16string_view(recording_.texts.data() + piece.offset, piece.length);
  } else if constexpr (std::is_same_v<Type, std::string_view>) {
    const Word::Piece piece = NextWord().piece;
    return std::string_view(recording_.bytes.data() + piece.offset, piece.length);
  } else if constexpr (std::is_same_v<Type, LOGFONTW>) {
    const Description& font = recording_.descriptions[NextWord().handle.description];
    return LOGFONTW{font.height,    font.detail,  font.italic, font.underline,
                    font.strikeout, font.charset, font.name};
  } else if constexpr (std::is_arithmetic_v<Type>) {
    return static_cast<Type>(NextWord().number);
  } else {
    return Type{};
  }
}

}  // namespace marklet::headless
