/// A value for each control of an effect, in the units that a person thinks in.
///
/// Starts with the declared defaults. Turning values into what an effect gets is DeliverValue.h's work.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "ae/Pixels.h"
#include "host/Control.h"
#include "host/Image.h"

namespace standin {

struct ById {
  int32_t id = 0;
};

struct ByIndex {
  int32_t index = 0;
};

/// Names a control by its name (the first control with a value that bears it), its id or its index.
class ControlKey {
 public:
  ControlKey(const char* name) : name_(name), kind_(Kind::kName) {}         // NOLINT: implicit by design
  ControlKey(std::string_view name) : name_(name), kind_(Kind::kName) {}    // NOLINT
  ControlKey(const std::string& name) : name_(name), kind_(Kind::kName) {}  // NOLINT
  ControlKey(ById key) : number_(key.id), kind_(Kind::kId) {}               // NOLINT
  ControlKey(ByIndex key) : number_(key.index), kind_(Kind::kIndex) {}      // NOLINT

  /// The control that is meant, or null.
  const Control* find(const std::vector<Control>& controls) const;
  std::string text() const;  ///< for messages

 private:
  enum class Kind { kName, kId, kIndex };
  std::string name_;
  int32_t number_ = 0;
  Kind kind_;
};

/// A place in the layer: pixels at full resolution, 0 at the top left; or, as defaults are, percent of the layer.
struct PointValue {
  double x = 0;
  double y = 0;
  bool percent = false;
  bool operator==(const PointValue&) const = default;
};

/// Which picture a layer parameter shows.
struct LayerValue {
  enum class Source { kNone, kItself, kPicture };
  Source source = Source::kNone;
  /// Of kPicture: the layer at full resolution and at any depth. The host hands it out at the frame's resolution and
  /// depth; at full resolution a picture of the frame's depth is handed out as it is, padding and origin included.
  std::shared_ptr<const Image> picture;

  static LayerValue none() { return {}; }
  static LayerValue itself() { return {Source::kItself, nullptr}; }
  static LayerValue of(Image image) { return {Source::kPicture, std::make_shared<const Image>(std::move(image))}; }
  bool operator==(const LayerValue&) const = default;
};

class ParameterValues {
 public:
  /// Nothing; for commands that need no values.
  ParameterValues() = default;

  /// The defaults of the controls (their number, from 1, must be their order).
  explicit ParameterValues(const std::vector<Control>& controls);

  // Each throws std::out_of_range when there is no such control and std::invalid_argument when it is of another kind.
  // Nothing is checked against ranges: an effect has to live with what old projects hold.
  void setNumber(const ControlKey& key, double value);  ///< sliders, whole and float, in their own units
  void setPopup(const ControlKey& key, int32_t item);   ///< counted from 1
  void setCheckbox(const ControlKey& key, bool on);
  void setAngle(const ControlKey& key, double degrees);
  void setColor(const ControlKey& key, PF_Pixel color);
  void setPoint(const ControlKey& key, double x, double y);  ///< pixels at full resolution
  void setPointPercent(const ControlKey& key, double x, double y);
  void setLayer(const ControlKey& key, LayerValue value);

  double number(const ControlKey& key) const;
  int32_t popup(const ControlKey& key) const;
  bool checkbox(const ControlKey& key) const;
  double angle(const ControlKey& key) const;
  PF_Pixel color(const ControlKey& key) const;
  PointValue point(const ControlKey& key) const;
  LayerValue layer(const ControlKey& key) const;

  /// Whole numbers, doubles, colours, points and layers; nothing for controls without a value. A popup, a check box and
  /// a whole slider are int32_t, an angle (degrees) and a float slider double.
  using Value = std::variant<std::monostate, int32_t, double, PF_Pixel, PointValue, LayerValue>;

  /// By index, 1 to size().
  const Value& value(int32_t index) const { return values_.at(static_cast<size_t>(index - 1)); }
  void setValue(int32_t index, Value value) { values_.at(static_cast<size_t>(index - 1)) = std::move(value); }
  int32_t size() const { return static_cast<int32_t>(values_.size()); }
  const std::vector<Control>& controls() const { return controls_; }

 private:
  const Control& find(const ControlKey& key, std::initializer_list<PF_ParamType> kinds) const;
  template <class T>
  void set(const ControlKey& key, std::initializer_list<PF_ParamType> kinds, T value);
  template <class T>
  const T& get(const ControlKey& key, std::initializer_list<PF_ParamType> kinds) const;

  std::vector<Control> controls_;
  std::vector<Value> values_;
};

}  // namespace standin
