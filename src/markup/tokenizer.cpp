#include "markup/tokenizer.h"

#include <utility>

#include "markup/break_characters.h"
#include "text/shaping.h"

namespace marklet {
namespace {

constexpr bool IsAsciiLetter(char16_t ch) { return static_cast<unsigned>((ch | 0x20) - u'a') < 26; }

// The word being built is always a stretch of the text up to the read position, so its start says it all.
class Tokenizer {
 public:
  Tokenizer(std::u16string_view text, bool shaping, std::pmr::memory_resource* memory)
      : text_(text), shaping_(shaping), breaks_(BreakCharacters(shaping)), tokens_(memory) {
    constexpr std::size_t kUsualLength = 3;  // of words and tags taken together, at the least
    tokens_.reserve(text.size() / kUsualLength + 2);
  }

  Tokens Run() {
    for (std::size_t at = 0; at < text_.size();) {
      const char16_t ch = text_[at];
      if (IsAsciiLetter(ch)) {  // nearly every character, and never a place to cut
        ++at;
      } else if (ch == u'<') {
        at += TakeTag(at);
      } else {
        if (breaks_.Contains(ch)) TakeSeparator(at);
        ++at;
      }
    }
    Flush(text_.size());
    return std::move(tokens_);
  }

 private:
  // Reads what starts with the "<" at `at` and answers how many code units that was.
  std::size_t TakeTag(std::size_t at) {
    const std::size_t length = TagLength(at);
    if (length == 0) return 1;
    Flush(at);
    Flush(at + length);
    return length;
  }

  // Ends the word at `end`. The next one starts there.
  void Flush(std::size_t end) {
    if (end > word_) tokens_.push_back(text_.substr(word_, end - word_));
    word_ = end;
  }

  void TakeSeparator(std::size_t at) {
    const bool leads = !shaping_ && at > word_;  // it ends the word and opens the next piece
    Flush(leads ? at : at + 1);
  }

  // The length of the tag that opens at `at`, 0 when the "<" is text. Only the places of ">" and "/" count,
  // never the letters. Each rule has its own bound, and they differ: the colour opener needs a character
  // after it.
  std::size_t TagLength(std::size_t at) {
    const std::u16string_view rest = text_.substr(at);
    if (const std::size_t length = FontOpenerLength(at, rest)) return length;
    const auto closes = [rest](std::size_t place) { return place < rest.size() && rest[place] == u'>'; };
    if (closes(2)) return 3;
    const bool slash = rest.size() > 1 && rest[1] == u'/';
    if (slash && closes(3)) return 4;
    if (closes(4)) return 5;
    if (closes(5)) return slash ? 6 : 0;  // without the slash the colour opener isn't tried either
    return closes(9) && rest.size() > 10 && rest.starts_with(u"<c=") ? 10 : 0;
  }

  std::size_t FontOpenerLength(std::size_t at, std::u16string_view rest) {
    if (rest.size() <= 5 || rest[1] != u'f' || rest[2] != u'=') return 0;
    const std::size_t close = CloseFrom(at);
    return close == std::u16string_view::npos ? 0 : close + 1 - at;
  }

  // The first ">" at or after `at`. Positions only grow, so that an answer holds until it is passed, and a
  // text full of font openers is still searched once.
  std::size_t CloseFrom(std::size_t at) {
    if (close_ < at || !close_known_) close_ = text_.find(u'>', at);
    close_known_ = true;
    return close_;
  }

  std::u16string_view text_;
  bool shaping_;
  const BreakCharacterSet& breaks_;
  std::size_t word_ = 0;  // where the word being built starts
  bool close_known_ = false;
  std::size_t close_ = 0;
  Tokens tokens_;
};

}  // namespace

Tokens TokenizeMarkup(std::u16string_view text, std::pmr::memory_resource* memory) {
  if (text.empty()) return Tokens(memory);
  // Asked once a caption: without shaping each question looks for the library again.
  return Tokenizer(text, UniscribeAvailable(), memory).Run();
}

bool IsBreakCharacter(char16_t ch) {
  return BreakCharacters(true).Contains(ch) || BreakCharacters(UniscribeAvailable()).Contains(ch);
}

}  // namespace marklet
