// Marklet: the control object. It owns the caption's state and the finished picture, and lives in one host on
// one thread.
//
// No call throws and none reports an error: a failing step is skipped and the next one runs. Setters paint
// before they return. Events and PropertyChanged may re-enter any member; whoever calls in keeps the control
// alive until the call returns.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>

#include "bitmaps/cdib24.h"
#include "bitmaps/cdib32.h"
#include "control/events.h"
#include "control/properties.h"
#include "control/value.h"
#include "host/property_bag.h"
#include "host/user_control.h"
#include "imagelist/image_collection.h"
#include "imagelist/internal_alpha_image_list.h"
#include "imagelist/owner_theme.h"
#include "imagelist/supports_alpha_image.h"
#include "platform/types.h"

namespace marklet {

// The state of the control, under the names and in the order that debuggers have always shown. A new field
// goes last.
struct MarkletState {
  bool DesignMode = false;  // written by InitProperties alone
  bool Hover = false;
  Long MaxHeight = 0, MaxWidth = 0;  // largest client size seen, pixels
  Long ImageSize = 0;
  Long ImagePixels = 0;  // edge length for ImageSize
  std::u16string ImageKey, ImageKeyhover;
  HostTooltipRef Tooltip;  // from the pointer's first entry on, when there is a text for it
  Long ImageAlignment = 0;
  bool UsesSystemColors = false;  // some colour names a system colour
  std::array<COLORREF, 6> SystemColorCache{};
  std::shared_ptr<CDib32> Background;  // what lies behind a transparent control; null when it is to be taken
  std::shared_ptr<ImageCollection> Images;
  Long Appearance = 0, BorderStyle = 0;
  OLE_COLOR BackColor = 0, ForeColor = 0;
  std::u16string Caption, UniToolTipText;
  Long BackStyle = 0;
  Long Padding = 0;          // not public
  bool RightToLeft = false;  // not public
  bool UseMnemonic = false;
  Long Alignment = 0;          // not public
  Long VerticalAlignment = 0;  // not public
  Long TextEffect = 0;
  bool WordWrap = false;
  OLE_COLOR EffectColor = 0;
  bool AutoSize = false;
  Long XButtonDown = 0;  // the extended button last pressed, for the release, which doesn't tell
  // The finished picture; null when it must be built again. Shared with the paint that builds it, since a
  // setter called from inside that paint drops it.
  std::shared_ptr<CDib24> BackBuffer;
  bool SafeForScripting = false, SafeForInitializing = false;
};

class Marklet : public ISupportsAlphaImage {
 public:
  // Initialize. `host` and `events` outlive the control.
  Marklet(UserControl& host, MarkletEvents& events);
  ~Marklet() override;  // Terminate
  Marklet(const Marklet&) = delete;
  Marklet& operator=(const Marklet&) = delete;

  // The defaults of a newly placed control. False when a failure, such as a lack of memory, kept one back.
  bool InitProperties();

  // Takes the state from a saved form, or writes it. Values that can't be had leave the field as it is, those
  // that can't be written are left out. Change is raised once, before the images are there. The answer is
  // false when a failure, such as a lack of memory, kept a value back, so that a host doesn't take the rest
  // for the whole; a value of a wrong type is no failure.
  bool ReadProperties(PropertyBag& bag);
  bool WriteProperties(PropertyBag& bag);

  // The public surface. A value of another type than the row's is ignored; setting a read-only property does
  // nothing.
  Value Get(const PropertyRow& row);
  void Set(const PropertyRow& row, const Value& value);
  // Adds an image file to the list under a key; true when the list then has it. Refused: a file name below
  // three characters, an empty key, one that starts with a digit, one that is taken.
  bool LoadIconImageFromFile(std::u16string_view file, std::u16string_view key);

  // The same without asking about the key: the image, also when the list didn't take it.
  ImageRef LoadImageIntoList(std::u16string_view file, std::u16string_view key);
  bool ImageKeyFree(std::u16string_view key) const;

  // ISupportsAlphaImage. LoadIconByteImageFromDisk stays the interface's own and does nothing:
  // LoadIconImageFromFile is the working route.
  void DestroyIconByteCollectionData() override;
  void DeleteIconImage(std::u16string_view key) override;
  std::shared_ptr<ImageCollection> GetIconByteCollection() const override { return state_.Images; }
  std::u16string GetFriendlyString() const override { return u"label"; }

  // The constituent control of that name: a list without a window of its own, which no form shows or saves
  // and nobody creates but the control. It lives in the control's host, which hears of its changes.
  InternalAlphaImageList& InternalAlphaImageList1() { return hidden_list_; }

