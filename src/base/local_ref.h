// A counted reference for objects that stay on one thread: std::shared_ptr without its atomic count.
#pragma once

#include <utility>

namespace marklet {

// The base of what a LocalRef holds.
class LocalCounted {
 public:
  LocalCounted() = default;
  LocalCounted(const LocalCounted&) = delete;
  LocalCounted& operator=(const LocalCounted&) = delete;
  virtual ~LocalCounted() = default;

 private:
  friend class LocalRef;
  int references_ = 0;
};

class LocalRef {
 public:
  LocalRef() = default;
  explicit LocalRef(LocalCounted* object) : object_(object) { Hold(); }
  LocalRef(const LocalRef& other) : object_(other.object_) { Hold(); }
  LocalRef(LocalRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  LocalRef& operator=(LocalRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~LocalRef() { Release(); }

  LocalCounted* Get() const { return object_; }

 private:
  void Hold() const {
    if (object_ != nullptr) ++object_->references_;
  }
  void Release() const {
    // The analyzer loses count where one object is held twice.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete)
    if (object_ != nullptr && --object_->references_ == 0) delete object_;
  }

  LocalCounted* object_ = nullptr;
};

}  // namespace marklet
