// What the flows of the design-time page (prp_image.h) ask of the window that shows it, and of the object
// that it works on. Every call may fail by throwing; the flow then goes on with its next step.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "imagelist/common_dialog.h"
#include "imagelist/image_collection.h"
#include "imagelist/internal_alpha_image_list.h"
#include "imagelist/supports_alpha_image.h"
#include "platform/types.h"

namespace marklet {

// An object that a designer has selected. What it gives out stays good as long as the object is held.
class PageObject {
 public:
  virtual ~PageObject() = default;
  virtual ISupportsAlphaImage* AlphaImages() = 0;    // null when it is no such owner
  virtual InternalAlphaImageList* HiddenList() = 0;  // null when it is none
  // LoadImageIntoList of a Marklet; null when the object is none.
  virtual ImageRef LoadImageIntoLabel(std::u16string_view file, std::u16string_view key) = 0;
};

enum class PageButton {
  Next,        // cmdNav(0)
  Previous,    // cmdNav(1)
  DeleteAll,   // Command2
  DeleteIcon,  // cmdDeleteIcon
  Browse,      // Command1
};

class ImagePageView {
 public:
  virtual ~ImagePageView() = default;

  // SelectedControls(0) of the page; null when nothing is selected.
  virtual std::shared_ptr<PageObject> SelectedControl() = 0;

  // txtKey. A text that is put there is a change as typing is: prpImage::KeyChanged comes before the return.
  virtual std::u16string KeyText() = 0;
  virtual void PutKeyText(std::u16string text) = 0;

  virtual void Enable(PageButton button, bool enabled) = 0;

  // The inside of Picture2, in pixels.
  virtual SIZE StripSize() = 0;
  // prpImage::PaintStrip has another picture now.
  virtual void StripChanged() = 0;
  virtual double TwipsPerPixelX() = 0;  // of the screen

  // The window of Command1, and the dialog that opens over it.
  virtual HWND BrowseWindow() = 0;
  virtual OpenFileDialog& Dialog() = 0;

  // A box with an OK button, of the kind that informs, with the program's default title.
  virtual void Inform(std::u16string_view text) = 0;
  // A box with Yes and No, of the kind that asks; No is the default. True for Yes.
  virtual bool Ask(std::u16string_view text, std::u16string_view title) = 0;

  // `Changed` of the page: Apply has something to do.
  virtual void PutChanged(bool changed) = 0;
};

}  // namespace marklet
