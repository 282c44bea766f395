// The sample designer in its window, and the hands of a user on it.
#pragma once

#include "examples/designer/commands.h"
#include "examples/designer/designer.h"

// Their headers undo macros that those above need.
#include <algorithm>
#include <cstdio>

#include "activex/server.h"

namespace ocx_test {

using designer::Element;
using designer::PropertyGrid;

// What the user would have chosen in the system's dialogs.
class Answers final : public designer::Prompts {
 public:
  std::optional<std::wstring> FileToOpen(HWND) override { return file; }
  std::optional<std::wstring> FileToSave(HWND, const std::wstring&) override { return file; }
  std::optional<COLORREF> Colour(HWND, COLORREF) override { return colour; }
  std::optional<designer::FontValue> Font(HWND, const designer::FontValue&) override { return font; }
  designer::Answer Ask(HWND, const std::wstring& question) override {
    asked.push_back(question);
    return answer;
  }
  void Tell(HWND, const std::wstring& text) override { told.push_back(text); }

  std::optional<std::wstring> file;
  std::optional<COLORREF> colour;
  std::optional<designer::FontValue> font;
  designer::Answer answer = designer::Answer::Cancel;
  std::vector<std::wstring> asked, told;
};

// A designer in its window, and the hands on it.
class Bench {
 public:
  // Wine waits two seconds for a window manager when a window with a title goes, or one that was activated.
  explicit Bench(int per_inch = 96, std::vector<designer::Tool> tools = {{kClassId, L"Marklet"}})
      : designer_(std::in_place, answers, std::move(tools),
                  designer::Designer::Appearance{per_inch, WS_POPUP}, [this] { closed = true; }) {
    ShowWindow(Get().Window(), SW_SHOWNOACTIVATE);
    PumpMessages();
  }

  designer::Designer& Get() { return *designer_; }
  void End() { designer_.reset(); }
  void Do(int command) { SendMessageW(Get().Window(), WM_COMMAND, static_cast<WPARAM>(command), 0); }
  Element& Place() {
    Do(designer::kPlace);
    return *Get().Form().Elements().back();
  }
  const std::vector<std::unique_ptr<Element>>& Controls() { return Get().Form().Elements(); }

  // The mouse on the form.
  void Mouse(UINT message, int x, int y, WPARAM keys = 0) {
    SendMessageW(Get().Form().Glass(), message, keys, MAKELPARAM(x, y));
  }
  void Drag(int x, int y, int to_x, int to_y, WPARAM keys = 0) {
    Mouse(WM_LBUTTONDOWN, x, y, MK_LBUTTON | keys);
    Mouse(WM_MOUSEMOVE, (x + to_x) / 2, (y + to_y) / 2, MK_LBUTTON | keys);
    Mouse(WM_MOUSEMOVE, to_x, to_y, MK_LBUTTON | keys);
    Mouse(WM_LBUTTONUP, to_x, to_y, keys);
  }
  void Key(WPARAM key) { SendMessageW(Get().Form().Glass(), WM_KEYDOWN, key, 1); }

  // A key as the loop of messages gets it, before a window does. False: it was nobody's.
  bool Press(HWND window, WPARAM key) {
    MSG message = {};
    message.hwnd = window;
    message.message = WM_KEYDOWN;
    message.wParam = key;
    message.lParam = 1;
    return Get().Translate(message);
  }

  // The list of properties.
  HWND Item(int id) { return Get().Grid().Item(id); }
  bool SelectRow(const std::wstring& name) {
    const HWND list = Item(PropertyGrid::kList);
    const auto find = [&](LRESULT after) {
      return SendMessageW(list, LB_FINDSTRINGEXACT, static_cast<WPARAM>(after),
                          reinterpret_cast<LPARAM>(name.c_str()));
    };
    LRESULT row = find(-1);
    if (row == LB_ERR) return false;
    if (const LRESULT next = find(row); next > row) row = next;  // a property in a group of its name
    SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(row), 0);
    SendMessageW(Get().Grid().Window(), WM_COMMAND, MAKEWPARAM(PropertyGrid::kList, LBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
    return true;
  }
  HWND Editor() {
    for (const int id : {PropertyGrid::kEdit, PropertyGrid::kChoices})
      if (GetWindowLongPtrW(Item(id), GWL_STYLE) & WS_VISIBLE) return Item(id);
    return nullptr;
  }
  std::wstring Shown(const std::wstring& name) {
    if (!SelectRow(name) || !Editor()) return L"nothing";
    return designer::TextOf(Editor());
  }
  HWND EditorText() {
    const HWND inner = GetWindow(Editor(), GW_CHILD);
    return inner ? inner : Editor();
  }
  // Types a value over the one that is there, and Enter.
  void Type(const std::wstring& name, const std::wstring& value) {
    ASSERT_TRUE(SelectRow(name));
    ASSERT_TRUE(Editor());
    SetWindowTextW(Editor(), value.c_str());
    SendMessageW(EditorText(), WM_KEYDOWN, VK_RETURN, 1);
  }
  void PressMore() { SendMessageW(Item(PropertyGrid::kMore), BM_CLICK, 0, 0); }
  std::vector<std::wstring> Rows() {
    std::vector<std::wstring> rows;
    const HWND list = Item(PropertyGrid::kList);
    const LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
    for (LRESULT i = 0; i < count; ++i) {
      wchar_t text[100] = {};
      SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
      rows.push_back(text);
    }
    return rows;
  }

  Answers answers;
  bool closed = false;

 private:
  std::optional<designer::Designer> designer_;
};

// A path that nothing is at, before and after.
class Path {
 public:
  Path() : path_(FolderOfProgram() + L"\\форма-" + std::to_wstring(GetCurrentProcessId()) + L".mform") {
    DeleteFileW(path_.c_str());
  }
  ~Path() { DeleteFileW(path_.c_str()); }
  Path(const Path&) = delete;
  Path& operator=(const Path&) = delete;
  const std::wstring& Get() const { return path_; }

  std::vector<char> Bytes() const {
    std::vector<char> bytes(1 << 20);
    std::FILE* const file = _wfopen(path_.c_str(), L"rb");
    if (!file) return {};
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    std::fclose(file);
    return bytes;
  }
  void Write(const std::vector<char>& bytes) const {
    std::FILE* const file = _wfopen(path_.c_str(), L"wb");
    ASSERT_TRUE(file);
    std::fwrite(bytes.data(), 1, bytes.size(), file);
    std::fclose(file);
  }

 private:
  std::wstring path_;
};

}  // namespace ocx_test
