#pragma once

#include <support/Api.h>
#include <support/Limits.h>

#include <memory>

namespace XRF_RTL2LL {

struct ModelState;

/// The registries, counters and storage of one design's objects. A process has one model unless
/// its host makes more: the static functions of the classes, and `new`, act on the thread's current
/// model. A design remembers the model it was made in.
///
///     Model second;
///     ModelScope scope(second);
///     Design design;             // independent of every design of another model
///
/// One thread at a time may change a model; different models are independent of each other.
class XRF_API Model {
 public:
  Model();
  /// Frees every object of the model.
  ~Model();
  Model(const Model&) = delete;
  Model& operator=(const Model&) = delete;

  /// What the files that are read into the model from now on may ask for. `resetModel` restores the
  /// usual limits.
  void setLimits(const Limits& limits);
  Limits getLimits() const;

 private:
  friend struct ModelState;
  friend XRF_API void resetModel();
  std::shared_ptr<ModelState> m_state;
};

/// Makes a model the calling thread's current one for a scope.
class XRF_API ModelScope {
 public:
  explicit ModelScope(Model& model);
  ~ModelScope();
  ModelScope(const ModelScope&) = delete;
  ModelScope& operator=(const ModelScope&) = delete;

 private:
  Model* m_previous;
  ModelState* m_previous_state;
};

/// Frees all objects of the current model and zeroes its counters. Pointers into it become invalid;
/// using a design that was made in it is a fatal error from then on.
XRF_API void resetModel();

}  // namespace XRF_RTL2LL
