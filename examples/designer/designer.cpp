#include "designer.h"

#include <algorithm>
#include <bit>
#include <iterator>

#include "commands.h"
#include "file.h"
#include "pages.h"

namespace designer {
namespace {

struct MenuRow {
  int command;  // 0: a line
  const wchar_t* text;
};
constexpr MenuRow kFileMenu[] = {{kNewForm, L"&New\tCtrl+N"},
                                 {kOpenForm, L"&Open...\tCtrl+O"},
                                 {kSaveForm, L"&Save\tCtrl+S"},
                                 {kSaveFormAs, L"Save &as..."},
                                 {0, nullptr},
                                 {kExit, L"E&xit"}};
constexpr MenuRow kControlMenu[] = {{kDeleteControl, L"&Delete\tDel"},
                                    {kNextControl, L"Select &next\tTab"},
                                    {kPreviousControl, L"Select &previous\tShift+Tab"},
                                    {0, nullptr},
                                    {kShowProperties, L"P&roperties\tF4"},
                                    {kShowPages, L"Property pa&ges...\tShift+F4"}};
constexpr MenuRow kRunMenu[] = {{kRun, L"&Run\tF5"}};

struct ButtonRow {
  int command;
  const wchar_t* text;
};
constexpr ButtonRow kButtons[] = {{kDeleteControl, L"Delete"}, {kShowPages, L"Pages..."}, {kRun, L"Run"}};

const ACCEL kKeys[] = {{FVIRTKEY | FCONTROL, 'N', kNewForm},
                       {FVIRTKEY | FCONTROL, 'O', kOpenForm},
                       {FVIRTKEY | FCONTROL, 'S', kSaveForm},
                       {FVIRTKEY | FCONTROL, 'L', kPlace},
                       {FVIRTKEY, VK_F4, kShowProperties},
                       {FVIRTKEY | FSHIFT, VK_F4, kShowPages},
                       {FVIRTKEY, VK_F5, kRun}};

void Fill(HMENU menu, std::span<const MenuRow> rows) {
  for (const MenuRow& row : rows)
    AppendMenuW(menu, row.command ? MF_STRING : MF_SEPARATOR, static_cast<UINT_PTR>(row.command), row.text);
}

void Add(HMENU bar, const wchar_t* title, HMENU menu) {
  AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(menu), title);
}

constexpr int kWidth = 900, kHeight = 680, kGridWidth = 300, kButtonWidth = 96, kGap = 8;

// As large as the screen lets it be.
RECT FirstPlace(const Look& look) {
  RECT room = {};
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &room, 0);
  const LONG left = room.left + look.Pixels(24), top = room.top + look.Pixels(24);
  return {left, top, std::min(left + look.Pixels(kWidth), room.right),
          std::min(top + look.Pixels(kHeight), room.bottom)};
}

}  // namespace

// --- The window -------------------------------------------------------------------------------------------

Designer::Designer(Prompts& prompts, std::vector<Tool> tools, const Appearance& appearance,
                   std::function<void()> on_closed)
    : prompts_(prompts),
      tools_(std::move(tools)),
      look_(appearance.per_inch),
      on_closed_(std::move(on_closed)) {
  window_.Create({L"MarkletDesigner", kProgramName, appearance.frame | WS_CLIPCHILDREN, WS_EX_CONTROLPARENT,
                  GetSysColorBrush(COLOR_BTNFACE)},
                 nullptr, FirstPlace(look_),
                 [this](UINT message, WPARAM w, LPARAM l) { return Handle(message, w, l); });
  CreateMenu();
  CreateButtons();
  status_ = CreateWindowExW(0, L"STATIC", L"", WS_CHILD | WS_VISIBLE | SS_NOPREFIX | SS_ENDELLIPSIS, 0, 0, 0,
                            0, Window(), nullptr, GetModuleHandleW(nullptr), nullptr);
  SendMessageW(status_, WM_SETFONT, reinterpret_cast<WPARAM>(look_.Font()), TRUE);
  desk_ = std::make_unique<Desk>(Window(), look_);
  surface_ = std::make_unique<Surface>(*this, desk_->Window(), look_.PerInch());
  desk_->Hold(surface_->Window());
  grid_ = std::make_unique<PropertyGrid>(*this, Window(), look_);
  keys_ = CreateAcceleratorTableW(const_cast<ACCEL*>(kKeys), static_cast<int>(std::size(kKeys)));
  Layout();
  New();
}

Designer::~Designer() {
  run_.reset();
  if (surface_) surface_->Select(nullptr);
  grid_.reset();
  surface_.reset();
  desk_.reset();
  if (keys_) DestroyAcceleratorTable(keys_);
}

