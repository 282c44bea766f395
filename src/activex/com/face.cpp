#include "activex/com/face.h"

namespace marklet::activex {

HRESULT FaceOwner::QueryOuter(REFIID iid, void** object) { return outer_->QueryInterface(iid, object); }
ULONG FaceOwner::AddRefOuter() { return outer_->AddRef(); }
ULONG FaceOwner::ReleaseOuter() { return outer_->Release(); }

Entry::Entry(FaceOwner& owner) : owner_(owner) {
  owner_.AddRefOuter();
  ++owner_.depth_;
}

Entry::~Entry() {
  if (--owner_.depth_ == 0) owner_.LastCallEnds();
  owner_.ReleaseOuter();
}

}  // namespace marklet::activex
