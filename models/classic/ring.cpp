// Draws the broken ring at the scale of the engine's PSF, and prints its trace line.
#include "orvanel/ring.h"

#include <charconv>
#include <cstdio>
#include <string_view>

#include "base/standard_output.h"
#include "models/classic/workspace.h"

namespace orvanel {
namespace {

// One line: the acuity as printf's "%g" gives it in the C locale, a tab, the diameter.
void Trace(double acuity, int diameter) {
  char line[64];
  char* end = std::to_chars(line, line + 32, acuity, std::chars_format::general, 6).ptr;
  *end++ = '\t';
  end = std::to_chars(end, line + 63, diameter).ptr;
  *end++ = '\n';
  WriteOutput(std::string_view(line, end));
  std::fflush(stdout);
}

}  // namespace

void OpticsEngine::DrawRingOptotype(double* plane, int n, double acuity, double* effectiveAcuity,
                                    int gapDirection) const {
  const RingScale scale{n, gridSize, psfHalfWidth, focalLength};
  const int diameter = RingDiameter(scale, acuity);
  Trace(acuity, diameter);
  *effectiveAcuity = EffectiveAcuity(scale, diameter);
  if (n == gridSize) {
    workspace_->pipeline->DrawRing({plane, n}, diameter, gapDirection);
  } else {
    DrawRing(plane, n, diameter, gapDirection);
  }
}

}  // namespace orvanel
