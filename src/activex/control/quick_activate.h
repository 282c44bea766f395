// Loading in one call what takes a container a dozen.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class ConnectionPointContainer;

class QuickActivateFace final : public Face<IQuickActivate> {
 public:
  QuickActivateFace(FaceOwner& owner, IOleObject& ole_object, IViewObjectEx& view,
                    ConnectionPointContainer& connections)
      : Face(owner), ole_object_(ole_object), view_(view), connections_(connections) {}
  STDMETHODIMP QuickActivate(QACONTAINER* container, QACONTROL* control) override;
  STDMETHODIMP SetContentExtent(LPSIZEL size) override;
  STDMETHODIMP GetContentExtent(LPSIZEL size) override;

 private:
  IOleObject& ole_object_;
  IViewObjectEx& view_;
  ConnectionPointContainer& connections_;
};

}  // namespace marklet::activex
