// CCommonDialog: the platform's dialog that asks for a file to open.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/types.h"

namespace marklet {

// What the dialog takes and gives back. The platform sees all texts in its ANSI code page.
struct OpenFileRecord {
  HWND owner = nullptr;
  std::u16string filter;      // descriptions and patterns in turn, a NUL after each and two at the end
  Long filter_index = 0;      // from 1
  std::u16string file;        // a buffer, NULs up to its end; its size stays
  std::u16string file_title;  // the same
  std::u16string initial_directory, title, default_extension;
  std::uint32_t flags = 0;  // OFN_
};

class OpenFileDialog {
 public:
  virtual ~OpenFileDialog() = default;
  // Shows the dialog and changes the record as the platform does. 1: a file was chosen, 0: none; another
  // value is a failure. Modal: the program may be entered again.
  virtual Long GetOpenFileNameA(OpenFileRecord& record) = 0;
  virtual Long CommDlgExtendedError() = 0;
};

class CCommonDialog {
 public:
  explicit CCommonDialog(OpenFileDialog& platform) : platform_(platform) {}

  // What ShowOpen takes; the first group comes back changed.
  struct Open {
    std::u16string file, file_title;
    bool read_only = false;
    std::u16string filter;  // each "|" and each ":" counts as a NUL
    Long filter_index = 0;
    std::uint32_t flags = 0;

    bool file_must_exist = false, multi_select = false, hide_read_only = false;
    std::u16string initial_directory, title, default_extension;
    HWND owner = nullptr;  // kNoOwner for none
  };
  static inline const HWND kNoOwner = std::bit_cast<HWND>(~std::uintptr_t{0});

  // Whether a file was chosen. The filter is then the pair that was chosen by (FilterEntry); without a choice
  // the texts come back empty, the flags 0 and the index -1.
  bool ShowOpen(Open& open);

  // The text up to its first NUL.
  static std::u16string StripNul(std::u16string_view text) {
    return std::u16string(text.substr(0, text.find(u'\0')));
  }
  // Description, NUL and pattern of the pair at a position, from 1; empty beyond the end.
  static std::u16string FilterEntry(std::u16string_view filter, Long index);

  // The dialog's failure, 0 after none, and what it returned.
  Long LastError() const { return last_error_; }
  Long LastResult() const { return last_result_; }

 private:
  OpenFileDialog& platform_;
  Long last_error_ = 0, last_result_ = 0;
};

}  // namespace marklet
