// A reference-counted pointer to a plain polymorphic object that lives for one frame.
//
// Two words: the object and a count object beside it. Counts are plain 32-bit integers without atomic operations,
// since only the thread of the render touches them. The last owner frees the object's memory without running a
// destructor, so only objects that own nothing may be held. All memory is that of the global operators.
#pragma once

#include <cstdint>
#include <new>
#include <type_traits>

namespace vindrel {

/// The count that all copies of one pointer share. Starts at 1; at 0 it disposes of the object and of itself.
class SharedCountBase {
 public:
  SharedCountBase() noexcept = default;
  SharedCountBase(const SharedCountBase&) = delete;
  SharedCountBase& operator=(const SharedCountBase&) = delete;
  virtual ~SharedCountBase() = default;

  /// Frees the object that is counted; called once, when the last owner has gone.
  virtual void Dispose() noexcept = 0;

  void AddOwner() noexcept { ++useCount_; }

  /// The caller gives its share back and must not touch the count again.
  void Release() noexcept {
    if (--useCount_ != 0) return;
    Dispose();
    delete this;
  }

 private:
  int32_t useCount_ = 1;
};

/// The count of an object held by a pointer to T, which is where its memory begins.
template <class T>
class SharedCountImpl_P final : public SharedCountBase {
 public:
  explicit SharedCountImpl_P(T* pointer) noexcept : pointer_(pointer) {}

  void Dispose() noexcept override { ::operator delete(static_cast<void*>(pointer_)); }

 private:
  T* pointer_;
};

/// One share in an object. Copying adds an owner. Never empty, and never given another object.
template <class T>
class SharedPointer {
 public:
  /// Takes over an object made by the global `new`, which is freed if there is no memory for its count.
  template <class Derived>
  explicit SharedPointer(Derived* object) : pointer_(object), count_(makeCount(object)) {
    static_assert(std::is_base_of_v<T, Derived>);
    static_assert(std::is_trivially_destructible_v<Derived>, "no destructor runs, so the object must own nothing");
  }

  SharedPointer(const SharedPointer& other) noexcept : pointer_(other.pointer_), count_(other.count_) {
    count_->AddOwner();
  }
  SharedPointer& operator=(const SharedPointer&) = delete;
  ~SharedPointer() { count_->Release(); }

  T& operator*() const noexcept { return *pointer_; }
  T* operator->() const noexcept { return pointer_; }

 private:
  static SharedCountBase* makeCount(T* object) {
    try {
      return new SharedCountImpl_P<T>(object);
    } catch (...) {
      ::operator delete(static_cast<void*>(object));
      throw;
    }
  }

  T* pointer_;
  SharedCountBase* count_;
};

}  // namespace vindrel
