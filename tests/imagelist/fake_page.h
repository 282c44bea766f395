// A window for the page's flows that is made of memory, and objects for it to work on.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "imagelist/prp_image.h"
#include "support/fake_host.h"

namespace marklet::testing {

// Answers the dialog with a file, or cancels it for an empty one.
struct FakeFileDialog final : OpenFileDialog {
  std::u16string file;
  OpenFileRecord seen;
  std::function<void()> on_shown;
  Long GetOpenFileNameA(OpenFileRecord& record) override {
    seen = record;
    if (on_shown) on_shown();
    record.file.replace(0, file.size(), file);
    return file.empty() ? 0 : 1;
  }
  Long CommDlgExtendedError() override { return 0; }
};

// A control on the form.
struct LabelObject final : PageObject {
  PlacedControl hosted;
  ISupportsAlphaImage* AlphaImages() override { return &hosted.control; }
  InternalAlphaImageList* HiddenList() override { return nullptr; }
  ImageRef LoadImageIntoLabel(std::u16string_view file, std::u16string_view key) override {
    return hosted.control.LoadImageIntoList(file, key);
  }
  ImageCollection& Images() { return *hosted.control.GetIconByteCollection(); }
};

struct HiddenObject final : PageObject {
  FakeHost host;
  InternalAlphaImageList list{host};
  HiddenObject() { list.InitProperties(); }
  ISupportsAlphaImage* AlphaImages() override { return nullptr; }
  InternalAlphaImageList* HiddenList() override { return &list; }
  ImageRef LoadImageIntoLabel(std::u16string_view, std::u16string_view) override { return nullptr; }
};

// Any owner of images.
struct OwnerObject final : PageObject {
  explicit OwnerObject(ISupportsAlphaImage& images) : owner(images) {}
  ISupportsAlphaImage& owner;
  ISupportsAlphaImage* AlphaImages() override { return &owner; }
  InternalAlphaImageList* HiddenList() override { return nullptr; }
  ImageRef LoadImageIntoLabel(std::u16string_view, std::u16string_view) override { return nullptr; }
};

struct NoOwner final : PageObject {
  ISupportsAlphaImage* AlphaImages() override { return nullptr; }
  InternalAlphaImageList* HiddenList() override { return nullptr; }
  ImageRef LoadImageIntoLabel(std::u16string_view, std::u16string_view) override { return nullptr; }
};

struct FakePageView final : ImagePageView {
  std::shared_ptr<PageObject> selected;
  prpImage* page = nullptr;
  std::u16string key;
  std::map<PageButton, bool> enabled;  // those that the page starts with, before it has been shown, are off
  SIZE strip = {333, 29};
  double twips_per_pixel = 15;
  FakeFileDialog dialog;
  bool answer_yes = false;
  bool changed = false;
  int strips = 0;                   // how often there was a new one
  std::vector<std::u16string> log;  // of the boxes
  std::function<void()> on_key_text, on_box;

  void Type(std::u16string text) { PutKeyText(std::move(text)); }

  std::shared_ptr<PageObject> SelectedControl() override { return selected; }
  std::u16string KeyText() override { return key; }
  void PutKeyText(std::u16string text) override {
    if (text == key) return;
    key = std::move(text);
    page->KeyChanged();
    if (on_key_text) on_key_text();
  }
  void Enable(PageButton button, bool on) override { enabled[button] = on; }
  SIZE StripSize() override { return strip; }
  void StripChanged() override { ++strips; }
  double TwipsPerPixelX() override { return twips_per_pixel; }
  HWND BrowseWindow() override { return reinterpret_cast<HWND>(0x20); }
  OpenFileDialog& Dialog() override { return dialog; }
  void Inform(std::u16string_view text) override {
    log.push_back(std::u16string(text));
    if (on_box) on_box();
  }
  bool Ask(std::u16string_view text, std::u16string_view title) override {
    log.push_back(std::u16string(text) + u"|" + std::u16string(title));
    if (on_box) on_box();
    return answer_yes;
  }
  void PutChanged(bool value) override { changed = value; }
};

}  // namespace marklet::testing
