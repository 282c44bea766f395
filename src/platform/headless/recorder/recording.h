// What a recorder holds: the calls in a compact form, from which lines are written and calls are made again.
#pragma once

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/headless/recorder/hook.h"

namespace marklet::headless {

// An object as it was when it was handed over: a line must still tell what it was after its deletion.
struct Description {
  enum class Kind : std::uint8_t { kNull, kBitmap, kBrush, kPen, kFont, kAnalysis } kind = Kind::kNull;
  Long width = 0, height = 0;  // of a bitmap; height also of a font
  Long detail = 0;             // depth of a bitmap, weight of a font
  COLORREF colour = 0;
  bool italic = false, underline = false, strikeout = false;
  std::uint8_t charset = 0;
  std::u16string name{};  // of a font; the text of an analysis
};

// A handle: of something that was there before, or the result of a recorded call.
struct HandleWord {
  const void* before;
  std::int32_t made_by;  // the index of that call, or -1
  std::uint32_t description;
};

// One argument of a call. Which member counts follows from the form in the operation's row.
union Word {
  std::int64_t number;
  HandleWord handle;
  struct Rect {
    Long left, top, right, bottom;
  } rect;
  struct Piece {
    std::uint32_t offset, length;
  } piece;  // of the texts, or of the bytes
};

struct RecordedCall {
  Operation operation;
  bool failed;     // was made to fail
  bool null_rect;  // takes a rectangle and was given none
  std::uint32_t first_word;
};

class Recording {
 public:
  // Logs the call; true when it is to fail.
  bool Record(Operation operation, const Argument* arguments, std::size_t count);
  void RecordResult(const void* made);
  void Clear();

  std::vector<RecordedCall> calls;
  std::vector<Word> words;
  std::vector<Description> descriptions;
  std::u16string texts;
  std::string bytes;
  std::map<Operation, int> failures;  // how many good calls are left before the failures begin

 private:
  Word Keep(const Argument& argument);
  Word KeepObject(const GdiObjectHandle* object);
  Word KeepAnalysis(const ScriptStringHandle* analysis);
  HandleWord KeepHandle(const void* handle);
  bool IsToFail(Operation operation);

  std::unordered_map<const void*, std::int32_t> made_;  // living results, by the call that made them
};

}  // namespace marklet::headless
