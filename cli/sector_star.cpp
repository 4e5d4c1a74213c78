// Fetches the star from the library's exports, which give it once they have shown it through an eye.
#include "cli/sector_star.h"

#include "cli/error.h"
#include "orvanel/orvanel.h"

namespace orvanel::cli {

Plane SectorStar() {
  constexpr std::array<double, ORVANEL_COEFFICIENTS> kFlat{};
  Plane star(ORVANEL_PLANE_SAMPLES);
  OrvanelInputPupil(3.0);  // any eye will do
  if (OrvanelInputZer(kFlat.data()) != 1 || OrvanelGetPattern(star.data()) != 1 ||
      OrvanelGetPatternOriginal(star.data()) != 1) {
    throw Error("not enough memory to draw the star");
  }
  return star;
}

}  // namespace orvanel::cli
