#include "plumbing/unicode_tooltip.h"

#include <commctrl.h>

#include <algorithm>
#include <bit>
#include <cstddef>

#include "base/blanks.h"
#include "platform/shared/os_tests.h"
#include "platform/win32/common_controls.h"
#include "platform/win32/handles.h"

namespace marklet::plumbing {

using win32::Native;

// As the system's tooltip has always taken it. Later systems know a longer record, whose last field nobody
// here uses.
struct CUnicodeTooltip::ToolInfo {
  UINT size = sizeof(ToolInfo);
  UINT flags = 0;
  ::HWND parent = nullptr;
  UINT_PTR tool = 0;  // its window
  ::RECT rect = {};
  ::HINSTANCE instance = nullptr;
  const wchar_t* text = nullptr;
  LPARAM value = 0;
};

namespace {

constexpr UINT kSetDelayTime = 1027, kRelayEvent = 1031, kGetToolCount = 1037, kSetBackColor = 1043,
               kSetTextColor = 1044, kGetDelayTime = 1045, kGetBackColor = 1046, kSetMaxWidth = 1048,
               kGetMaxWidth = 1049, kSetMargin = 1050, kGetMargin = 1051, kSetTitle = 1057, kAddTool = 1074,
               kDelTool = 1075, kUpdateText = 1081, kEnumTools = 1082;
static_assert(kSetDelayTime == TTM_SETDELAYTIME && kRelayEvent == TTM_RELAYEVENT &&
              kGetToolCount == TTM_GETTOOLCOUNT && kSetBackColor == TTM_SETTIPBKCOLOR &&
              kSetTextColor == TTM_SETTIPTEXTCOLOR && kGetDelayTime == TTM_GETDELAYTIME &&
              kGetBackColor == TTM_GETTIPBKCOLOR && kSetMaxWidth == TTM_SETMAXTIPWIDTH &&
              kGetMaxWidth == TTM_GETMAXTIPWIDTH && kSetMargin == TTM_SETMARGIN &&
              kGetMargin == TTM_GETMARGIN && kSetTitle == TTM_SETTITLEW && kAddTool == TTM_ADDTOOLW &&
              kDelTool == TTM_DELTOOLW && kUpdateText == TTM_UPDATETIPTEXTW && kEnumTools == TTM_ENUMTOOLSW);

constexpr UINT kToolFlags = TTF_IDISHWND | TTF_SUBCLASS | TTF_TRANSPARENT;
static_assert(kToolFlags == 273 && (kToolFlags | TTF_CENTERTIP) == 275);

// The platform's name casts to a type that is ours here.
const auto kTopmost = std::bit_cast<::HWND>(LONG_PTR{-1});

LONG* SideOf(::RECT& rect, Long side) {
  LONG* const sides[] = {&rect.left, &rect.top, &rect.right, &rect.bottom};
  return side >= 0 && side < 4 ? sides[side] : nullptr;
}

}  // namespace

std::u16string TextToFirstNul(std::u16string_view text) {
  if (const std::size_t nul = text.find(u'\0'); nul != text.npos) return std::u16string(text.substr(0, nul));
  return std::u16string(TrimBlanks(text));
}

// --- The window -------------------------------------------------------------------------------------------

CUnicodeTooltip::~CUnicodeTooltip() {
  if (tip_window_) ::DestroyWindow(tip_window_);
}

bool CUnicodeTooltip::Create(::HWND parent) {
  if (!tip_window_) {
    win32::InitCommonControls();
    const DWORD style = TTS_ALWAYSTIP | TTS_NOPREFIX | (balloon_ ? TTS_BALLOON : 0);
    tip_window_ = ::CreateWindowExA(0, "tooltips_class32", nullptr, style, 0, 0, 0, 0, parent, nullptr,
                                    ::GetModuleHandleA(nullptr), nullptr);
  }
  ApplyTitle();
  // The shadow is the class's: every tooltip of the process gets it.
  if (::IsWindow(tip_window_) && IsXPOrLater())
    ::SetClassLongA(tip_window_, GCL_STYLE,
                    static_cast<LONG>(::GetClassLongA(tip_window_, GCL_STYLE) | CS_DROPSHADOW));
  return tip_window_ != nullptr;
}

LRESULT CUnicodeTooltip::Send(UINT message, WPARAM wparam, LPARAM lparam) const {
  return tip_window_ ? ::SendMessageW(tip_window_, message, wparam, lparam) : 0;
}

LRESULT CUnicodeTooltip::Send(UINT message, WPARAM wparam, const void* record) const {
  return Send(message, wparam, reinterpret_cast<LPARAM>(record));
}

// Turned over, not cleared: on a plain tip false makes a balloon.
void CUnicodeTooltip::PutBalloon(bool balloon) {
  balloon_ = balloon;
  if (!tip_window_) return;
  const LONG style = ::GetWindowLongW(tip_window_, GWL_STYLE);
  ::SetWindowLongW(tip_window_, GWL_STYLE, balloon ? style | TTS_BALLOON : style ^ TTS_BALLOON);
}

// --- Title ------------------------------------------------------------------------------------------------

void CUnicodeTooltip::PutTitle(std::u16string_view title) {
  title_ = title;
  ApplyTitle();
}

void CUnicodeTooltip::PutTitleIcon(Long icon) {
  title_icon_ = icon;
  ApplyTitle();
}

void CUnicodeTooltip::ApplyTitle() {
  if (!title_ && title_icon_ == 0) return;
  Send(kSetTitle, static_cast<WPARAM>(title_icon_), title_ ? title_->c_str() : nullptr);
}

// --- Tools ------------------------------------------------------------------------------------------------

// The record is filled anew for each tool: one without a text takes the room for it out of the record.
bool CUnicodeTooltip::FindTool(::HWND tool, ToolInfo& info, std::u16string* text) const {
  static_assert(sizeof info == offsetof(TTTOOLINFOW, lpReserved) &&
                (sizeof(void*) == 8 || sizeof info == 44));
  const Long count = ToolCount();
  for (Long index = 0; index < count; ++index) {
    info = {};
    if (text) {
      text->assign(max_text_length_, u'\0');
      info.text = Native(text->data());
    }
    if (Send(kEnumTools, static_cast<WPARAM>(index), &info) != 0 &&
        info.tool == reinterpret_cast<UINT_PTR>(tool))
      return true;
  }
  return false;
}

bool CUnicodeTooltip::AddTool(::HWND tool, ::HWND parent, std::u16string_view text,
                              std::u16string_view title) {
  tool_text_ = text;
  title_ = title;
  ToolInfo info;
  if (!tip_window_ || FindTool(tool, info)) return false;
  info = {};
  info.flags = kToolFlags | (centered_ ? TTF_CENTERTIP : 0);
  info.parent = parent;
  info.tool = reinterpret_cast<UINT_PTR>(tool);
  ::GetClientRect(tool, &info.rect);
  if (!tool_text_.empty()) info.text = Native(tool_text_.c_str());
  NoteLength(text);
  const bool added = Send(kAddTool, 0, &info) != 0;
  Relay();
  return added;
}

void CUnicodeTooltip::NoteLength(std::u16string_view text) {
  max_text_length_ = std::max(max_text_length_, text.size() + 1);
}

// The one time that anything is relayed: from then on the tooltip watches the tool itself.
void CUnicodeTooltip::Relay() {
  relay_message_.hwnd = tip_window_;
  relay_message_.message = kRelayEvent;
  relay_message_.wParam = 0;
  relay_message_.lParam = WM_LBUTTONDOWN;
  Send(kRelayEvent, 0, &relay_message_);
}

bool CUnicodeTooltip::RemoveTool(::HWND tool) {
  ToolInfo info;
  if (!FindTool(tool, info)) return false;
  Send(kDelTool, 0, &info);
  return true;
}

void CUnicodeTooltip::SetToolText(::HWND tool, std::u16string_view text) {
  ToolInfo info;
  if (FindTool(tool, info)) {
    tool_text_ = text;
    info.text = Native(tool_text_.c_str());
    NoteLength(text);
    Send(kUpdateText, 0, &info);
  }
  ::SetWindowPos(tip_window_, kTopmost, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

std::u16string CUnicodeTooltip::GetToolText(::HWND tool) const {
  ToolInfo info;
  std::u16string text;
  return FindTool(tool, info, &text) ? TextToFirstNul(text) : std::u16string();
}

Long CUnicodeTooltip::ToolCount() const { return static_cast<Long>(Send(kGetToolCount)); }

// --- Attributes -------------------------------------------------------------------------------------------

Long CUnicodeTooltip::BackColor() const { return static_cast<Long>(Send(kGetBackColor)); }
void CUnicodeTooltip::PutBackColor(Long colour) { Send(kSetBackColor, static_cast<std::uint32_t>(colour)); }

// The message that sets the colour is sent here too: reading makes it black and answers with the result of
// the setting.
Long CUnicodeTooltip::TextColor() const { return static_cast<Long>(Send(kSetTextColor)); }
void CUnicodeTooltip::PutTextColor(Long colour) { Send(kSetTextColor, static_cast<std::uint32_t>(colour)); }

Long CUnicodeTooltip::DelayTime(Long which) const {
  return static_cast<Long>(Send(kGetDelayTime, static_cast<WPARAM>(which & 3)));
}
void CUnicodeTooltip::PutDelayTime(Long which, Long milliseconds) {
  Send(kSetDelayTime, static_cast<WPARAM>(which & 3), LPARAM{milliseconds});
}

Long CUnicodeTooltip::Margin(Long side) const {
  ::RECT margin = {};
  Send(kGetMargin, 0, &margin);
  const LONG* const pixels = SideOf(margin, side);
  return pixels ? *pixels : 0;
}

void CUnicodeTooltip::PutMargin(Long side, Long pixels) {
  ::RECT margin = {};
  Send(kGetMargin, 0, &margin);
  if (LONG* const one = SideOf(margin, side)) *one = pixels;
  Send(kSetMargin, 0, &margin);
}

Long CUnicodeTooltip::MaxWidth() const { return static_cast<Long>(Send(kGetMaxWidth)); }

// The address of the width goes out in place of the width.
void CUnicodeTooltip::PutMaxWidth(Long width) {
  const Long sent = width < 1 ? -1 : width;
  Send(kSetMaxWidth, 0, &sent);
}

}  // namespace marklet::plumbing
