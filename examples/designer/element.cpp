#include "element.h"

#include "examples/shared/counted.h"

namespace designer {

// Hears of changes and of the end. Whoever still holds it when the element is gone tells nobody.
class Element::Watcher final : public example::Counted<IPropertyNotifySink, IAdviseSink> {
 public:
  Watcher(ElementOwner& owner, Element& element) : owner_(owner), element_(&element) {}
  void Detach() { element_ = nullptr; }

  STDMETHODIMP OnChanged(DISPID id) override {
    if (element_) owner_.OnChanged(*element_, id);
    return S_OK;
  }
  STDMETHODIMP OnRequestEdit(DISPID) override { return S_OK; }

  STDMETHODIMP_(void) OnDataChange(FORMATETC*, STGMEDIUM*) override {}
  STDMETHODIMP_(void) OnViewChange(DWORD, LONG) override {}
  STDMETHODIMP_(void) OnRename(IMoniker*) override {}
  STDMETHODIMP_(void) OnSave() override {}
  STDMETHODIMP_(void) OnClose() override {
    if (element_) owner_.OnClosed(*element_);
  }

 private:
  ElementOwner& owner_;
  Element* element_;
};

namespace {

example::Ambients Designing(const std::wstring& name) { return {false, name, COLOR_BTNFACE, COLOR_BTNTEXT}; }

LPARAM NextNumber() {
  static LPARAM last = 0;
  return ++last;
}

}  // namespace

RECT RectOf(const Place& place) { return {place.left, place.top, place.Right(), place.Bottom()}; }
Place PlaceOf(const RECT& rect) {
  return {static_cast<int>(rect.left), static_cast<int>(rect.top), static_cast<int>(rect.right - rect.left),
          static_cast<int>(rect.bottom - rect.top)};
}

Element::Element(ElementOwner& owner, HWND surface, const CLSID& id, const std::wstring& name,
                 const Place& place, const example::Start& start)
    : number_(NextNumber()),
      id_(id),
      name_(name),
      control_(id, surface, RectOf(place), Designing(name), start) {
  try {
    control_.Activate();
  } catch (HRESULT) {  // it is drawn instead
  }
  properties_ = PropertiesOf(control_.Properties());
  watcher_ = new Watcher(owner, *this);
  Watch();
  control_.ItsSite().on_placed = [this, &owner] { owner.OnPlaced(*this); };
  control_.ItsSite().on_pages = [this, &owner] { return owner.OnPages(*this); };
}

Element::~Element() {
  watcher_->Detach();
  if (changes_) changes_->Unadvise(changes_cookie_);
  if (advise_cookie_) control_.Object().Unadvise(advise_cookie_);
}

// A control may lack either.
void Element::Watch() {
  example::ComPtr<IConnectionPointContainer> points;
  if (SUCCEEDED(control_.Object().QueryInterface(IID_PPV_ARGS(&points))) &&
      SUCCEEDED(points->FindConnectionPoint(IID_IPropertyNotifySink, &changes_)) &&
      FAILED(changes_->Advise(static_cast<IPropertyNotifySink*>(watcher_.Get()), &changes_cookie_)))
    changes_.Reset();
  if (FAILED(control_.Object().Advise(static_cast<IAdviseSink*>(watcher_.Get()), &advise_cookie_)))
    advise_cookie_ = 0;
}

Place Element::GetPlace() const { return PlaceOf(const_cast<Element*>(this)->control_.ItsSite().Place()); }

void Element::Move(const Place& place) { control_.Move(RectOf(place)); }

void Element::Paint(HDC dc) {
  RECT rect = RectOf(GetPlace());
  if (SUCCEEDED(OleDraw(&control_.Object(), DVASPECT_CONTENT, dc, &rect))) return;
  FillRect(dc, &rect, GetSysColorBrush(COLOR_WINDOW));
  FrameRect(dc, &rect, GetSysColorBrush(COLOR_BTNSHADOW));
  SetBkMode(dc, TRANSPARENT);
  DrawTextW(dc, name_.c_str(), -1, &rect,
            DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

}  // namespace designer