  // The colours of the desktop's scheme. The control itself draws with none of them.
  ThemeColours GetThemeColors() { return OwnerThemeColours(host_); }

  // Brings the picture up to date and copies it to `dc`, or to the host's context when that is null. For a
  // host that shows nothing, the picture is left to the next paint that can be seen.
  void PaintControl(HDC dc);
  // Paints on `dc` as a transparent control looks in front of `behind`. The picture and the snapshot that the
  // control has for its own place stay as they are.
  void PaintOver(HDC dc, std::shared_ptr<CDib32> behind);
  // Drops the picture and paints at once.
  void RedrawNow();
  // Whether a transparent control stands on a snapshot of its own place: it has a window, or its form keeps a
  // picture of itself.
  bool StandsOnSnapshot();

  // The host's notifications.
  void Resize();
  void Click();
  void DblClick();
  void MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void MouseUp(std::int16_t button, std::int16_t shift, float x, float y);
  // The first one after the pointer has come in shows the hover picture and the tip, and raises MouseEnter
  // before MouseMove.
  void MouseMove(std::int16_t button, std::int16_t shift, float x, float y);
  void OLECompleteDrag(Long& effect);
  void OLEDragDrop(const HostObjectRef& data, Long& effect, PointerArguments pointer);
  void OLEDragOver(const HostObjectRef& data, Long& effect, PointerArguments pointer, std::int16_t state);
  void OLEGiveFeedback(Long& effect, bool& default_cursors);
  void OLESetData(const HostObjectRef& data, std::int16_t format);
  void OLEStartDrag(const HostObjectRef& data, Long& allowed_effects);

  // For those who see the window's messages.
  void EndHover();    // the pointer has left: the plain picture is shown
  void MouseLeave();  // raises it
  // Extended buttons: `buttons` and `shift` as the messages hold them.
  void ExtendedMouseDown(Long buttons, Long shift, float x, float y);
  void ExtendedMouseUp(Long buttons, Long shift, float x, float y);
  // From twips to the control's own scale, which is pixels.
  float ScaleXValue(double twips);
  // Copies the caption to an address that may be null: all of it, whatever room there is, and no NUL. The
  // answer counts a NUL all the same: it is the length with one where that fits into `room`, and `room`
  // otherwise.
  std::size_t CopyCaption(std::size_t room, char16_t* to) const;
  // The window is gone, and with it what was known of the pointer.
  void WindowGone();

  MarkletState& State() { return state_; }
  const MarkletState& State() const { return state_; }
  UserControl& Host() { return host_; }
  MarkletEvents& Events() { return events_; }

  // The steps of the setters.
  void UpdateColorFlag();
  void RecomputeAutoSize();
  // Tells the host which key activates the control: the one that `text` marks with "&", none for an empty
  // text.
  void UpdateAccessKeys(std::u16string_view text);

 private:
  void RunSteps(const PropertyRow& row);
  bool TrySet(const PropertyRow& row, const Value& value);
  Value DefaultOf(const PropertyRow& row);
  void StoreBare(const PropertyRow& row, const Value& value);
  bool LoadProperty(PropertyBag& bag, const PropertyRow& row);
  bool SaveProperty(PropertyBag& bag, const PropertyRow& row);
  void MatchAccessKeys();
  void FitToCaption();
  void BeginHover();
  void ShowTooltip();

  bool CheckSystemColors();
  void BringUpToDate();
  void BuildPicture(Long width, Long height);
  void DrawBackground(HDC dc, const RECT& rect);
  std::shared_ptr<CDib32> CaptureBackground();
  void DrawBorder(HDC dc, const RECT& rect);
  void DrawDesignersOutline(HDC dc, const RECT& rect);
  void DrawSunkenEdge(HDC dc, RECT rect);
  OLE_COLOR EdgeBaseColour();
  void DrawImage(HDC dc, RECT& rect);
  void DrawCaption(HDC dc, RECT rect);
  bool CanWait();
  ImageRef ShownImage() const;
  COLORREF CaptionColour();

  UserControl& host_;
  MarkletEvents& events_;
  MarkletState state_;
  InternalAlphaImageList hidden_list_{host_};
  bool capturing_ = false;         // the container is drawing what lies behind the control
  bool missed_a_paint_ = false;    // meanwhile
  bool is_provisional_ = false;    // what lies behind it isn't known for good
  unsigned pictures_dropped_ = 0;  // by RedrawNow
};

}  // namespace marklet
