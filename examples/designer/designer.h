// The designer's window: a form with controls, the properties of the one that is selected, menus and buttons.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desk.h"
#include "look.h"
#include "prompts.h"
#include "property_grid.h"
#include "run_window.h"
#include "surface.h"
#include "window.h"

namespace designer {

class Designer final : public SurfaceOwner, public GridOwner {
 public:
  struct Appearance {
    int per_inch;  // pixels of the screen
    DWORD frame = WS_OVERLAPPEDWINDOW;
  };
  // `on_closed` is called when the user has closed the window. Throws an HRESULT.
  Designer(Prompts& prompts, std::vector<Tool> tools, const Appearance& appearance,
           std::function<void()> on_closed);
  ~Designer();
  Designer(const Designer&) = delete;
  Designer& operator=(const Designer&) = delete;

  HWND Window() const { return window_.Handle(); }
  Surface& Form() { return *surface_; }
  PropertyGrid& Grid() { return *grid_; }
  RunWindow* Running() const { return run_.get(); }
  bool IsDirty() const { return dirty_; }
  const std::wstring& Path() const { return path_; }
  std::wstring Status() const { return TextOf(status_); }

  // False: the user was told why not.
  bool Open(const std::wstring& path);

  // Whether a message of the keyboard was for this window or one that it owns.
  bool Translate(MSG& message);

 private:
  LRESULT Handle(UINT message, WPARAM wparam, LPARAM lparam);
  void Do(int command);
  void CreateMenu();
  void CreateButtons();
  void Layout();

  void New();
  void OpenAsked();
  bool Save();
  bool SaveAs();
  bool SaveTo(const std::wstring& path);
  bool MayDiscard();  // asks when there is something to lose
  void Run();
  void EndRun();
  void Close();
  void PlaceTool(std::size_t tool);
  bool ShowPagesOf(Element& element, std::optional<DISPID> property);

  void SetDirty(bool dirty);
  void ShowTitle();
  void ShowStatus();
  void ShowNames();
  void Tell(const Refusal& refusal) { prompts_.Tell(Window(), refusal.text); }
  std::wstring Name() const;
  template <typename Body>
  bool Try(Body&& body);

  // SurfaceOwner
  void OnSelected() override;
  void OnFormChanged() override;
  void OnFormSized() override { desk_->Update(); }
  void OnPropertyChanged(Element& element, DISPID id) override;
  bool OnShowPages(Element& element) override { return ShowPagesOf(element, {}); }
  void OnRemoved(const std::wstring& name) override;
  // GridOwner
  void OnTold(const std::wstring& text) override;
  void OnLeft() override { Focus(surface_->Glass()); }
  void OnChosen(std::size_t name) override;
  void OnPageWanted(Element& element, DISPID id) override { ShowPagesOf(element, id); }
  std::optional<COLORREF> OnColourWanted(COLORREF colour) override {
    return prompts_.Colour(Window(), colour);
  }
  std::optional<FontValue> OnFontWanted(const FontValue& font) override {
    return prompts_.Font(Window(), font);
  }

  Prompts& prompts_;
  std::vector<Tool> tools_;
  Look look_;
  std::function<void()> on_closed_;
  OwnWindow window_;
  HACCEL keys_ = nullptr;
  std::vector<HWND> buttons_;
  HWND status_ = nullptr;
  std::unique_ptr<Desk> desk_;
  std::unique_ptr<Surface> surface_;
  std::unique_ptr<PropertyGrid> grid_;
  std::unique_ptr<RunWindow> run_;
  std::wstring path_, told_;
  bool dirty_ = false, loading_ = false;
};

}  // namespace designer
