// Loading in one call what takes a container a dozen.
#pragma once

#include "activex/com/face.h"

namespace marklet::activex {

class QuickActivateFace final : public Face<IQuickActivate> {
 public:
  using Face::Face;
  STDMETHODIMP QuickActivate(QACONTAINER* container, QACONTROL* control) override;
  STDMETHODIMP SetContentExtent(LPSIZEL size) override;
  STDMETHODIMP GetContentExtent(LPSIZEL size) override;
};

}  // namespace marklet::activex
