#include "platform/headless/recorder/recording.h"

#include "platform/headless/pixels/objects.h"
#include "platform/headless/recorder/operations.h"
#include "platform/headless/text/font.h"
#include "platform/headless/text/script_string.h"
#include "platform/shared/unrecorded.h"

namespace marklet::headless {

constinit thread_local Recording* active_recording = nullptr;

namespace {

Description DescribeFont(const LOGFONTW& font) {
  return {.kind = Description::Kind::kFont,
          .height = font.lfHeight,
          .detail = font.lfWeight,
          .italic = font.lfItalic,
          .underline = font.lfUnderline,
          .strikeout = font.lfStrikeOut,
          .charset = font.lfCharSet,
          .name = font.lfFaceName};
}

Description DescribeBitmap(const GdiObjectHandle& object) {
  const Surface& surface = static_cast<const Bitmap&>(object).surface;
  if (object.stock) return {.kind = Description::Kind::kBitmap, .width = 1, .height = 1, .detail = 1};
  return {.kind = Description::Kind::kBitmap,
          .width = surface.width,
          .height = surface.height,
          .detail = surface.bytes_per_pixel * 8};
}

Description Describe(const GdiObjectHandle* object) {
  if (object == nullptr) return {};
  switch (object->kind) {
    case GdiObjectHandle::Kind::kBitmap:
      return DescribeBitmap(*object);
    case GdiObjectHandle::Kind::kBrush:
      return {.kind = Description::Kind::kBrush, .colour = static_cast<const Brush*>(object)->colour};
    case GdiObjectHandle::Kind::kPen:
      return {.kind = Description::Kind::kPen, .colour = static_cast<const Pen*>(object)->colour};
    case GdiObjectHandle::Kind::kFont:
      return DescribeFont(static_cast<const Font*>(object)->record);
  }
  return {};
}

template <typename Pool, typename View>
Word KeepText(Pool& pool, View text) {
  Word word;
  word.piece = {static_cast<std::uint32_t>(pool.size()), static_cast<std::uint32_t>(text.size())};
  pool.append(text);
  return word;
}

}  // namespace

bool RecordCall(Operation operation, const Argument* arguments, std::size_t count) {
  return unrecorded_depth == 0 && active_recording->Record(operation, arguments, count);
}

void RecordResult(const void* made) {
  if (unrecorded_depth == 0) active_recording->RecordResult(made);
}

bool Recording::Record(Operation operation, const Argument* arguments, std::size_t count) {
  RecordedCall call{operation, IsToFail(operation), false, static_cast<std::uint32_t>(words.size())};
  for (std::size_t i = 0; i < count; ++i) {
    const Argument& argument = arguments[i];
    call.null_rect |= argument.kind == Argument::Kind::kRect && argument.rect == nullptr;
    words.push_back(Keep(argument));
  }
  calls.push_back(call);
  if (IsDeletion(operation) && !call.failed) made_.erase(arguments[0].handle);
  return call.failed;
}

void Recording::RecordResult(const void* made) {
  if (made != nullptr) made_[made] = static_cast<std::int32_t>(calls.size() - 1);
}

HandleWord Recording::KeepHandle(const void* handle) {
  const auto found = made_.find(handle);
  if (found != made_.end()) return {nullptr, found->second, 0};
  return {handle, -1, 0};
}

Word Recording::KeepObject(const GdiObjectHandle* object) {
  Word word;
  word.handle = KeepHandle(object);
  word.handle.description = static_cast<std::uint32_t>(descriptions.size());
  descriptions.push_back(Describe(object));
  return word;
}

// Its text as far as it was laid out: all of it in the line that is drawn.
Word Recording::KeepAnalysis(const ScriptStringHandle* analysis) {
  Word word;
  word.handle = KeepHandle(analysis);
  word.handle.description = static_cast<std::uint32_t>(descriptions.size());
  Description description;
  if (analysis != nullptr) {
    description.kind = Description::Kind::kAnalysis;
    description.name = analysis->Text();
  }
  descriptions.push_back(std::move(description));
  return word;
}

Word Recording::Keep(const Argument& argument) {
  Word word;
  word.number = 0;
  switch (argument.kind) {
    case Argument::Kind::kNumber:
      word.number = argument.number;
      return word;
    case Argument::Kind::kContext:
      word.handle = KeepHandle(argument.handle);
      return word;
    case Argument::Kind::kObject:
      return KeepObject(static_cast<const GdiObjectHandle*>(argument.handle));
    case Argument::Kind::kAnalysis:
      return KeepAnalysis(static_cast<const ScriptStringHandle*>(argument.handle));
    case Argument::Kind::kRect:
      if (argument.rect != nullptr)
        word.rect = {argument.rect->left, argument.rect->top, argument.rect->right, argument.rect->bottom};
      return word;
    case Argument::Kind::kText:
      return KeepText(texts, argument.text);
    case Argument::Kind::kBytes:
      return KeepText(bytes, argument.bytes);
    case Argument::Kind::kFont:
      word.handle = {nullptr, -1, static_cast<std::uint32_t>(descriptions.size())};
      descriptions.push_back(DescribeFont(*argument.font));
      return word;
  }
  return word;
}

bool Recording::IsToFail(Operation operation) {
  if (failures.empty()) return false;
  const auto found = failures.find(operation);
  if (found == failures.end()) return false;
  return found->second == 0 || found->second-- == 0;
}

void Recording::Clear() {
  calls.clear();
  words.clear();
  descriptions.clear();
  texts.clear();
  bytes.clear();
  made_.clear();
}

}  // namespace marklet::headless
