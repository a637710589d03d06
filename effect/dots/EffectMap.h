// The weight field of an effector: a number for each position on the canvas.
//
// Built once per frame by MakeEffectMap, asked once per dot and effector. The linear and the radial map are geometric,
// LayerEffectMap reads a layer. No map owns anything.
#pragma once

#include <cstdint>
#include <new>
#include <type_traits>

namespace vindrel {

template <class Pixel>
struct EffectorState;

/// Which map an effector has.
enum class EffectMapKind { customLayer, radial, radialMirror, linear, linearMirror };

class BaseEffectMap {
 public:
  /// The weight at a position in canvas pixels: 0.0 for no effect, 1.0 for the full one. Only a float layer can
  /// give more than 1.0 or less than 0.0. Every position has a weight; there is no error.
  virtual double Evaluate(double x, double y) const noexcept = 0;

 protected:
  // Maps are freed without a destructor (see EffectMapPtr), so none is virtual and nobody destroys one by its base.
  BaseEffectMap() = default;
  BaseEffectMap(const BaseEffectMap&) = default;
  BaseEffectMap& operator=(const BaseEffectMap&) = default;
  ~BaseEffectMap() = default;
};

/// The weight by the distance from a line: full behind it, a straight ramp before it.
class LinearEffectMap final : public BaseEffectMap {
 public:
  /// @param x,y           a point of the line, canvas pixels
  /// @param angleDegrees  turn of the line; at 0 the ramp runs upward on the canvas, at 90 to the right. In degrees,
  ///                      because only there a right angle is an exact number
  /// @param size          reach of the map in pixels
  /// @param falloffRatio  share of the reach over which the weight fades; not clamped
  /// @param mirror        the ramp runs to both sides of the line
  LinearEffectMap(double x, double y, double angleDegrees, double size, double falloffRatio, bool mirror) noexcept;

  double Evaluate(double x, double y) const noexcept override;

 private:
  double originX_;
  double originY_;
  bool mirror_;
  double sinAngle_;     ///< exactly 0.0 at multiples of 180 degrees
  double cosAngle_;     ///< exactly 0.0 halfway between them
  double reach_;        ///< pixels
  double fadeLength_;   ///< pixels before the reach over which the weight fades
  double solidLength_;  ///< pixels of full weight
};

/// The weight by the distance from a point: full near it, a raised cosine down to the rim.
class RadialEffectMap final : public BaseEffectMap {
 public:
  /// @param x,y           centre, canvas pixels
  /// @param size          reach of the map in pixels
  /// @param falloffRatio  share of the reach over which the weight fades; not clamped
  /// @param mirror        full weight on the ring at half the reach, fading inward and outward
  RadialEffectMap(double x, double y, double size, double falloffRatio, bool mirror) noexcept;

  double Evaluate(double x, double y) const noexcept override;

 private:
  double originX_;
  double originY_;
  bool mirror_;
  double reach_;        ///< pixels
  double fadeLength_;   ///< pixels over which the weight fades
  double solidLength_;  ///< pixels of full weight
};

// A map is held by a reference-counted pointer of two words: the object and a count object beside it. Counts are plain
// 32-bit integers without atomic operations, since only the thread of the render touches them. The last owner frees the
// object's memory without running a destructor, so only objects that own nothing may be held.

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

using EffectMapPtr = SharedPointer<BaseEffectMap>;

/// The map that an effector asks for, be it enabled or not. A custom layer gives a LayerEffectMap<Pixel>.
/// @param state  the pixels of its layer must outlive the map
/// @param canvasWidth,canvasHeight  pixels; a fitted layer is stretched over them
/// Throws what the global operator new throws.
template <class Pixel>
EffectMapPtr MakeEffectMap(const EffectorState<Pixel>& state, int32_t canvasWidth, int32_t canvasHeight);

}  // namespace vindrel
