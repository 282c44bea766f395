// The server as a module: entries, factory, unloading.
#include <algorithm>

#include "activex/container.h"

namespace ocx_test {
namespace {

TEST(ServerModule, RefusesOtherClasses) {
  void* object = &object;
  EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, Server::Get().GetClassObject(kEventsId, IID_IClassFactory, &object));
  EXPECT_EQ(nullptr, object);
}

TEST(ServerModule, RefusesUnknownInterfacesOfItsFactory) {
  void* object = &object;
  EXPECT_EQ(E_NOINTERFACE, Server::Get().GetClassObject(kClassId, IID_IOleObject, &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(E_POINTER, Server::Get().GetClassObject(kClassId, IID_IClassFactory, nullptr));
}

TEST(ServerModule, StaysWhileAnythingIsInUse) {
  const Server& server = Server::Get();
  EXPECT_EQ(S_OK, server.CanUnloadNow());
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(S_OK, server.GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  EXPECT_EQ(S_FALSE, server.CanUnloadNow());
  EXPECT_EQ(S_OK, factory->LockServer(TRUE));
  factory.Reset();
  EXPECT_EQ(S_FALSE, server.CanUnloadNow());
  ASSERT_EQ(S_OK, server.GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  EXPECT_EQ(S_OK, factory->LockServer(FALSE));
  factory.Reset();
  EXPECT_EQ(S_OK, server.CanUnloadNow());

  ComPtr<IUnknown> control = CreateControl();
  EXPECT_EQ(S_FALSE, server.CanUnloadNow());
  ComPtr<IEnumConnectionPoints> points;
  ASSERT_EQ(S_OK, As<IConnectionPointContainer>(control)->EnumConnectionPoints(points.GetAddressOf()));
  points->Skip(2);
  control.Reset();
  EXPECT_EQ(S_FALSE, server.CanUnloadNow()) << "an enumerator is in use";
  points.Reset();
  EXPECT_EQ(S_OK, server.CanUnloadNow());
}

// --- Identity ---------------------------------------------------------------------------------------------

constexpr GUID kCategoriesId = {0x4D07FC10, 0xF931, 0x11CE, {0xB0, 0x01, 0x00, 0xAA, 0x00, 0x68, 0x84, 0xE5}};

const IID* const kInterfaces[] = {&IID_IUnknown,
                                  &IID_IDispatch,
                                  &kDispatchId,
                                  &IID_IOleObject,
                                  &IID_IOleControl,
                                  &IID_IOleWindow,
                                  &IID_IOleInPlaceObject,
                                  &IID_IOleInPlaceActiveObject,
                                  &IID_IViewObject,
                                  &IID_IViewObject2,
                                  &IID_IViewObjectEx,
                                  &IID_IPersist,
                                  &IID_IPersistStreamInit,
                                  &IID_IPersistPropertyBag,
                                  &IID_IPersistStorage,
                                  &IID_IConnectionPointContainer,
                                  &IID_IProvideClassInfo,
                                  &IID_IProvideClassInfo2,
                                  &IID_ISupportErrorInfo,
                                  &IID_IQuickActivate,
                                  &IID_ISpecifyPropertyPages,
                                  &IID_IPerPropertyBrowsing,
                                  &kCategoriesId,
                                  &kSafetyId,
                                  &kImageOwnerId,
                                  &IID_IDataObject};

TEST(ControlIdentity, EveryInterfaceLeadsToEveryOtherAndToOneIdentity) {
  const ComPtr<IUnknown> control = CreateControl();
  for (const IID* from : kInterfaces) {
    ComPtr<IUnknown> source;
    ASSERT_EQ(S_OK, control->QueryInterface(*from, reinterpret_cast<void**>(source.GetAddressOf())));
    for (const IID* to : kInterfaces) {
      ComPtr<IUnknown> target;
      EXPECT_EQ(S_OK, source->QueryInterface(*to, reinterpret_cast<void**>(target.GetAddressOf())));
    }
    EXPECT_EQ(control.Get(), As<IUnknown>(source).Get());
  }
  EXPECT_EQ(1u, References(control.Get()));
}

TEST(ControlIdentity, EveryInterfaceRefusesWhatThereIsNotAndANullPlace) {
  const ComPtr<IUnknown> control = CreateControl();
  for (const IID* from : kInterfaces) {
    ComPtr<IUnknown> source;
    ASSERT_EQ(S_OK, control->QueryInterface(*from, reinterpret_cast<void**>(source.GetAddressOf())));
    void* object = &object;
    EXPECT_EQ(E_NOINTERFACE, source->QueryInterface(IID_IStream, &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(E_POINTER, source->QueryInterface(IID_IUnknown, nullptr));
    EXPECT_EQ(3u, source->AddRef()) << "all count for the one object";
    EXPECT_EQ(2u, source->Release());
  }
  EXPECT_EQ(1u, References(control.Get()));
}

// A connection point has an identity of its own, but keeps the control.
TEST(ControlIdentity, AConnectionPointIsAnObjectOfItsOwnThatHoldsTheControl) {
  ComPtr<IConnectionPoint> point;
  {
    const ComPtr<IUnknown> control = CreateControl();
    ASSERT_EQ(S_OK,
              As<IConnectionPointContainer>(control)->FindConnectionPoint(kEventsId, point.GetAddressOf()));
    EXPECT_NE(control.Get(), As<IUnknown>(point).Get());
    EXPECT_FALSE(As<IDispatch>(point));
    EXPECT_EQ(E_POINTER, point->QueryInterface(IID_IUnknown, nullptr));
  }
  EXPECT_EQ(As<IUnknown>(point).Get(), As<IUnknown>(As<IConnectionPoint>(point)).Get());
  ComPtr<IConnectionPointContainer> container;
  EXPECT_EQ(S_OK, point->GetConnectionPointContainer(container.GetAddressOf()));
  EXPECT_TRUE(As<IDispatch>(container));
}

TEST(ControlIdentity, RefusesAnUnknownInterface) {
  const ComPtr<IUnknown> control = CreateControl();
  void* object = &object;
  EXPECT_EQ(E_NOINTERFACE, control->QueryInterface(IID_IStream, &object));
  EXPECT_EQ(nullptr, object);
  EXPECT_EQ(E_POINTER, control->QueryInterface(IID_IUnknown, nullptr));
}

// An object around the control, whose identity the control must take on.
class Outer final : public IUnknown {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (iid == IID_IUnknown) {
      *object = this;
      AddRef();
      return S_OK;
    }
    return inner->QueryInterface(iid, object);
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
  ULONG STDMETHODCALLTYPE Release() override { return --references; }
  ComPtr<IUnknown> inner;
  ULONG references = 0;
};

TEST(ControlIdentity, CanBeAggregated) {
  Outer outer;
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(S_OK, Server::Get().GetClassObject(kClassId, IID_PPV_ARGS(factory.GetAddressOf())));
  void* wrong = nullptr;
  EXPECT_EQ(CLASS_E_NOAGGREGATION, factory->CreateInstance(&outer, IID_IDispatch, &wrong));
  ASSERT_EQ(S_OK, factory->CreateInstance(&outer, IID_PPV_ARGS(outer.inner.GetAddressOf())));
  EXPECT_EQ(0u, outer.references) << "the inner object counts a reference on the outer one";
  {
    const auto object = As<IOleObject>(outer.inner);
    const auto dispatch = As<IDispatch>(outer.inner);
    ASSERT_TRUE(object && dispatch);
    EXPECT_EQ(2u, outer.references);
    EXPECT_EQ(&outer, As<IUnknown>(object).Get());
    EXPECT_EQ(&outer, As<IUnknown>(dispatch).Get());
    PutText(dispatch.Get(), L"Caption", L"inner");
    EXPECT_EQ(L"inner", GetText(dispatch.Get(), L"Caption"));
  }
  EXPECT_EQ(0u, outer.references);
  for (const IID* iid : kInterfaces) {
    if (*iid == IID_IUnknown) continue;
    ComPtr<IUnknown> face;
    ASSERT_EQ(S_OK, outer.QueryInterface(*iid, reinterpret_cast<void**>(face.GetAddressOf())));
    EXPECT_EQ(1u, outer.references) << "it counts for the outer object alone";
    EXPECT_EQ(&outer, As<IUnknown>(face).Get());
    EXPECT_TRUE(As<IOleObject>(face));
  }
  EXPECT_EQ(0u, outer.references);
  outer.inner.Reset();
  factory.Reset();
  EXPECT_EQ(S_OK, Server::Get().CanUnloadNow());
}

// --- What the control says about itself -------------------------------------------------------------------

TEST(ControlIdentity, DescribesItsClass) {
  const ComPtr<IUnknown> control = CreateControl();
  const auto info = As<IProvideClassInfo2>(control);
  ComPtr<ITypeInfo> type;
  ASSERT_EQ(S_OK, info->GetClassInfo(type.GetAddressOf()));
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(S_OK, type->GetTypeAttr(&attributes));
  EXPECT_EQ(TKIND_COCLASS, attributes->typekind);
  EXPECT_EQ(kClassId, attributes->guid);
  type->ReleaseTypeAttr(attributes);
  GUID events = {};
  EXPECT_EQ(S_OK, info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &events));
  EXPECT_EQ(kEventsId, events);
  EXPECT_EQ(E_INVALIDARG, info->GetGUID(77, &events));

  CLSID class_id = {};
  EXPECT_EQ(S_OK, As<IPersistStreamInit>(control)->GetClassID(&class_id));
  EXPECT_EQ(kClassId, class_id);
  EXPECT_EQ(S_OK, As<IOleObject>(control)->GetUserClassID(&class_id));
  EXPECT_EQ(kClassId, class_id);
}

TEST(ControlIdentity, SupportsErrorInformationOnItsDispatchInterface) {
  const auto support = As<ISupportErrorInfo>(CreateControl());
  EXPECT_EQ(S_OK, support->InterfaceSupportsErrorInfo(kDispatchId));
  EXPECT_EQ(S_FALSE, support->InterfaceSupportsErrorInfo(IID_IOleObject));
}

TEST(ControlIdentity, ReportsHowItWantsToBeHosted) {
  DWORD status = 0;
  const auto object = As<IOleObject>(CreateControl());
  ASSERT_EQ(S_OK, object->GetMiscStatus(DVASPECT_CONTENT, &status));
  EXPECT_EQ(
      static_cast<DWORD>(OLEMISC_RECOMPOSEONRESIZE | OLEMISC_CANTLINKINSIDE | OLEMISC_INSIDEOUT |
                         OLEMISC_ACTIVATEWHENVISIBLE | OLEMISC_ACTSLIKELABEL | OLEMISC_SETCLIENTSITEFIRST),
      status);
  LPOLESTR type = nullptr;
  ASSERT_EQ(S_OK, object->GetUserType(USERCLASSTYPE_FULL, &type));
  EXPECT_STREQ(L"Marklet", type);
  CoTaskMemFree(type);
}

}  // namespace
}  // namespace ocx_test
