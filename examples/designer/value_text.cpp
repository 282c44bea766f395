#include "value_text.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace designer {
namespace {

constexpr std::uint32_t kSystemColour = 0x80000000;

// By their numbers.
constexpr const wchar_t* kSystemColours[] = {L"Scroll bar",
                                             L"Desktop",
                                             L"Active title bar",
                                             L"Inactive title bar",
                                             L"Menu bar",
                                             L"Window",
                                             L"Window frame",
                                             L"Menu text",
                                             L"Window text",
                                             L"Active title bar text",
                                             L"Active border",
                                             L"Inactive border",
                                             L"Application workspace",
                                             L"Highlight",
                                             L"Highlight text",
                                             L"Button face",
                                             L"Button shadow",
                                             L"Disabled text",
                                             L"Button text",
                                             L"Inactive title bar text",
                                             L"Button highlight",
                                             L"Button dark shadow",
                                             L"Button light shadow",
                                             L"ToolTip text",
                                             L"ToolTip"};

wchar_t Lower(wchar_t letter) {
  return letter >= L'A' && letter <= L'Z' ? static_cast<wchar_t>(letter + (L'a' - L'A')) : letter;
}

bool SameWord(std::wstring_view one, std::wstring_view other) {
  return std::ranges::equal(one, other, {}, Lower, Lower);
}

std::wstring_view Trimmed(std::wstring_view text) {
  constexpr std::wstring_view kBlanks = L" \t\r\n";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::optional<int> Digit(wchar_t letter, int base) {
  const wchar_t lower = Lower(letter);
  int value = base;
  if (lower >= L'0' && lower <= L'9') value = lower - L'0';
  if (lower >= L'a' && lower <= L'f') value = lower - L'a' + 10;
  return value < base ? std::optional<int>(value) : std::nullopt;
}

// Digits and nothing else, up to what 32 bits hold.
std::optional<std::uint32_t> ParseDigits(std::wstring_view text, int base) {
  std::uint64_t value = 0;
  for (const wchar_t letter : text) {
    const auto digit = Digit(letter, base);
    if (!digit) return std::nullopt;
    value = value * static_cast<unsigned>(base) + static_cast<unsigned>(*digit);
    if (value > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
  }
  return text.empty() ? std::nullopt : std::optional(static_cast<std::uint32_t>(value));
}

constexpr std::uint32_t Swapped(std::uint32_t colour) {
  return (colour & 255) << 16 | (colour & 0xFF00) | (colour >> 16 & 255);
}

std::wstring Hexadecimal(std::uint32_t value, int digits) {
  constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring text;
  for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) text += kDigits[value >> shift & 15];
  return text;
}

struct FontWord {
  const wchar_t* word;
  bool FontValue::*flag;
};
constexpr FontWord kFontWords[] = {{L"bold", &FontValue::bold},
                                   {L"italic", &FontValue::italic},
                                   {L"underline", &FontValue::underline},
                                   {L"strikethrough", &FontValue::strikethrough}};

// "8.25" as 825; more than two places are cut.
std::optional<int> ParseHundredths(std::wstring_view text) {
  constexpr int kMostPoints = 1000;
  const std::size_t point = std::min(text.find(L'.'), text.size());
  std::wstring places(text.substr(std::min(point + 1, text.size())));
  places = (places + L"00").substr(0, 2);
  const auto whole = ParseDigits(text.substr(0, point), 10), part = ParseDigits(places, 10);
  if (!whole || !part || *whole > kMostPoints) return std::nullopt;
  const int result = static_cast<int>(*whole * 100 + *part);
  return result > 0 ? std::optional(result) : std::nullopt;
}

std::wstring HundredthsText(int hundredths) {
  std::wstring text = std::to_wstring(hundredths / 100);
  if (const int rest = hundredths % 100; rest != 0) {
    text += L'.' + std::to_wstring(rest / 10);
    if (rest % 10 != 0) text += std::to_wstring(rest % 10);
  }
  return text;
}

std::vector<std::wstring_view> Parts(std::wstring_view text) {
  std::vector<std::wstring_view> parts;
  while (true) {
    const std::size_t comma = text.find(L',');
    parts.push_back(Trimmed(text.substr(0, comma)));
    if (comma == std::wstring_view::npos) return parts;
    text.remove_prefix(comma + 1);
  }
}

}  // namespace

std::optional<int> ParseNumber(std::wstring_view text) {
  std::wstring_view digits = Trimmed(text);
  const bool negative = digits.starts_with(L'-');
  if (negative) digits.remove_prefix(1);
  const auto value = ParseDigits(digits, 10);
  constexpr std::int64_t kMost = std::numeric_limits<int>::max();
  if (!value || *value > kMost + (negative ? 1 : 0)) return std::nullopt;
  return static_cast<int>(negative ? -std::int64_t{*value} : std::int64_t{*value});
}

std::wstring TruthText(bool truth) { return truth ? L"True" : L"False"; }

std::optional<bool> ParseTruth(std::wstring_view text) {
  for (const bool truth : {false, true})
    if (SameWord(Trimmed(text), TruthText(truth))) return truth;
  return std::nullopt;
}

std::wstring ChoiceText(std::span<const Choice> choices, int value) {
  const auto found = std::ranges::find(choices, value, &Choice::value);
  return found == choices.end() ? std::to_wstring(value) : found->name;
}

std::optional<int> ParseChoice(std::span<const Choice> choices, std::wstring_view text) {
  for (const Choice& choice : choices)
    if (SameWord(choice.name, Trimmed(text))) return choice.value;
  return ParseNumber(text);
}

std::wstring ColourText(std::uint32_t colour) {
  const std::uint32_t number = colour & ~kSystemColour;
  if (colour & kSystemColour && number < std::size(kSystemColours)) return kSystemColours[number];
  return colour <= 0xFFFFFF ? L'#' + Hexadecimal(Swapped(colour), 6) : L"&H" + Hexadecimal(colour, 8);
}

std::optional<std::uint32_t> ParseColour(std::wstring_view text) {
  std::wstring_view rest = Trimmed(text);
  for (std::uint32_t i = 0; i < std::size(kSystemColours); ++i)
    if (SameWord(rest, kSystemColours[i])) return kSystemColour | i;
  if (rest.starts_with(L'#') && rest.size() == 7) {
    const auto value = ParseDigits(rest.substr(1), 16);
    return value ? std::optional(Swapped(*value)) : std::nullopt;
  }
  if (rest.size() > 2 && SameWord(rest.substr(0, 2), L"&h")) {
    rest.remove_prefix(2);
    if (rest.ends_with(L'&')) rest.remove_suffix(1);
    return ParseDigits(rest, 16);
  }
  return std::nullopt;
}

std::vector<std::wstring> SystemColourNames() {
  return {std::begin(kSystemColours), std::end(kSystemColours)};
}

std::wstring FontText(const FontValue& font) {
  std::wstring text = font.name + L", " + HundredthsText(font.hundredths);
  for (const FontWord& word : kFontWords)
    if (font.*word.flag) text += std::wstring(L", ") + word.word;
  return text;
}

std::optional<FontValue> ParseFont(std::wstring_view text) {
  const std::vector<std::wstring_view> parts = Parts(text);
  if (parts.size() < 2 || parts[0].empty()) return std::nullopt;
  const auto size = ParseHundredths(parts[1]);
  if (!size) return std::nullopt;
  FontValue font;
  font.name = parts[0];
  font.hundredths = *size;
  for (std::size_t i = 2; i < parts.size(); ++i) {
    const auto word =
        std::ranges::find_if(kFontWords, [&](const FontWord& w) { return SameWord(w.word, parts[i]); });
    if (word == std::end(kFontWords)) return std::nullopt;
    font.*word->flag = true;
  }
  return font;
}

}  // namespace designer
