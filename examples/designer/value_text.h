// Values of properties as the texts that a user reads and types.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace designer {

// A member of an enumeration.
struct Choice {
  std::wstring name;
  int value;
};

// Whole numbers, with or without blanks around.
std::optional<int> ParseNumber(std::wstring_view text);

// "True" and "False", in any case.
std::wstring TruthText(bool truth);
std::optional<bool> ParseTruth(std::wstring_view text);

// By name, as a number where no member has the value. Names count in any case.
std::wstring ChoiceText(std::span<const Choice> choices, int value);
std::optional<int> ParseChoice(std::span<const Choice> choices, std::wstring_view text);

// OLE colours: "#RRGGBB", and the names of the system's.
std::wstring ColourText(std::uint32_t colour);
std::optional<std::uint32_t> ParseColour(std::wstring_view text);
std::vector<std::wstring> SystemColourNames();

struct FontValue {
  std::wstring name;
  int hundredths = 0;  // of a point
  bool bold = false, italic = false, underline = false, strikethrough = false;
  bool operator==(const FontValue&) const = default;
};
// "Tahoma, 8.25, bold"; the words in any order and case. A name alone, or a size, isn't a font.
std::wstring FontText(const FontValue& font);
std::optional<FontValue> ParseFont(std::wstring_view text);

}  // namespace designer
