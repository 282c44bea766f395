// prpImage: the page on which a designer adds images under keys, looks through them and deletes them.
//
// These are its flows; the window that shows it is a view, which calls in here. All but Apply act at once.
// Nothing throws: a failing step is skipped and the next one runs. Boxes, the dialog and the selected object
// may enter the page again, and may take the selection away; the page itself stays until its calls return.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bitmaps/cdib24.h"
#include "imagelist/image_page_view.h"
#include "platform/types.h"
#include "theme/theme_colours.h"

namespace marklet {

class prpImage {
 public:
  static constexpr Long kImagesPerPage = 15;

  struct State {
    std::u16string FileName;        // chosen in the dialog
    bool DeleteAllPending = false;  // once set, only a successful browse clears it
    std::u16string CurrentKey;      // of the image selected in the strip; a delete doesn't clear it
    Long SelectedX = 0;             // of the last press on the strip, in pixels; 0 for no selection
    Long PreviewPage = 0;           // from 0; stays when another object is selected
    std::shared_ptr<PageObject> SelectedControl;
  };

  explicit prpImage(ImagePageView& view) : view_(view) {}  // `view` outlives the page
  prpImage(const prpImage&) = delete;
  prpImage& operator=(const prpImage&) = delete;

  const State& Fields() const { return state_; }

  // The page's events.
  void SelectionChanged();
  void ApplyChanges();               // after one that the designer asks for, the view counts as unchanged
  void KeyChanged();                 // txtKey
  void Browse();                     // Command1
  void StripPressed(float x_twips);  // Picture2; from its left edge
  void DeleteIcon();                 // cmdDeleteIcon
  void DeleteAll();                  // Command2
  void Navigate(PageButton button);  // cmdNav: Next or Previous

  // Builds the strip's picture again and enables the buttons that have something to do.
  void ShowPreview();
  // Copies the strip's picture to the corner of a context. Nothing before the first ShowPreview.
  void PaintStrip(HDC dc) const;

 private:
  // What an object is to the page: one or the other, or neither.
  struct Owner {
    explicit Owner(std::shared_ptr<PageObject> of);
    std::shared_ptr<PageObject> object;
    ISupportsAlphaImage* images = nullptr;
    InternalAlphaImageList* hidden = nullptr;
  };

  Owner FindOwner();
  std::u16string GetKeyFromPage();
  void AddImage();
  static ImageRef AddIcon(const Owner& owner, std::u16string_view file, std::u16string_view key);
  void Enable(PageButton button, bool enabled);
  void PutKeyText(std::u16string_view text);

  // The strip, in prp_image_strip.cpp.
  std::shared_ptr<CDib24> ClearStrip();
  void ShowOwner(const Owner& owner, const CDib24& strip);
  void ShowImages(const ImageCollection& images, const CDib24& strip, const ThemeColours& colours);
  void Select(const CIconBytes& image);

  ImagePageView& view_;
  State state_;
  std::shared_ptr<CDib24> strip_;  // its picture; shared with the paint that is at it
};

}  // namespace marklet
