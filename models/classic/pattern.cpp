// Any object plane as the eye sees it, at once or prepared for many eyes.
#include <algorithm>
#include <new>

#include "models/classic/workspace.h"
#include "optics/retinal_image.h"
#include "optics/samples.h"
#include "orvanel/transforms.h"

namespace orvanel {

int OpticsEngine::PatternRetinalImage(double* image, const double* pattern, int n) {
  if (n != gridSize) return 0;
  if (workspace_->kernels != nullptr) {
    void* const spectrum = workspace_->memory->planes.object;
    const double total = workspace_->kernels->realRows(pattern, workspace_->tables, workspace_->ScratchOf(), spectrum);
    ImageOf(nullptr, spectrum, total, image);
  } else {
    PlainMemory& memory = *workspace_->plain;
    std::copy_n(pattern, memory.objectReal.size(), memory.objectReal.begin());
    std::fill(memory.objectImag.begin(), memory.objectImag.end(), 0.0);
    FilterThroughEye(memory.objectReal.data(), memory.objectImag.data(), image, Total(memory.objectReal.data(), n));
  }
  return 1;
}

PreparedObject OpticsEngine::Prepare(std::nothrow_t /*unused*/, const double* object) noexcept {
  PreparedObject prepared;
  if (workspace_->kernels != nullptr) {
    prepared.first_ = GridPlane(std::nothrow, kSpectrumSide);
    if (prepared.empty()) return {};
    prepared.total_ =
        workspace_->kernels->realTransform(object, workspace_->tables, workspace_->ScratchOf(), prepared.first_.data());
  } else {
    prepared.first_ = GridPlane(std::nothrow, gridSize);
    prepared.second_ = GridPlane(std::nothrow, gridSize);
    if (prepared.first_.data() == nullptr || prepared.second_.data() == nullptr) return {};
    std::copy_n(object, prepared.first_.size(), prepared.first_.begin());
    prepared.total_ = Total(object, gridSize);
    try {
      Fft2(prepared.first_.data(), prepared.second_.data(), gridSize, 0);
    } catch (const std::bad_alloc&) {
      return {};
    }
  }
  return prepared;
}

PreparedObject OpticsEngine::Prepare(const double* object) {
  PreparedObject prepared = Prepare(std::nothrow, object);
  if (prepared.empty() && gridSize >= 1) throw std::bad_alloc();
  return prepared;
}

void OpticsEngine::PreparedRetinalImage(double* image, const PreparedObject& object) {
  if (workspace_->kernels != nullptr) {
    ImageOf(object.first_.data(), nullptr, object.total_, image);
  } else {
    PlainMemory& memory = *workspace_->plain;
    std::copy(object.first_.begin(), object.first_.end(), memory.objectReal.begin());
    std::copy(object.second_.begin(), object.second_.end(), memory.objectImag.begin());
    ImageOfPlanes(memory.objectReal.data(), memory.objectImag.data(), memory.productReal.data(), object.total_, image);
  }
}

}  // namespace orvanel
