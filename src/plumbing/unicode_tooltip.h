// CUnicodeTooltip: a tip window of the system's, for text in any script.
//
// One thread only. Failures give false, 0 or an empty text, and without a window every call but the plain
// fields' does nothing. The window belongs to the object; if its owner window takes it along, the calls go
// into the void.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/types.h"
#include "platform/win32/sdk.h"

namespace marklet::plumbing {

class CUnicodeTooltip {
 public:
  CUnicodeTooltip() = default;
  ~CUnicodeTooltip();
  CUnicodeTooltip(const CUnicodeTooltip&) = delete;
  CUnicodeTooltip& operator=(const CUnicodeTooltip&) = delete;

  // Makes the window, once, owned by the top-level window that `parent` stands in. True when there is one.
  bool Create(::HWND parent);
  ::HWND TipWindow() const { return tip_window_; }

  // Shows `text` while the pointer rests on the window `tool`. False for a tool that is there already, which
  // keeps its text. The title is stored, and shown from the next change of title or icon on. With an empty
  // text nothing is shown until SetToolText.
  bool AddTool(::HWND tool, ::HWND parent, std::u16string_view text, std::u16string_view title);
  bool RemoveTool(::HWND tool);
  // Also brings the tip in front of all windows, whether the tool is known or not.
  void SetToolText(::HWND tool, std::u16string_view text);
  std::u16string GetToolText(::HWND tool) const;
  Long ToolCount() const;

  // A balloon unless said otherwise before Create. Of a window that is there, true sets the style and false
  // turns it over: a plain tip becomes a balloon.
  bool Balloon() const { return balloon_; }
  void PutBalloon(bool balloon);
  // Below the middle of the tool; for tools that are added from then on.
  bool Centered() const { return centered_; }
  void PutCentered(bool centered) { centered_ = centered; }
  std::u16string Title() const { return title_.value_or(u""); }
  void PutTitle(std::u16string_view title);
  Long TitleIcon() const { return title_icon_; }
  void PutTitleIcon(Long icon);

  Long BackColor() const;
  void PutBackColor(Long colour);
  Long TextColor() const;  // not the colour: see there
  void PutTextColor(Long colour);
  // Milliseconds. `which` is one of the platform's TTDT_ numbers; only its two lowest bits count.
  Long DelayTime(Long which) const;
  void PutDelayTime(Long which, Long milliseconds);
  // Pixels, of the left, top, right and bottom side, 0 to 3; 0 for any other side.
  Long Margin(Long side) const;
  void PutMargin(Long side, Long pixels);
  Long MaxWidth() const;
  void PutMaxWidth(Long width);

 private:
  struct ToolInfo;
  LRESULT Send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) const;
  LRESULT Send(UINT message, WPARAM wparam, const void* record) const;
  // The record of a tool, with its text in `text` unless that is null.
  bool FindTool(::HWND tool, ToolInfo& info, std::u16string* text = nullptr) const;
  void ApplyTitle();
  void NoteLength(std::u16string_view text);
  void Relay();

  ::HWND tip_window_ = nullptr;
  std::size_t max_text_length_ = 0;  // of all texts so far, with the NUL
  Long title_icon_ = 0;
  std::u16string tool_text_;  // the last one; kept for the window, which is given its address
  std::optional<std::u16string> title_;
  bool balloon_ = true;
  bool centered_ = false;
  ::MSG relay_message_ = {};
};

// What stands before the first NUL. A text without one loses the blanks at both ends.
std::u16string TextToFirstNul(std::u16string_view text);

}  // namespace marklet::plumbing
