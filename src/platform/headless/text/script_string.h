// An analysis behind its handle. What it must answer is told in platform/uniscribe.h.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/headless/text/script_line.h"
#include "platform/types.h"
#include "platform/uniscribe.h"

namespace marklet {

struct ScriptStringHandle {
 public:
  // The text mustn't be empty.
  ScriptStringHandle(HDC dc, std::u16string_view text, std::uint32_t flags, Long width);

  const Long& OutChars() const { return out_chars_; }
  const SIZE& Size() const { return size_; }
  std::u16string_view Text() const { return text_; }  // as far as it was looked at
  const std::uint8_t* LogAttrs();
  bool Draw(Long x, Long y, std::uint32_t options, const RECT* clip);

 private:
  bool Has(std::uint32_t flag) const { return (flags_ & flag) != 0; }
  headless::ScriptLine LaidOut(std::u16string_view text) const;
  void FindFit(std::u16string_view text);
  std::size_t FittingUnits() const;
  bool FitsWhenCut(std::size_t units) const;
  void DrawLine(const headless::Box& clip, std::int64_t left, std::int64_t top);

  const HDC dc_;
  const std::shared_ptr<headless::Face> face_;
  const bool underlined_, struck_out_;
  const std::uint32_t flags_;
  const Long width_;
  std::u16string text_;        // what was laid out
  headless::ScriptLine line_;  // of the text
  std::size_t drawn_ = 0;      // code units
  Long out_chars_ = 0;
  SIZE size_;
  std::vector<std::uint8_t> attributes_;  // once they were asked for
};

}  // namespace marklet
