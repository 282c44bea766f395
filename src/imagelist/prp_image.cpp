#include "imagelist/prp_image.h"

#include <algorithm>
#include <cmath>

#include "base/blanks.h"
#include "base/ignore_errors.h"
#include "imagelist/key_rules.h"

namespace marklet {
namespace {

using namespace std::string_view_literals;

// Description and pattern in turn, each with a NUL after it.
constexpr std::u16string_view kFilter =
    u"Common image files (*.ico,*.bmp,*.png,*.gif,*.jpg,*.cur)\0*.bmp;*.gif;*.jpg;*.ico;*.png;*.cur\0"
    u"Icon files (*.ico)\0*.ico\0"
    u"PNG files (*.png)\0*.png\0"
    u"Bitmap files (*.bmp)\0*.bmp\0"
    u"GIF files (*.gif)\0*.gif\0"
    u"JPG files (*.jpg)\0*.jpg\0"
    u"Cursor files (*.cur)\0*.cur\0"
    u"All Files (*.*)\0*.*\0"sv;
static_assert(std::ranges::count(kFilter, u'\0') == 16);

// For the dialog: whether a file was chosen, which is then in `file`.
bool AskForFile(ImagePageView& view, std::u16string& file) {
  CCommonDialog dialog(view.Dialog());
  CCommonDialog::Open open;
  open.file = file;
  open.file_must_exist = true;
  open.filter = kFilter;
  open.filter_index = 1;
  open.title = u"Select an image to add...";
  open.default_extension = u"ICO";
  open.owner = view.BrowseWindow();
  const bool chosen = dialog.ShowOpen(open);
  file = open.file;
  return chosen;
}

}  // namespace

prpImage::Owner::Owner(std::shared_ptr<PageObject> of) : object(std::move(of)) {
  if (!object) return;
  IgnoreErrors([this] { images = object->AlphaImages(); });
  if (!images) IgnoreErrors([this] { hidden = object->HiddenList(); });
}

prpImage::Owner prpImage::FindOwner() {
  std::shared_ptr<PageObject> object;
  IgnoreErrors([&] { object = view_.SelectedControl(); });
  return Owner(std::move(object));
}

void prpImage::SelectionChanged() {
  state_.SelectedControl.reset();
  IgnoreErrors([this] { state_.SelectedControl = view_.SelectedControl(); });
  ShowPreview();
}

void prpImage::ApplyChanges() {
  const Owner owner = FindOwner();
  if (owner.images) {
    // The flag stays set, so that each further Apply deletes all again.
    if (state_.DeleteAllPending) IgnoreErrors([&] { owner.images->DestroyIconByteCollectionData(); });
  } else if (owner.hidden) {
    owner.hidden->ClearIcons();  // with the flag or without it
  }
}

void prpImage::KeyChanged() {
  std::u16string text;
  IgnoreErrors([&] { text = view_.KeyText(); });
  // A digit after blanks passes here, and is refused when the key is used.
  Enable(PageButton::Browse, !TrimBlanks(text).empty() && !StartsWithDigit(text));
}

// Empty when it is refused, and the image is added under that.
std::u16string prpImage::GetKeyFromPage() {
  const std::u16string text = view_.KeyText();
  const std::u16string_view key = TrimBlanks(text);
  if (key.empty()) return u"key_" + state_.FileName;
  if (!StartsWithDigit(key)) return std::u16string(key);
  IgnoreErrors([this] { view_.Inform(u"Keys can not start with a numeric character."); });
  return {};
}

void prpImage::Browse() {
  state_.FileName.clear();
  bool chosen = false;
  IgnoreErrors([&] { chosen = AskForFile(view_, state_.FileName); });
  if (!chosen) return;
  state_.DeleteAllPending = false;
  AddImage();
  state_.SelectedX = 0;
  ShowPreview();
  PutKeyText({});
  IgnoreErrors([this] { view_.PutChanged(true); });
}

// The box of a refused key may end the selection, but not the object.
void prpImage::AddImage() {
  const Owner owner = FindOwner();
  if (!owner.images && !owner.hidden) return;
  std::u16string key;
  IgnoreErrors([&] { key = GetKeyFromPage(); });
  IgnoreErrors([&] {
    const std::u16string file = state_.FileName;
    if (owner.hidden) {
      owner.hidden->LoadImageIntoList(file, key);
    } else {
      AddIcon(owner, file, key);
    }
  });
}

// Owners of other kinds than the control's load nothing.
ImageRef prpImage::AddIcon(const Owner& owner, std::u16string_view file, std::u16string_view key) {
  return owner.images->GetFriendlyString() == u"label" ? owner.object->LoadImageIntoLabel(file, key)
                                                       : nullptr;
}

void prpImage::StripPressed(float x_twips) {
  IgnoreErrors([&] {
    const double pixels = std::trunc(double{x_twips} / view_.TwipsPerPixelX());
    if (std::isfinite(pixels)) state_.SelectedX = RoundHalfEven(pixels);
  });
  ShowPreview();
}

void prpImage::DeleteIcon() {
  const Owner owner = FindOwner();
  // A hidden list keeps its image: nothing is asked of it.
  if (!state_.CurrentKey.empty() && owner.images) {
    IgnoreErrors([&] { owner.images->DeleteIconImage(std::u16string(state_.CurrentKey)); });
  }
  Enable(PageButton::DeleteIcon, false);
  state_.SelectedX = 0;
  PutKeyText(u"0");  // not empty, and no key: Browse is off until another is typed
  ShowPreview();
}

void prpImage::DeleteAll() {
  bool sure = false;
  IgnoreErrors(
      [&] { sure = view_.Ask(u"Are you sure you want to delete all assigned icons?", u"Delete All"); });
  if (sure) {
    state_.DeleteAllPending = true;
    IgnoreErrors([this] { view_.PutChanged(true); });
    ApplyChanges();
  }
  ShowPreview();
}

void prpImage::Navigate(PageButton button) {
  if (button == PageButton::Next) {
    state_.PreviewPage = WrapAdd(state_.PreviewPage, 1);
  } else {
    state_.PreviewPage = std::max(state_.PreviewPage - 1, 0);
  }
  state_.SelectedX = 0;
  PutKeyText({});
  Enable(PageButton::DeleteIcon, false);
  ShowPreview();
}

void prpImage::Enable(PageButton button, bool enabled) {
  IgnoreErrors([&] { view_.Enable(button, enabled); });
}

void prpImage::PutKeyText(std::u16string_view text) {
  IgnoreErrors([&] { view_.PutKeyText(std::u16string(text)); });
}

}  // namespace marklet
