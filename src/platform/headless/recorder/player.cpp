#include "platform/headless/recorder/player.h"

#include "platform/gdi.h"
#include "platform/headless/recorder/operations.h"

namespace marklet::headless {
namespace {

enum class Leftover { kAnalysis, kContext, kObject };

Leftover KindOf(Operation maker) {
  if (maker == Operation::kScriptStringAnalyse) return Leftover::kAnalysis;
  return maker == Operation::kCreateCompatibleDC ? Leftover::kContext : Leftover::kObject;
}

void Delete(Leftover kind, void* made) {
  switch (kind) {
    case Leftover::kAnalysis:
      ScriptStringFree(static_cast<SCRIPT_STRING_ANALYSIS>(made));
      return;
    case Leftover::kContext:
      DeleteDC(static_cast<HDC>(made));
      return;
    case Leftover::kObject:
      DeleteObject(static_cast<HGDIOBJ>(made));
  }
}

}  // namespace

void Player::Play() {
  for (const RecordedCall& call : recording_.calls) {
    if (call.failed) continue;
    call_ = &call;
    word_ = recording_.words.data() + call.first_word;
    if (const auto again = RowOf(call.operation).again) again(*this);
    if (IsDeletion(call.operation)) Forget(call);
  }
  DeleteLeftovers();
}

void* Player::NextHandle() {
  const HandleWord& handle = NextWord().handle;
  if (handle.made_by < 0) return const_cast<void*>(handle.before);
  return made_[static_cast<std::size_t>(handle.made_by)];
}

void Player::Keep(void* made) {
  // SelectObject passes a handle too; only the calls that make something count.
  if (call_->operation == Operation::kSelectObject) return;
  if (made_.empty()) made_.resize(recording_.calls.size());
  made_[static_cast<std::size_t>(call_ - recording_.calls.data())] = made;
}

void Player::Forget(const RecordedCall& call) {
  const HandleWord& handle = recording_.words[call.first_word].handle;
  if (handle.made_by >= 0) made_[static_cast<std::size_t>(handle.made_by)] = nullptr;
}

// What the recorded program kept is made once more by a replay, and has no owner.
void Player::DeleteLeftovers() {
  // Analyses know their contexts, and contexts hold objects.
  for (const Leftover kind : {Leftover::kAnalysis, Leftover::kContext, Leftover::kObject})
    for (std::size_t i = 0; i < made_.size(); ++i)
      if (made_[i] != nullptr && KindOf(recording_.calls[i].operation) == kind) Delete(kind, made_[i]);
}

}  // namespace marklet::headless
