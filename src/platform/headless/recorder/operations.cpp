#include "platform/headless/recorder/operations.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <type_traits>

#include "platform/gdi.h"
#include "platform/headless/recorder/player.h"
#include "platform/host_picture.h"
#include "platform/icon.h"
#include "platform/locale.h"
#include "platform/non_client_metrics.h"
#include "platform/registry.h"
#include "platform/system.h"
#include "platform/theme.h"
#include "platform/uniscribe.h"

namespace marklet::headless {
namespace {

template <auto kFunction>
void Again(Player& player) {
  [&player]<typename Result, typename... Parameters>(Result (*function)(Parameters...)) {
    std::tuple<decltype(player.Next<Parameters>())...> held{player.Next<Parameters>()...};
    player.Pass(std::apply(
        [function](auto&... arguments) { return function(static_cast<Parameters&&>(arguments)...); }, held));
  }(kFunction);
}

// The letters that may stand for a parameter; none for what isn't recorded.
template <typename Parameter>
constexpr std::string_view LettersFor() {
  using Type = std::remove_cvref_t<Parameter>;
  if constexpr (std::is_same_v<Type, HDC>) return "-";
  if constexpr (std::is_same_v<Type, HGDIOBJ> || std::is_same_v<Type, LOGFONTW>) return "o";
  if constexpr (std::is_same_v<Type, SCRIPT_STRING_ANALYSIS>) return "a";
  if constexpr (std::is_same_v<Type, RECT> || std::is_same_v<Type, const RECT*>) return "r";
  if constexpr (std::is_same_v<Type, std::u16string_view>) return "t";
  if constexpr (std::is_same_v<Type, std::string_view>) return "b";
  if constexpr (std::is_arithmetic_v<Type>) return "dxc";
  return {};
}

template <typename Result, typename... Parameters>
consteval bool Fits(std::string_view form, Result (*)(Parameters...)) {
  std::size_t used = 0;
  const auto takes = [&](std::string_view letters) {
    return letters.empty() || (used < form.size() && letters.find(form[used++]) != letters.npos);
  };
  return (takes(LettersFor<Parameters>()) && ...) && used == form.size();
}

// Doesn't compile where the form isn't one for the function.
template <typename Function>
consteval std::string_view FormFor(Function* function, std::string_view form) {
  return Fits(form, function) ? form : throw "the form has other letters than the function parameters";
}

// Enumerator, name and function of a row are one word. A replay makes AGAIN what it can; what works on a
// picture, an icon, a key or a theme, which a recording doesn't hold, is made ONCE, by the program.
#define ONCE(name, form) \
  OperationRow { Operation::k##name, #name, FormFor(name, form), nullptr }
#define AGAIN(name, form) \
  OperationRow { Operation::k##name, #name, FormFor(name, form), Again<name> }

constexpr std::array<OperationRow, static_cast<std::size_t>(Operation::kCount)> kOperations = {
    AGAIN(CreateCompatibleDC, "-"),
    AGAIN(DeleteDC, "-"),
    AGAIN(CreateDIBSection, "-ddd"),
    AGAIN(SelectObject, "-o"),
    AGAIN(DeleteObject, "o"),
    AGAIN(PixelsOf, "-"),
    AGAIN(BitBlt, "-dddd-ddx"),
    AGAIN(SetStretchBltMode, "-d"),
    AGAIN(StretchBlt, "-dddd-ddddx"),
    AGAIN(AlphaBlend, "-dddd-dddddd"),
    AGAIN(CreateSolidBrush, "c"),
    AGAIN(FillRect, "-ro"),
    AGAIN(CreatePen, "dc"),
    AGAIN(MoveToEx, "-dd"),
    AGAIN(LineTo, "-dd"),
    AGAIN(DrawFocusRect, "-r"),
    AGAIN(DrawEdge, "-rxx"),
    AGAIN(GetObjectA, "o"),
    AGAIN(CreateFontIndirectW, "o"),
    AGAIN(PixelsPerInch, "-"),
    AGAIN(SetTextColor, "-c"),
    AGAIN(GetTextColor, "-"),
    AGAIN(SetBkColor, "-c"),
    AGAIN(SetBkMode, "-d"),
    AGAIN(SetTextAlign, "-x"),
    AGAIN(GetTextExtentPoint32W, "-t"),
    AGAIN(GetTextExtentPoint32A, "-bd"),
    AGAIN(GetCharABCWidthsA, "-d"),
    AGAIN(DrawTextW, "-trx"),
    AGAIN(DrawTextA, "-brx"),
    AGAIN(TextOutW, "-ddt"),
    AGAIN(ExtTextOutW, "-ddxrt"),
    AGAIN(ScriptIsComplex, "tx"),
    AGAIN(ScriptStringAnalyse, "-txd"),
    AGAIN(ScriptStringFree, "a"),
    AGAIN(ScriptString_pcOutChars, "a"),
    AGAIN(ScriptString_pSize, "a"),
    AGAIN(ScriptString_pLogAttr, "a"),
    AGAIN(ScriptStringOut, "addxrddd"),
    AGAIN(LoadPicture, "t"),
    ONCE(RenderPicture, "-"),
    ONCE(PictureHandle, ""),
    AGAIN(CreateIconIndirect, "oo"),
    ONCE(DestroyIcon, ""),
    ONCE(OleCreatePictureIndirect, ""),
    ONCE(RegOpenKeyExA, "xb"),
    ONCE(RegQueryValueExA, "bd"),
    ONCE(RegCloseKey, ""),
    ONCE(OpenThemeData, "t"),
    ONCE(GetCurrentThemeName, ""),
    ONCE(CloseThemeData, ""),
    AGAIN(GetSysColor, "d"),
    AGAIN(MessageBoxW, "ttx"),
    AGAIN(IsValidLocale, "dx"),
    ONCE(SystemParametersInfoA, "ddx"),
};

#undef AGAIN
#undef ONCE

consteval bool EachStandsAtItsOperation() {
  for (std::size_t i = 0; i < kOperations.size(); ++i)
    if (static_cast<std::size_t>(kOperations[i].operation) != i) return false;
  return true;
}
static_assert(EachStandsAtItsOperation());

}  // namespace

const OperationRow& RowOf(Operation operation) { return kOperations[static_cast<std::size_t>(operation)]; }

std::optional<Operation> OperationNamed(std::string_view name) {
  const auto found = std::ranges::find(kOperations, name, &OperationRow::name);
  return found == kOperations.end() ? std::nullopt : std::optional(found->operation);
}

}  // namespace marklet::headless
