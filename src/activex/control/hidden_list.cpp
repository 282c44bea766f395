#include "activex/control/hidden_list.h"

#include "activex/automation/image_list.h"
#include "activex/automation/image_owner.h"
#include "activex/automation/late_bound.h"
#include "activex/automation/value_conversion.h"
#include "activex/control/ole_bag.h"

namespace marklet::activex {

class ConstituentsFace::HiddenList final : public LateBound<HiddenList>,
                                           public IPersistPropertyBag,
                                           public IOwnHiddenList {
 public:
  explicit HiddenList(ConstituentsFace& face) : face_(face) { face_.AddRef(); }
  ~HiddenList() override {
    face_.hidden_list_ = nullptr;
    face_.Release();  // maybe the control's last
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    if (!object) return E_POINTER;
    if (iid == __uuidof(IPersist) || iid == __uuidof(IPersistPropertyBag)) {
      *object = static_cast<IPersistPropertyBag*>(this);
    } else if (iid == IOwnHiddenList::kIid) {
      *object = static_cast<IOwnHiddenList*>(this);
    } else {
      return LateBound::QueryInterface(iid, object);
    }
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return LateBound::AddRef(); }
  STDMETHODIMP_(ULONG) Release() override { return LateBound::Release(); }

  InternalAlphaImageList& List() override { return face_.marklet_.InternalAlphaImageList1(); }

  STDMETHODIMP GetClassID(CLSID* class_id) override {
    if (!class_id) return E_POINTER;
    *class_id = CLSID_NULL;
    return E_NOTIMPL;
  }
  STDMETHODIMP InitNew() override {
    List().InitProperties();
    return S_OK;
  }
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override {
    if (!bag) return E_POINTER;
    const ComPtr<IPersistPropertyBag> alive(this);  // the bag may let go of it
    return Guarded([&] {
      OleBag ole_bag(face_.host_font_, *bag, log, false);
      return List().ReadProperties(ole_bag) ? S_OK : E_OUTOFMEMORY;
    });
  }
  STDMETHODIMP Save(IPropertyBag* bag, BOOL, BOOL save_all) override {
    if (!bag) return E_POINTER;
    const ComPtr<IPersistPropertyBag> alive(this);  // the bag may let go of it
    return Guarded([&] {
      OleBag ole_bag(face_.host_font_, *bag, nullptr, save_all != FALSE);
      return List().WriteProperties(ole_bag) ? ole_bag.Written() : E_OUTOFMEMORY;
    });
  }

  static const Member kMembers[1];

 private:
  // Nothing, and no failure, where there is no such image.
  HRESULT GetIcoBytes(const DISPPARAMS& parameters, VARIANT& result) {
    Value key;
    const HRESULT outcome = ValueFromVariant(parameters.rgvarg[0], ValueType::Text, key);
    if (FAILED(outcome)) return outcome;
    result.pdispVal = ImageObject(List().GetIcoBytes(std::get<std::u16string>(key))).Detach();
    result.vt = VT_DISPATCH;
    return S_OK;
  }

  ConstituentsFace& face_;
};

const ConstituentsFace::HiddenList::Member ConstituentsFace::HiddenList::kMembers[] = {
    {"GetIcoBytes", 1, 1, &HiddenList::GetIcoBytes}};

HRESULT ConstituentsFace::InternalAlphaImageList1(IUnknown** list) {
  if (!list) return E_POINTER;
  *list = nullptr;
  return Call([&] {
    if (hidden_list_) {
      hidden_list_->AddRef();
    } else {
      hidden_list_ = new HiddenList(*this);
    }
    *list = static_cast<IDispatch*>(hidden_list_);
    return S_OK;
  });
}

}  // namespace marklet::activex
