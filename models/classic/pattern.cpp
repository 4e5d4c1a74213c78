// Computes the retinal image of any object plane, transformed at once or in advance for many eyes.
#include <new>
#include <optional>

#include "models/classic/workspace.h"

namespace orvanel {

int OpticsEngine::PatternRetinalImage(double* image, const double* pattern, int n) {
  if (n != gridSize) return 0;
  EnsureOtf();
  workspace_->pipeline->RealImage({pattern, n}, Workspace::ExposedOtf(*this),
                                  Workspace::BrightnessOf(*this, std::nullopt), {image, n});
  return 1;
}

PreparedObject OpticsEngine::Prepare(std::nothrow_t /*unused*/, const double* object) noexcept {
  Pipeline& pipeline = *workspace_->pipeline;
  const auto [firstSide, secondSide] = pipeline.SidesOfPrepared();
  PreparedObject prepared;
  prepared.first_ = GridPlane(std::nothrow, firstSide);
  prepared.second_ = GridPlane(std::nothrow, secondSide);
  GridPlane &first = prepared.first_, &second = prepared.second_;
  if ((firstSide >= 1 && first.data() == nullptr) || (secondSide >= 1 && second.data() == nullptr)) return {};
  try {
    prepared.total_ = pipeline.Prepare({object, gridSize}, {first.data(), firstSide}, {second.data(), secondSide});
  } catch (const std::bad_alloc&) {
    return {};
  }
  return prepared;
}

PreparedObject OpticsEngine::Prepare(const double* object) {
  PreparedObject prepared = Prepare(std::nothrow, object);
  if (prepared.empty() && gridSize >= 1) throw std::bad_alloc();
  return prepared;
}

void OpticsEngine::PreparedRetinalImage(double* image, const PreparedObject& object) {
  EnsureOtf();
  const auto [firstSide, secondSide] = workspace_->pipeline->SidesOfPrepared();
  workspace_->pipeline->PreparedImage({object.first_.data(), firstSide}, {object.second_.data(), secondSide},
                                      Workspace::ExposedOtf(*this), Workspace::BrightnessOf(*this, object.total_),
                                      {image, gridSize});
}

}  // namespace orvanel
