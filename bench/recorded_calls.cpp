#include "recorded_calls.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "platform/gdi.h"
#include "platform/system.h"
#include "platform/text.h"
#include "platform/uniscribe.h"

namespace marklet::bench {
namespace {

using Call = RecordedCalls::Call;
using Contexts = RecordedCalls::Contexts;

// "Name(arguments)", read from left to right.
class Line {
 public:
  explicit Line(const std::string& line)
      : name(line.substr(0, line.find('('))),
        rest_(line.substr(name.size() + 1, line.size() - name.size() - 2)) {}

  std::string name;

  std::string Whole() const { return rest_; }
  // Decimal, or "0x" and hexadecimal; a colour after "#" has red first.
  std::int64_t Number() {
    Skip(",[]");
    const bool is_colour = Skip("#");
    char* end = nullptr;
    const std::int64_t number = std::strtoll(rest_.c_str(), &end, is_colour ? 16 : 0);
    rest_.erase(0, static_cast<std::size_t>(end - rest_.c_str()));
    if (!is_colour) return number;
    const auto rgb = static_cast<unsigned>(number);
    return MakeRgb(rgb >> 16, rgb >> 8, rgb);
  }
  std::string Text() {
    Skip(",\"");
    std::string text = rest_.substr(0, rest_.find('"'));
    rest_.erase(0, text.size() + 1);
    return text;
  }

 private:
  bool Skip(std::string_view marks) {
    const std::size_t count = std::min(rest_.find_first_not_of(marks), rest_.size());
    rest_.erase(0, count);
    return count > 0;
  }

  std::string rest_;
};

// --- Calls whose arguments stand in the line, but for the context
// -------------------------------------------

// An argument as it is kept: read from the line if the line has it.
template <typename Parameter>
struct Argument {
  using Value = std::remove_cvref_t<Parameter>;
  explicit Argument(Line& line) {
    if constexpr (std::is_arithmetic_v<Value>)
      value = static_cast<Value>(line.Number());
    else if constexpr (std::is_same_v<Value, RECT>)
      for (Long* const side : {&value.left, &value.top, &value.right, &value.bottom})
        *side = static_cast<Long>(line.Number());
  }
  Value& For(const Contexts&) { return value; }
  Value value{};
};
template <>
struct Argument<HDC> {
  explicit Argument(Line&) {}
  static HDC For(const Contexts& contexts) { return contexts.Surface(); }
};
template <>
struct Argument<std::string_view> {
  explicit Argument(Line& line) : value(line.Text()) {}
  std::string_view For(const Contexts&) const { return value; }
  std::string value;
};
template <>
struct Argument<std::u16string_view> {
  explicit Argument(Line& line) : value(MultiByteToWideChar(CP_UTF8, line.Text())) {}
  std::u16string_view For(const Contexts&) const { return value; }
  std::u16string value;
};

template <typename Result, typename... Parameters>
Call Plain(Line& line, Result (*function)(Parameters...)) {
  std::tuple<Argument<Parameters>...> arguments{Argument<Parameters>(line)...};
  return [function, arguments = std::move(arguments)](Contexts& contexts) mutable {
    std::apply([&](auto&... argument) { function(argument.For(contexts)...); }, arguments);
  };
}
template <auto function>
Call PlainCall(Line& line) {
  return Plain(line, function);
}

// --- Contexts and objects
// -----------------------------------------------------------------------------------

// Objects have the number of their first mention, by what lines call them.
class Names {
 public:
  explicit Names(Contexts& contexts) : contexts_(contexts) {}
  std::size_t NumberOf(const std::string& name) {
    const auto [found, is_new] = numbers_.try_emplace(name, contexts_.objects.size());
    if (is_new) contexts_.objects.push_back(name.starts_with("font(") ? Font(Line(name)) : nullptr);
    return found->second;
  }

 private:
  // A context's own font has no height.
  static HFONT Font(Line line) {
    LOGFONTW record{};
    record.lfFaceName = MultiByteToWideChar(CP_UTF8, line.Text());
    record.lfHeight = static_cast<Long>(line.Number());
    record.lfWeight = static_cast<Long>(line.Number());
    record.lfItalic = line.Text().find('i') != std::string::npos;
    return record.lfHeight == 0 ? nullptr : CreateFontIndirectW(record);
  }

