// The control's page for images in a frame of the tests' own, and what stands in for its dialog and its
// boxes.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "activex/import_patch.h"
#include "activex/picture.h"
#include "activex/server.h"

namespace ocx_test {

constexpr GUID kPageId = {0xE7111604, 0x8459, 0x4582, {0xBA, 0xD0, 0x28, 0x91, 0x5B, 0x59, 0xAB, 0x15}};

// The numbers of the page's controls.
enum PageItem {
  kPrevious = 100,
  kNext,
  kDeleteAll,
  kDeleteIcon,
  kStrip,
  kKey,
  kBrowse,
  kKeyLabel,
  kBrowseLabel,
  kStripLabel,
};

class PageSite;

class PageHost {
 public:
  explicit PageHost(HMODULE server = Server::Get().Module());
  ~PageHost();
  PageHost(const PageHost&) = delete;
  PageHost& operator=(const PageHost&) = delete;

  // Shows the page with the object.
  void Open(IUnknown* object, RECT position = {0, 0, 365, 240});
  void Select(IUnknown* object);  // null: nothing is selected any more
  void Close();                   // as a frame does that closes

  IPropertyPage2* Page() const { return page_.Get(); }
  void DropPage() { page_.Reset(); }
  HWND Frame() const { return frame_; }
  HWND Window() const { return GetWindow(frame_, GW_CHILD); }
  HWND Item(int item) const { return GetDlgItem(Window(), item); }

  // The user's input.
  void Type(const std::wstring& text);  // at the end of the key
  void Press(int button);
  void PressStrip(int x, UINT message = WM_LBUTTONDOWN);
  HRESULT Key(WPARAM key);  // to the window with the focus, by way of TranslateAccelerator

  bool IsOn(int item) const { return IsWindowEnabled(Item(item)) != FALSE; }
  std::wstring KeyText() const { return TextOf(Item(kKey)); }
  static std::wstring TextOf(HWND window);
  RECT Place(int item) const;  // in the page
  // What the strip shows, inside its edge.
  std::unique_ptr<Picture> Strip() const;
  // The page as it is on the screen.
  std::unique_ptr<Picture> Look() const;

  std::vector<DWORD> statuses;  // what the page told its site
  std::function<void()> on_status;

 private:
  HWND frame_;
  PageSite* site_;
  ComPtr<IPropertyPage2> page_;
};

// While it lives, the server's dialog for files and its boxes are answered here.
class PageAnswers {
 public:
  explicit PageAnswers(HMODULE server = Server::Get().Module());
  ~PageAnswers();
  PageAnswers(const PageAnswers&) = delete;
  PageAnswers& operator=(const PageAnswers&) = delete;

  std::string file;  // empty: the dialog is cancelled
  int box_answer = IDNO;
  std::function<void()> on_dialog, on_box;

  struct Dialog {
    HWND owner;
    std::string filter, title, extension;
    DWORD flags, filter_index, file_room;
  };
  struct Box {
    std::wstring text, title;
    UINT style;
  };
  std::vector<Dialog> dialogs;
  std::vector<Box> boxes;
  // Pixels per inch of all windows; 0: as the system says. Ask a server that was never asked before.
  static UINT per_inch;
  static bool has_arrow_font;

 private:
  std::optional<ImportPatch> patch_;
};

}  // namespace ocx_test
