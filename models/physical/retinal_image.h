// What the eye makes of an object plane: the exact convolution with the image of a point, in light of any spectrum.
#ifndef ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H
#define ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H

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

struct RetinalImage {
  int columns = 0;
  int rows = 0;
  View view = View::kPatient;
  std::vector<double> luminance;  // at the centres of pixels; row-major, row 0 at the top
  double outside = 0.0;           // sum over the pixels beyond the image, of the difference from the surround
};

// The eye as a filter of objects of one size. Owns what it needs; one may be used by several threads.
class ImageFilter {
 public:
  // Error of an image: 1e-4 of the largest difference from the surround. Nothing wraps round: the filter's lattice is
  // so much larger than object and image that light from its next period is below 3e-5. Light is conserved to 1e-12.
  // Refuses sizes whose lattices have more than kLargestLattice a side.
  // Memory: 2 planes of the lattice, and those of OtfLattice while it is made.
  //   workspace  keeps its tables
  static Outcome<ImageFilter> Of(const Eye& eye, const Light& light, const ObjectSize& size, Workspace& workspace);
  static constexpr int kLargestLattice = 8192;

  // The image of an object in linear light. In the view of the retina it is upside down.
  //   luminance  size.rows x size.columns, as the person sees it, row 0 at the top
  Outcome<RetinalImage> ImageOf(const double* luminance, double surround, View view = View::kPatient) const;

  int side() const { return side_; }  // of the lattice, in pixels

 private:
  ImageFilter(const ObjectSize& size, int side);
  void Add(const Beam& beam, const FrequencyLattice& frequencies, const std::vector<double>& re,
           const std::vector<double>& im);

  ObjectSize size_;
  int side_ = 0;
  std::vector<double> re_, im_;  // zero frequency at (0, 0), rows downwards
};

}  // namespace orvanel::physical

#endif  // ORVANEL_MODELS_PHYSICAL_RETINAL_IMAGE_H
