// How a container starts the control off, saves it and loads it. It has three ways, with the same values in
// each. A container that has a bag or a storage is told of every failure; what could be read stays.
#pragma once

#include "activex/com/face.h"
#include "control/marklet.h"
#include "host/property_bag.h"

namespace marklet {
class SavedBag;
}

namespace marklet::activex {

class Extent;
class HostFont;
class PlaceListener;

// Hears when the values are in the container's keeping.
class SaveListener {
 public:
  virtual void Saved() = 0;

 protected:
  ~SaveListener() = default;
};

// What the three interfaces share.
class Persist {
 public:
  Persist(Marklet& marklet, const Extent& extent, PlaceListener& place, SaveListener& listener)
      : marklet_(marklet), extent_(extent), place_(place), listener_(listener) {}

  // A control that has been loaded isn't wiped out: E_UNEXPECTED.
  HRESULT InitNew();
  bool HasBegun() const { return begun_; }  // with InitNew or a whole load

  // Takes the values of a bag. `state` tells what is wrong with the bag itself. After a failure, a lack of
  // memory too, the control has what could be read, may be started anew, and is dirty.
  HRESULT Load(PropertyBag& bag, HRESULT state);

  // Gives the values to a bag.
  HRESULT Save(PropertyBag& bag);

  // The bytes of a stream and of a storage's stream, which hold the control's size too.
  HRESULT LoadFrom(IStream& stream);
  HRESULT SaveTo(IStream& stream);
  HRESULT Measure(ULONGLONG& size);

  // Counts changes, so that one that comes while a container saves isn't lost.
  void SetDirty(bool dirty) { dirty ? ++changes_ : saved_ = changes_; }
  bool IsDirty() const { return changes_ != saved_; }
  unsigned Changes() const { return changes_; }
  void SavedAt(unsigned changes);

 private:
  HRESULT SaveWithExtent(SavedBag& bag);

  Marklet& marklet_;
  const Extent& extent_;
  PlaceListener& place_;
  SaveListener& listener_;
  unsigned changes_ = 0, saved_ = 0;
  bool begun_ = false, loaded_ = false;
};

class PersistStreamFace final : public Face<IPersistStreamInit> {
 public:
  PersistStreamFace(FaceOwner& owner, Persist& persist) : Face(owner), persist_(persist) {}
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP Load(IStream* stream) override;
  STDMETHODIMP Save(IStream* stream, BOOL clear_dirty) override;
  // Exactly what Save would write now.
  STDMETHODIMP GetSizeMax(ULARGE_INTEGER* size) override;
  STDMETHODIMP InitNew() override;

 private:
  Persist& persist_;
};

class PersistBagFace final : public Face<IPersistPropertyBag> {
 public:
  PersistBagFace(FaceOwner& owner, Persist& persist, HostFont& host_font)
      : Face(owner), persist_(persist), host_font_(host_font) {}
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP InitNew() override;
  STDMETHODIMP Load(IPropertyBag* bag, IErrorLog* log) override;
  STDMETHODIMP Save(IPropertyBag* bag, BOOL clear_dirty, BOOL save_all) override;

 private:
  Persist& persist_;
  HostFont& host_font_;
};

// All is read at once, so no storage is held between calls: letting go of it takes no more than not to save.
class PersistStorageFace final : public Face<IPersistStorage> {
 public:
  PersistStorageFace(FaceOwner& owner, Persist& persist) : Face(owner), persist_(persist) {}
  STDMETHODIMP GetClassID(CLSID* class_id) override;
  STDMETHODIMP IsDirty() override;
  STDMETHODIMP InitNew(IStorage* storage) override;
  STDMETHODIMP Load(IStorage* storage) override;
  STDMETHODIMP Save(IStorage* storage, BOOL same_as_load) override;
  STDMETHODIMP SaveCompleted(IStorage* storage) override;
  STDMETHODIMP HandsOffStorage() override;

 private:
  enum class State {
    None,        // no storage so far
    Normal,      // has one
    NoScribble,  // saved, and waits for SaveCompleted
    HandsOff,    // has none until SaveCompleted brings the next
  };
  Persist& persist_;
  State state_ = State::None;
  bool loaded_ = false;
  bool saved_ = false;         // since the last SaveCompleted
  bool same_as_load_ = false;  // as that save was told
  unsigned saved_at_ = 0;      // changes by then
};

}  // namespace marklet::activex
