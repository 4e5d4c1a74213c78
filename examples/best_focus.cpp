// Finds the best focus of an eye, and prints Strehl ratio and spread of white light before and after.
//
//     cmake -S . -B build && cmake --build build
//     build/best_focus standard_observer.txt
//
// The eye is a text file: the pupil value, then coefficients with the indices and unit of OpticsEngine.
#include <orvanel/optics_engine.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <vector>

namespace {

struct Eye {
  double pupil = 0.0;
  std::vector<double> coefficients = std::vector<double>(orvanel::kCoefficients);
};

bool Read(const char* path, Eye& eye) {
  std::ifstream file(path);
  if (!(file >> eye.pupil)) return false;
  for (double& coefficient : eye.coefficients) file >> coefficient;  // missing ones are 0
  return true;
}

// The radius in samples that contains half of the light above the centre; only there all samples have the same scale.
int HalfLightRadius(const orvanel::GridPlane& psf) {
  const int centre = psf.side() / 2;
  double total = 0.0;
  std::vector<double> rings(psf.size());
  for (int row = 0; row < centre; ++row) {
    for (int column = 0; column < psf.side(); ++column) {
      rings[static_cast<std::size_t>(std::hypot(row - centre, column - centre))] += psf(row, column);
      total += psf(row, column);
    }
  }
  int radius = 0;
  for (double inside = 0.0; inside < 0.5 * total; ++radius) inside += rings[static_cast<std::size_t>(radius)];
  return radius;
}

// Prints the results of the engine's current point spread function.
void Report(const char* name, double defocus, orvanel::OpticsEngine& engine) {
  const double strehl = engine.strehlRatio;
  orvanel::GridPlane psf(engine.gridSize);
  double spacing = 0.0;
  engine.PolychromaticPsf(psf.data(), &spacing, 0);
  std::printf("%s: defocus %.4f um, Strehl ratio %.4f, half of white light within %.1f um\n", name, 1e3 * defocus,
              strehl, 1e3 * spacing * HalfLightRadius(psf));
}

}  // namespace

int main(int argc, char** argv) {
  Eye eye;
  if (argc != 2 || !Read(argv[1], eye)) {
    std::fprintf(stderr, "usage: best_focus EYE.txt\n");
    return 2;
  }
  orvanel::OpticsEngine engine;
  orvanel::GridPlane psf(engine.gridSize);
  double spacing = 0.0;
  double strehl = 0.0;
  engine.synthesizeWavefront(eye.coefficients.data(), eye.pupil, 1, 1, 1);
  engine.ComputePsf(orvanel::kWavelength, psf.data(), &spacing, &strehl, engine.gridSize);
  Report("as measured", eye.coefficients[4], engine);

  const orvanel::FocusResult best = engine.OptimiseFocus(eye.coefficients.data(), eye.pupil);
  Report("at its best", best.coefficients[4], engine);
  return best.converged ? 0 : 1;
}
