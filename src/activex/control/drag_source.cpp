#include "activex/control/drag_source.h"

#include "activex/automation/drag_data.h"
#include "activex/automation/drag_store.h"
#include "activex/automation/event_source.h"
#include "activex/com/com_object.h"
#include "activex/control/window.h"

namespace marklet::activex {

// What OLE asks on the way. It knows the control until the drag is over.
class DragSource::Source final : public ComObject<IDropSource> {
 public:
  explicit Source(DragSource& control) : control_(&control) {}
  void Detach() { control_ = nullptr; }

  STDMETHODIMP QueryContinueDrag(BOOL escape, DWORD keys) override {
    if (escape || !control_) return DRAGDROP_S_CANCEL;
    return (keys & (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON)) != 0 ? S_OK : DRAGDROP_S_DROP;
  }
  STDMETHODIMP GiveFeedback(DWORD effect) override {
    if (!control_) return DRAGDROP_S_USEDEFAULTCURSORS;
    const Entry entry(control_->owner_);
    auto given = static_cast<Long>(effect);
    bool default_cursors = true;
    control_->marklet_.OLEGiveFeedback(given, default_cursors);
    return default_cursors ? DRAGDROP_S_USEDEFAULTCURSORS : S_OK;
  }

 private:
  DragSource* control_;
};

HRESULT DragSource::OLEDrag() {
  if (dragging_ || !events_.IsHeard() || !input_.TakesMouse()) return OLEOBJ_S_CANNOT_DOVERB_NOW;
  dragging_ = true;
  const HRESULT result = Guarded([&] {
    const ComPtr<DragStore> store = Adopt(new DragStore);
    const HostObjectRef data = WrapDragData(DragDataObject(store));
    Long allowed = DROPEFFECT_NONE;
    marklet_.OLEStartDrag(data, allowed);
    if (allowed == DROPEFFECT_NONE) return S_OK;
    store->on_missing = [this, data](CLIPFORMAT format) {
      const Entry entry(owner_);
      marklet_.OLESetData(data, static_cast<std::int16_t>(format));
    };
    Drag(*store.Get(), static_cast<DWORD>(allowed));
    store->on_missing = nullptr;
    return S_OK;
  });
  dragging_ = false;
  return result;
}

void DragSource::Drag(IDataObject& store, DWORD allowed) {
  window_.ReleaseMouse();
  const ComPtr<Source> source = Adopt(new Source(*this));
  DWORD effect = DROPEFFECT_NONE;
  const HRESULT result = ::DoDragDrop(&store, source.Get(), allowed, &effect);
  source->Detach();
  auto done = static_cast<Long>(result == DRAGDROP_S_DROP ? effect : DWORD{DROPEFFECT_NONE});
  marklet_.OLECompleteDrag(done);
}

}  // namespace marklet::activex
