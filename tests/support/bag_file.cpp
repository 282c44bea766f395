#include "support/bag_file.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

namespace marklet::testing {
namespace {

void Require(bool good) {
  if (!good) throw std::runtime_error("a line of a bag's file can't be read");
}

// One line, read from left to right.
class Line {
 public:
  explicit Line(const std::string& text) : text_(text) {}

  std::string Word() {
    std::string word;
    text_ >> word;
    Require(!word.empty());
    return word;
  }
  std::int32_t Number() {
    std::int32_t number = 0;
    Require(static_cast<bool>(text_ >> number));
    return number;
  }
  std::int32_t Number(const char* label) {
    Require(Word() == label);
    return Number();
  }
  std::u16string Text() {
    std::u16string text;
    text_ >> std::ws;
    Require(text_.get() == '"');
    for (int ch = text_.get(); ch != '"'; ch = text_.get()) {
      Require(ch != std::char_traits<char>::eof());
      text += ch == '\\' ? Escaped() : static_cast<char16_t>(ch);
    }
    return text;
  }
  ByteArray Array() {
    ByteArray array;
    std::istringstream bounds(Word());
    do {
      ByteArray::Bound bound;
      char colon = 0;
      Require(static_cast<bool>(bounds >> bound.lower >> colon >> bound.count) && colon == ':');
      array.bounds.push_back(bound);
    } while (bounds.get() == ',');
    std::string digits;
    text_ >> digits;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
      array.bytes.push_back(static_cast<std::uint8_t>(std::stoul(digits.substr(i, 2), nullptr, 16)));
    return array;
  }
  FontInFile Font() {
    FontInFile font;
    font.name = Text();
    font.size = Number("size");
    font.weight = Number("weight");
    font.italic = Number("italic") != 0;
    font.underline = Number("underline") != 0;
    font.strikethrough = Number("strikethrough") != 0;
    font.charset = static_cast<std::uint8_t>(Number("charset"));
    return font;
  }
  void End() {
    text_ >> std::ws;
    Require(text_.eof());
  }

 private:
  char16_t Escaped() {
    std::string digits(4, '0');
    Require(text_.get() == 'u' && text_.read(digits.data(), 4));
    return static_cast<char16_t>(std::stoul(digits, nullptr, 16));
  }

  std::istringstream text_;
};

BagFileEntry ReadLine(const std::string& text) {
  Line line(text);
  BagFileEntry entry;
  entry.name = line.Word();
  const std::string type = line.Word();
  if (type == "I4")
    entry.value = line.Number();
  else if (type == "BOOL")
    entry.value = line.Word() == "True";
  else if (type == "BSTR")
    entry.value = line.Text();
  else if (type == "BYTES")
    entry.value = line.Array();
  else if (type == "OBJ")
    entry.value = line.Font();
  else
    Require(false);
  line.End();
  return entry;
}

}  // namespace

std::vector<BagFileEntry> ReadBagFile(const std::filesystem::path& path) {
  std::ifstream file(path);
  Require(static_cast<bool>(file));
  std::vector<BagFileEntry> entries;
  for (std::string line; std::getline(file, line);) entries.push_back(ReadLine(line));
  return entries;
}

}  // namespace marklet::testing
