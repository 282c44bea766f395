#include "activex/control/drop_target.h"

#include <utility>

#include "activex/automation/drag_data.h"
#include "activex/automation/event_source.h"
#include "activex/com/com_object.h"
#include "activex/control/pointer.h"
#include "activex/control/window.h"

namespace marklet::activex {

// What OLE holds, also for a while after the control has gone. So it isn't counted as the control.
class DropTarget::Target final : public ComObject<IDropTarget> {
 public:
  explicit Target(DropTarget& control) : control_(&control) {}
  void Detach() { control_ = nullptr; }

  STDMETHODIMP DragEnter(IDataObject* data, DWORD keys, POINTL place, DWORD* effect) override {
    return Call(effect, [&] { control_->Enter(data, keys, place, *effect); });
  }
  STDMETHODIMP DragOver(DWORD keys, POINTL place, DWORD* effect) override {
    return Call(effect, [&] { control_->Over(keys, place, *effect); });
  }
  STDMETHODIMP DragLeave() override {
    DWORD none = DROPEFFECT_NONE;
    return Call(&none, [&] { control_->Leave(); });
  }
  STDMETHODIMP Drop(IDataObject*, DWORD keys, POINTL place, DWORD* effect) override {
    return Call(effect, [&] { control_->Drop(keys, place, *effect); });
  }

 private:
  template <typename Body>
  HRESULT Call(DWORD* effect, Body&& body) {
    if (!effect) return E_POINTER;
    if (!control_) {
      *effect = DROPEFFECT_NONE;
      return S_OK;
    }
    const ComPtr<IDropTarget> held = this;
    const Entry entry(control_->owner_);
    return Guarded([&] {
      body();
      return S_OK;
    });
  }

  DropTarget* control_;
};

// --- Registration -----------------------------------------------------------------------------------------

void DropTarget::Update(::HWND window, bool wanted) {
  if (wanted && events_.HasListeners())
    Register(window);
  else
    Revoke();
}

void DropTarget::Register(::HWND window) {
  if (target_ || !window) return;
  ComPtr<Target> target = Adopt(new Target(*this));
  if (FAILED(::RegisterDragDrop(window, target.Get()))) return;
  target_ = target.Detach();
  window_ = window;
}

void DropTarget::Revoke() {
  if (!target_) return;
  const ComPtr<Target> target = Adopt(std::exchange(target_, nullptr));
  target->Detach();
  data_.reset();
  ::RevokeDragDrop(std::exchange(window_, nullptr));
}

// --- A drag -----------------------------------------------------------------------------------------------

bool DropTarget::IsAsked() { return data_ && events_.IsHeard() && input_.TakesMouse(); }

void DropTarget::Note(DWORD keys, POINTL place) {
  ::POINT at = {place.x, place.y};
  ::ScreenToClient(window_, &at);
  const auto shift =
      ((keys & MK_SHIFT) != 0 ? 1 : 0) | ((keys & MK_CONTROL) != 0 ? 2 : 0) | ((keys & MK_ALT) != 0 ? 4 : 0);
  pointer_ = {ButtonsOf(keys), static_cast<std::int16_t>(shift), static_cast<float>(at.x),
              static_cast<float>(at.y)};
}

// The effect comes as what the source allows and goes back as the handler leaves it. On a control that has
// ended in the handler there is nothing to drop on.
void DropTarget::Ask(State state, DWORD& effect) {
  auto answer = static_cast<Long>(std::exchange(effect, DWORD{DROPEFFECT_NONE}));
  if (!IsAsked()) return;
  const HostObjectRef data = data_;
  marklet_.OLEDragOver(data, answer, pointer_, static_cast<std::int16_t>(state));
  if (target_) effect = static_cast<DWORD>(answer);
}

void DropTarget::Enter(IDataObject* data, DWORD keys, POINTL place, DWORD& effect) {
  data_ = WrapDragData(DragDataObject(ComPtr<IDataObject>(data)));
  Note(keys, place);
  Ask(State::Enter, effect);
}

void DropTarget::Over(DWORD keys, POINTL place, DWORD& effect) {
  Note(keys, place);
  Ask(State::Over, effect);
}

// Where it was last; nobody asks for an effect.
void DropTarget::Leave() {
  DWORD effect = DROPEFFECT_NONE;
  Ask(State::Leave, effect);
  data_.reset();
}

void DropTarget::Drop(DWORD keys, POINTL place, DWORD& effect) {
  Note(keys, place);
  auto answer = static_cast<Long>(std::exchange(effect, DWORD{DROPEFFECT_NONE}));
  const bool asked = IsAsked();
  const HostObjectRef data = std::move(data_);
  data_.reset();
  if (!asked) return;
  marklet_.OLEDragDrop(data, answer, pointer_);
  effect = static_cast<DWORD>(answer);
}

}  // namespace marklet::activex