void Designer::CreateMenu() {
  const HMENU bar = ::CreateMenu(), file = CreatePopupMenu(), place = CreatePopupMenu(),
              control = CreatePopupMenu(), run = CreatePopupMenu();
  Fill(file, kFileMenu);
  for (std::size_t i = 0; i < tools_.size(); ++i)
    AppendMenuW(place, MF_STRING, kPlace + i, (tools_[i].name + (i == 0 ? L"\tCtrl+L" : L"")).c_str());
  Fill(control, kControlMenu);
  Fill(run, kRunMenu);
  Add(bar, L"&File", file);
  Add(bar, L"&Place", place);
  Add(bar, L"&Control", control);
  Add(bar, L"&Run", run);
  SetMenu(Window(), bar);
}

void Designer::CreateButtons() {
  const auto add = [&](int command, const std::wstring& text) {
    const HWND button =
        CreateWindowExW(0, L"BUTTON", text.c_str(), WS_CHILD | WS_VISIBLE, 0, 0, 0, 0, Window(),
                        std::bit_cast<HMENU>(INT_PTR{command}), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(button, WM_SETFONT, reinterpret_cast<WPARAM>(look_.Font()), TRUE);
    buttons_.push_back(button);
  };
  for (std::size_t i = 0; i < tools_.size(); ++i)
    add(kPlace + static_cast<int>(i), L"Place " + tools_[i].name);
  for (const ButtonRow& row : kButtons) add(row.command, row.text);
}

void Designer::Layout() {
  if (!grid_) return;
  RECT inside = {};
  GetClientRect(Window(), &inside);
  const int gap = look_.Pixels(kGap), height = look_.LineHeight() + look_.Pixels(10);
  const int status = look_.LineHeight() + look_.Pixels(6), top = height + 2 * gap;
  int left = gap;
  for (const HWND button : buttons_) {
    const int width = look_.Pixels(kButtonWidth) + (button == buttons_.front() ? look_.Pixels(24) : 0);
    MoveWindow(button, left, gap, width, height, TRUE);
    left += width + gap;
  }
  const int bottom = static_cast<int>(inside.bottom) - status, grid = look_.Pixels(kGridWidth);
  MoveWindow(desk_->Window(), gap, top, std::max(0, static_cast<int>(inside.right) - grid - gap),
             std::max(0, bottom - top), TRUE);
  MoveWindow(grid_->Window(), static_cast<int>(inside.right) - grid, gap / 2, grid,
             std::max(0, bottom - gap / 2), TRUE);
  MoveWindow(status_, gap, bottom + look_.Pixels(2), std::max(0, static_cast<int>(inside.right) - 2 * gap),
             status, TRUE);
}

LRESULT Designer::Handle(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_COMMAND:
      Do(LOWORD(wparam));
      return 0;
    case WM_SIZE:
      Layout();
      return 0;
    case WM_SETFOCUS:
      if (surface_) Focus(surface_->Glass());
      return 0;
    case WM_CLOSE:
      Close();
      return 0;
    default:
      return window_.Default(message, wparam, lparam);
  }
}

bool Designer::Translate(MSG& message) {
  if (run_ && IsDialogMessageW(run_->Window(), &message)) return true;
  if (message.hwnd != Window() && !IsChild(Window(), message.hwnd)) return false;
  return TranslateAcceleratorW(Window(), keys_, &message) || IsDialogMessageW(Window(), &message);
}

// --- Commands ---------------------------------------------------------------------------------------------

template <typename Body>
bool Designer::Try(Body&& body) {
  try {
    body();
    return true;
  } catch (const Refusal& refusal) {
    Tell(refusal);
  } catch (const std::bad_alloc&) {
    Tell({L"There is not enough memory."});
  }
  return false;
}

// What is being typed counts before anything is done.
void Designer::Do(int command) {
  grid_->Commit();
  switch (command) {
    case kNewForm:
      if (MayDiscard()) New();
      return;
    case kOpenForm:
      return OpenAsked();
    case kSaveForm:
      Save();
      return;
    case kSaveFormAs:
      SaveAs();
      return;
    case kExit:
      return Close();
    case kDeleteControl:
      return surface_->DeleteSelected();
    case kNextControl:
    case kPreviousControl:
      return surface_->SelectNext(command == kPreviousControl);
    case kShowPages:
      if (Element* element = surface_->Selected()) ShowPagesOf(*element, {});
      return;
    case kShowProperties:
      return grid_->TakeKeyboard();
    case kRun:
      return Run();
    default:
      if (command >= kPlace) PlaceTool(static_cast<std::size_t>(command - kPlace));
  }
}

void Designer::PlaceTool(std::size_t tool) {
  if (tool >= tools_.size()) return;
  Try([&] { surface_->PlaceNew(tools_[tool]); });
  ShowNames();
  Focus(surface_->Glass());
}