  Contexts& contexts_;
  std::map<std::string, std::size_t> numbers_;
};

std::string KindOf(const std::string& name) { return name.substr(0, name.find('(')); }

Call Select(Names& names, const Line& line) {
  const std::size_t number = names.NumberOf(line.Whole());
  return [number, kind = KindOf(line.Whole())](Contexts& contexts) {
    const HGDIOBJ object = contexts.objects[number];
    if (!object) {
      SelectObject(contexts.Surface(), contexts.original[kind]);
      return;
    }
    const HGDIOBJ former = SelectObject(contexts.Surface(), object);
    contexts.original.try_emplace(kind, former);
  };
}

Call Delete(Names& names, const Line& line) {
  return [number = names.NumberOf(line.Whole())](Contexts& contexts) {
    DeleteObject(std::exchange(contexts.objects[number], nullptr));
  };
}

Call MakeBitmap(Names& names, Line& line) {
  const auto width = static_cast<Long>(line.Number()), height = static_cast<Long>(line.Number());
  const int depth = static_cast<int>(line.Number());
  const std::string name =
      "bitmap(" + std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(depth) + ")";
  return [number = names.NumberOf(name), width, height, depth](Contexts& contexts) {
    std::uint8_t* bits = nullptr;
    contexts.objects[number] = CreateDIBSection(contexts.Surface(), width, height, depth, bits);
  };
}

Call MakePen(Names& names, Line& line) {
  const auto width = static_cast<Long>(line.Number());
  const std::string text = line.Whole().substr(1);  // after a comma
  return [number = names.NumberOf("pen(" + text + ")"), width, colour = static_cast<COLORREF>(line.Number())](
             Contexts& contexts) { contexts.objects[number] = CreatePen(width, colour); };
}

Call MakeBrush(Names& names, Line& line) {
  const std::size_t number = names.NumberOf("brush(" + line.Whole() + ")");
  return [number, colour = static_cast<COLORREF>(line.Number())](Contexts& contexts) {
    contexts.objects[number] = CreateSolidBrush(colour);
  };
}

Call Copy(Line& line, bool is_first) {
  const Argument<RECT> place(line);  // left, top, width, height
  const Argument<Long> source_x(line), source_y(line);
  const auto rop = static_cast<std::uint32_t>(line.Number());
  return [=](Contexts& contexts) {
    const HDC to = is_first ? contexts.Surface() : contexts.window;
    const HDC from = is_first ? contexts.behind : contexts.Surface();
    const RECT& at = place.value;
    BitBlt(to, at.left, at.top, at.right, at.bottom, from, source_x.value, source_y.value, rop);
  };
}

Call MakeContext() {
  return [](Contexts& contexts) { contexts.surfaces.push_back(CreateCompatibleDC(nullptr)); };
}
Call DeleteContext() {
  return [](Contexts& contexts) {
    DeleteDC(contexts.Surface());
    contexts.surfaces.pop_back();
  };
}

const std::map<std::string_view, Call (*)(Line&)> kPlainCalls = {
    {"DrawTextW", PlainCall<DrawTextW>},
    {"GetCharABCWidthsA", PlainCall<GetCharABCWidthsA>},
    {"GetSysColor", PlainCall<GetSysColor>},
    {"GetTextColor", PlainCall<GetTextColor>},
    {"GetTextExtentPoint32A", PlainCall<GetTextExtentPoint32A>},
    {"GetTextExtentPoint32W", PlainCall<GetTextExtentPoint32W>},
    {"LineTo", PlainCall<LineTo>},
    {"MoveToEx", PlainCall<MoveToEx>},
    {"PixelsOf", PlainCall<PixelsOf>},
    {"ScriptIsComplex", PlainCall<ScriptIsComplex>},
    {"SetBkColor", PlainCall<SetBkColor>},
    {"SetBkMode", PlainCall<SetBkMode>},
    {"SetTextAlign", PlainCall<SetTextAlign>},
    {"SetTextColor", PlainCall<SetTextColor>},
};

Call Parse(Names& names, Line line, bool& is_copied) {
  if (const auto plain = kPlainCalls.find(line.name); plain != kPlainCalls.end()) return plain->second(line);
  if (line.name == "SelectObject") return Select(names, line);
  if (line.name == "DeleteObject") return Delete(names, line);
  if (line.name == "CreateDIBSection") return MakeBitmap(names, line);
  if (line.name == "CreatePen") return MakePen(names, line);
  if (line.name == "CreateSolidBrush") return MakeBrush(names, line);
  if (line.name == "CreateCompatibleDC") return MakeContext();
  if (line.name == "DeleteDC") return DeleteContext();
  if (line.name == "BitBlt") return Copy(line, !std::exchange(is_copied, true));
  throw std::runtime_error("no such call is known: " + line.name);
}

}  // namespace

RecordedCalls::RecordedCalls(const std::vector<std::string>& lines) {
  Names names(contexts_);
  bool is_copied = false;
  for (const std::string& line : lines) calls_.push_back(Parse(names, Line(line), is_copied));
}

RecordedCalls::~RecordedCalls() {
  for (const HGDIOBJ object : contexts_.objects) DeleteObject(object);  // fonts are left
}

void RecordedCalls::MakeAgain(HDC behind, HDC window) {
  contexts_.behind = behind;
  contexts_.window = window;
  for (const Call& call : calls_) call(contexts_);
}

}  // namespace marklet::bench
