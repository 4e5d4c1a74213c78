// Wavefront of an engine, and the coordinates of its pupil.
#include "optics/wavefront.h"

#include <cstring>

#include "models/classic/workspace.h"
#include "optics/samples.h"
#include "orvanel/sampling.h"

namespace orvanel {
namespace {

// The coordinate on the samples of the pupil, 0 elsewhere.
template <Coordinate which>
void WriteCoordinatePlane(void* source, double* plane) {
  const SampledPupil& pupil = *static_cast<const SampledPupil*>(source);
  std::memset(static_cast<void*>(plane), 0, SampleCount(pupil.gridSize) * sizeof *plane);
  WriteCoordinate(pupil, which, plane);
}

}  // namespace

void OpticsEngine::synthesizeWavefront(const double* coefficients, double diameter, int includeAstigmatism,
                                       int includeAllSecondOrder, int includeDefocus) {
  const int n = gridSize;
  psfWavelength = 0.0;
  pupilDiameter = diameter;
  normaliseOutput = 1;
  pupilSamples = PupilSamples(n);

  // Whoever has looked at the coordinates finds outside the pupil what he left there.
  SampledPupil& pupil = workspace_->pupil;
  pupil = {n, pupilSamples, pupilDiameter};
  if (pupilXPlane.looked()) {
    WriteCoordinate(pupil, Coordinate::kColumn, pupilXPlane.data());
  } else {
    pupilXPlane.Due(WriteCoordinatePlane<Coordinate::kColumn>, &pupil);
  }
  if (pupilYPlane.looked()) {
    WriteCoordinate(pupil, Coordinate::kRow, pupilYPlane.data());
  } else {
    pupilYPlane.Due(WriteCoordinatePlane<Coordinate::kRow>, &pupil);
  }

  const SelectedTerms terms = SelectTerms(coefficients, includeAstigmatism, includeAllSecondOrder, includeDefocus);
  if (workspace_->kernels != nullptr) {
    workspace_->kernels->synthesize(terms.coefficients.data(), terms.firstOrder, wavefrontPlane.data());
  } else {
    SynthesizeWavefront(terms, n, wavefrontPlane.data());
  }
}

}  // namespace orvanel
