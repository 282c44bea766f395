// Recorded calls made again.
#include <array>
#include <tuple>
#include <type_traits>

#include "platform/gdi.h"
#include "platform/headless/recorder/recording_state.h"
#include "platform/host_picture.h"
#include "platform/icon.h"
#include "platform/registry.h"
#include "platform/system.h"
#include "platform/uniscribe.h"

namespace marklet::headless {
namespace {

// Walks through a recording and hands out arguments in their types.
class Player {
 public:
  explicit Player(const Recording& recording) : recording_(recording) {}
  void Play();

  template <typename Parameter>
  auto Next();

  void Pass(HDC made) { Keep(made); }
  void Pass(HGDIOBJ made) { Keep(made); }
  template <typename Result>
  void Pass(const Result&) {}

 private:
  const Word& NextWord() { return *word_++; }
  void* NextHandle();
  void Keep(void* made);
  void Forget(const RecordedCall& call);
  void DeleteLeftovers();

  const Recording& recording_;
  const RecordedCall* call_ = nullptr;
  const Word* word_ = nullptr;
  std::vector<void*> made_;  // results by call, from the first call that made something
};

// A null or a rectangle, where a call takes either.
struct OptionalRect {
  RECT rect;
  bool null;
  // NOLINTNEXTLINE(google-explicit-constructor): it is passed on as the argument
  operator const RECT*() const { return null ? nullptr : &rect; }
};

// How the arguments of a parameter's type are held while the call runs. Types that only carry results are
// made up here.
template <typename Parameter>
auto Player::Next() {
  using Type = std::remove_cvref_t<Parameter>;
  if constexpr (std::is_same_v<Type, HDC> || std::is_same_v<Type, HGDIOBJ>) {
    return static_cast<Type>(NextHandle());
  } else if constexpr (std::is_same_v<Type, RECT>) {
    const Word::Rect& rect = NextWord().rect;
    return RECT{rect.left, rect.top, rect.right, rect.bottom};
  } else if constexpr (std::is_same_v<Type, const RECT*>) {
    const Word::Rect& rect = NextWord().rect;
    return OptionalRect{{rect.left, rect.top, rect.right, rect.bottom}, call_->null_rect};
  } else if constexpr (std::is_same_v<Type, std::u16string_view>) {
    const Word::Piece piece = NextWord().piece;
    return std::u16string_view(recording_.texts.data() + piece.offset, piece.length);
  } else if constexpr (std::is_same_v<Type, std::string_view>) {
    const Word::Piece piece = NextWord().piece;
    return std::string_view(recording_.bytes.data() + piece.offset, piece.length);
  } else if constexpr (std::is_same_v<Type, LOGFONTW>) {
    const Description& font = recording_.descriptions[NextWord().handle.description];
    return LOGFONTW{font.height,    font.detail,  font.italic, font.underline,
                    font.strikeout, font.charset, font.name};
  } else if constexpr (std::is_arithmetic_v<Type>) {
    return static_cast<Type>(NextWord().number);
  } else {
    return Type{};
  }
}

using Repeat = void (*)(Player&);

template <typename Result, typename... Parameters>
void CallAgain(Player& player, Result (*function)(Parameters...)) {
  std::tuple<decltype(player.template Next<Parameters>())...> held{player.template Next<Parameters>()...};
  player.Pass(std::apply(
      [function](auto&... arguments) { return function(static_cast<Parameters&&>(arguments)...); }, held));
}

template <auto kFunction>
void Again(Player& player) {
  CallAgain(player, kFunction);
}

constexpr std::array<Repeat, static_cast<std::size_t>(Operation::kCount)> kRepeats = {
    Again<CreateCompatibleDC>,
    Again<DeleteDC>,
    Again<CreateDIBSection>,
    Again<SelectObject>,
    Again<DeleteObject>,
    Again<BitBlt>,
    Again<AlphaBlend>,
    Again<CreateSolidBrush>,
    Again<FillRect>,
    Again<CreatePen>,
    Again<MoveToEx>,
    Again<LineTo>,
    Again<DrawFocusRect>,
    Again<DrawEdge>,
    Again<PixelsOf>,
    Again<GetObjectA>,
    Again<CreateFontIndirectW>,
    Again<PixelsPerInch>,
    Again<SetTextColor>,
    Again<GetTextColor>,
    Again<SetBkColor>,
    Again<SetBkMode>,
    Again<SetTextAlign>,
    Again<GetTextExtentPoint32W>,
    Again<GetTextExtentPoint32A>,
    Again<GetCharABCWidthsA>,
    Again<DrawTextW>,
    Again<DrawTextA>,
    Again<TextOutW>,
    Again<ExtTextOutW>,
    Again<GetSysColor>,
    Again<ScriptIsComplex>,
    Again<LoadPicture>,
    Again<RenderPicture>,
    Again<MessageBoxW>,
    Again<SetStretchBltMode>,
    Again<StretchBlt>,
    Again<PictureHandle>,
    Again<CreateIconIndirect>,
    Again<DestroyIcon>,
    Again<OleCreatePictureIndirect>,
    Again<RegOpenKeyExA>,
    Again<RegQueryValueExA>,
    Again<RegCloseKey>,
};

void Player::Play() {
  for (const RecordedCall& call : recording_.calls) {
    if (call.failed) continue;
    call_ = &call;
    word_ = recording_.words.data() + call.first_word;
    kRepeats[static_cast<std::size_t>(call.operation)](*this);
    if (call.operation == Operation::kDeleteObject || call.operation == Operation::kDeleteDC) Forget(call);
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
  const auto delete_if = [this](bool contexts) {
    for (std::size_t i = 0; i < made_.size(); ++i) {
      if (made_[i] == nullptr) continue;
      const bool is_context = recording_.calls[i].operation == Operation::kCreateCompatibleDC;
      if (is_context != contexts) continue;
      is_context ? DeleteDC(static_cast<HDC>(made_[i])) : DeleteObject(static_cast<HGDIOBJ>(made_[i]));
    }
  };
  delete_if(true);
  delete_if(false);
}

}  // namespace

void ReplayCalls(const Recording& recording) { Player(recording).Play(); }

}  // namespace marklet::headless
