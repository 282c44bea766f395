// Cuts a caption into tags and pieces of plain text small enough to be units of line breaking.
#pragma once

#include <memory_resource>
#include <string_view>
#include <vector>

namespace marklet {

// Whether a caption goes through the tokenizer and the interpreter at all. Read off the table of tags.
bool HasMarkup(std::u16string_view text);

using Tokens = std::pmr::vector<std::u16string_view>;

// The tokens in order, as views into `text`: none is empty, and together they are the text. No tokens for an
// empty text. Where separators go depends on UniscribeAvailable: with shaping they end the word before them,
// without it they lead the next piece. The array stands in `memory`.
Tokens TokenizeMarkup(std::u16string_view text,
                      std::pmr::memory_resource* memory = std::pmr::get_default_resource());

// Whether a line may break at this character.
bool IsBreakCharacter(char16_t ch);

}  // namespace marklet
