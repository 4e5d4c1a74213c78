// Computes the retinal image of an object plane: the exact convolution with the image of a point, in any light.
#ifndef ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H
#define ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "models/physical/eye.h"
#include "models/physical/light.h"
#include "models/physical/outcome.h"
#include "models/physical/point_spread.h"

namespace orvanel::physical {

// The object's pixels are squares of one luminance each; what surrounds them has one luminance without end.
struct ObjectSize {
  int columns = 0;
  int rows = 0;
  double pixelArcmin = 0.0;
  int margin = 0;  // pixels that the image has more than the object, on every side
};

// In magnitude. The sums over an object and the products of the filter stay finite.
constexpr double kLargestLuminance = 1e100;

struct RetinalImage {
  int columns = 0;
  int rows = 0;
  View view = View::kPatient;
  std::vector<double> luminance;  // at the centres of pixels; row-major, row 0 at the top
  double outside = 0.0;           // sum over the pixels beyond the image, of the difference from the surround
};

// The eye as a filter of objects of one size. Copies share their tables; several threads may use one.
class ImageFilter {
 public:
  // Error of an image: 1e-4 of the largest difference from the surround. Nothing wraps round: the lattice has a guard
  // band, chosen from the rays of this eye, behind which the next period sends less than 7e-5 to any pixel. The
  // smooth light that goes farther is filtered on a coarse grid without period. Light is conserved to 1e-12.
  // Refuses sizes whose lattices, of pixels or of frequencies up to the cut-off, have more than kLargestLattice a side.
  // Memory: a plane of the lattice; while it is made, 2 planes of the frequencies and those of OtfLattice.
  //   workspace  keeps its tables
  //   afterLine  called after each line of the light, if it is not empty; it may throw
  static Outcome<ImageFilter> Of(const Eye& eye, const Light& light, const ObjectSize& size, Workspace& workspace,
                                 const std::function<void()>& afterLine = {});
  static constexpr int kLargestLattice = 8192;

  // The image of an object in linear light. In the view of the retina it is upside down.
  //   luminance  size.rows x size.columns, as the person sees it, row 0 at the top
  //   workspace  for memory: that of the calling thread, with the kernels of the one that made the filter
  Outcome<RetinalImage> ImageOf(const double* luminance, double surround, View view, Workspace& workspace) const;

  int side() const;  // of the lattice, in pixels

 private:
  struct Tables;
  explicit ImageFilter(std::shared_ptr<const Tables> tables) : tables_(std::move(tables)) {}

  std::shared_ptr<const Tables> tables_;
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H