// The control may be gone when the user has closed the pages.
bool Designer::ShowPagesOf(Element& element, std::optional<DISPID> property) {
  const std::wstring name = element.Name();
  const example::ComPtr<IOleObject> object = &element.Object();
  const bool shown = ShowPages(*object.Get(), name, Window(), property);
  OnTold(shown ? L"" : name + L" has no property pages.");
  if (shown) SetDirty(true);  // pages change what no property tells of
  grid_->Refresh(DISPID_UNKNOWN);
  return shown;
}

void Designer::Run() {
  if (run_) return;
  Try([&] {
    run_ = std::make_unique<RunWindow>(surface_->Saved(), Name() + L" - running", Window(), look_,
                                       [this] { EndRun(); });
    EnableWindow(Window(), FALSE);
  });
}

void Designer::EndRun() {
  EnableWindow(Window(), TRUE);  // before the other window goes, so that this one comes to the front
  run_.reset();
  Focus(surface_->Glass());
}

void Designer::Close() {
  if (!MayDiscard()) return;
  if (run_) EndRun();
  const auto on_closed = on_closed_;
  on_closed();  // after which there may be nothing left of this
}

// --- Files ------------------------------------------------------------------------------------------------

void Designer::New() {
  loading_ = true;
  surface_->Clear();
  loading_ = false;
  path_.clear();
  SetDirty(false);
  ShowNames();
}

void Designer::OpenAsked() {
  if (!MayDiscard()) return;
  if (const auto path = prompts_.FileToOpen(Window())) Open(*path);
}

bool Designer::Open(const std::wstring& path) {
  loading_ = true;
  const bool opened = Try([&] { surface_->Load(ReadForm(path), tools_); });
  loading_ = false;
  if (opened) {
    path_ = path;
    SetDirty(false);
  }
  ShowNames();
  return opened;
}

bool Designer::Save() { return path_.empty() ? SaveAs() : SaveTo(path_); }

bool Designer::SaveAs() {
  const auto path = prompts_.FileToSave(Window(), path_.empty() ? L"form1.mform" : path_);
  return path && SaveTo(*path);
}

bool Designer::SaveTo(const std::wstring& path) {
  if (!Try([&] { WriteForm(path, surface_->Saved()); })) return false;
  path_ = path;
  SetDirty(false);
  OnTold(L"Saved as " + path + L".");
  return true;
}

bool Designer::MayDiscard() {
  if (!dirty_) return true;
  const Answer answer = prompts_.Ask(Window(), L"Save the changes to " + Name() + L"?");
  return answer == Answer::No || (answer == Answer::Yes && Save());
}

// --- What is shown ----------------------------------------------------------------------------------------

std::wstring Designer::Name() const { return path_.empty() ? L"untitled form" : FileName(path_); }

void Designer::SetDirty(bool dirty) {
  dirty_ = dirty;
  SetWindowTextW(Window(), (Name() + (dirty_ ? L"* - " : L" - ") + kProgramName).c_str());
}

// The place of what is selected, or what there is to tell.
void Designer::ShowStatus() {
  std::wstring text = told_;
  if (const Element* element = surface_->Selected(); element && text.empty()) {
    const Place place = element->GetPlace();
    text = element->Name() + L"   " + std::to_wstring(place.left) + L", " + std::to_wstring(place.top) +
           L"   " + std::to_wstring(place.width) + L" \u00D7 " + std::to_wstring(place.height);
  }
  SetWindowTextW(status_, text.c_str());
}

void Designer::ShowNames() {
  std::vector<std::wstring> names;
  std::optional<std::size_t> selected;
  for (const auto& element : surface_->Elements()) {
    if (element.get() == surface_->Selected()) selected = names.size();
    names.push_back(element->Name());
  }
  grid_->ShowNames(names, selected);
}

void Designer::OnSelected() {
  told_.clear();
  if (grid_) grid_->Show(surface_->Selected());
  ShowNames();
  ShowStatus();
}

void Designer::OnFormChanged() {
  if (loading_ || !grid_) return;
  SetDirty(true);
  ShowStatus();
}

void Designer::OnPropertyChanged(Element& element, DISPID id) {
  if (&element == surface_->Selected()) grid_->Refresh(id);
}

void Designer::OnRemoved(const std::wstring& name) {
  ShowNames();
  OnTold(name + L" has closed itself.");
}

void Designer::OnTold(const std::wstring& text) {
  told_ = text;
  ShowStatus();
}

void Designer::OnChosen(std::size_t name) {
  if (name < surface_->Elements().size()) surface_->Select(surface_->Elements()[name].get());
}

}  // namespace designer
