// Computes the engine's wavefront, and the coordinates of its pupil.
#include "optics/wavefront.h"

#include <cstring>

#include "models/classic/workspace.h"
#include "orvanel/sampling.h"

namespace orvanel {

template <Coordinate which>
void OpticsEngine::Workspace::SetCoordinate(LazyPlane& plane) {
  if (plane.exposed()) {
    // Outside the pupil the samples of the host stay.
    WriteCoordinate(which, coordinateDiameter, {plane.data(), pipeline->side()});
    return;
  }
  plane.SetPending(
      [](void* source, double* samples) {
        const Workspace& workspace = *static_cast<Workspace*>(source);
        const PlaneView coordinates = {samples, workspace.pipeline->side()};
        std::memset(static_cast<void*>(samples), 0, coordinates.size() * sizeof *samples);
        WriteCoordinate(which, workspace.coordinateDiameter, coordinates);
      },
      this);
}

void OpticsEngine::synthesizeWavefront(const double* coefficients, double diameter, int includeAstigmatism,
                                       int includeAllSecondOrder, int includeDefocus) {
  psfWavelength = 0.0;
  pupilDiameter = diameter;
  normaliseOutput = 1;
  pupilSamples = PupilSamples(gridSize);

  workspace_->coordinateDiameter = diameter;
  workspace_->SetCoordinate<Coordinate::kColumn>(pupilXPlane);
  workspace_->SetCoordinate<Coordinate::kRow>(pupilYPlane);
  workspace_->pipeline->Synthesize(SelectTerms(coefficients, includeAstigmatism, includeAllSecondOrder, includeDefocus),
                                   {wavefrontPlane.data(), gridSize});
}

}  // namespace orvanel
