// Forms the images of complex objects, stage after stage, for all pipelines.
#include "optics/pipeline/pipeline.h"

#include "optics/retinal_image.h"
#include "orvanel/transforms.h"

namespace orvanel {

void Pipeline::ComplexImage(ComplexView object, ConstComplexView otf, const Brightness& brightness, PlaneView image) {
  Transform(object, 0);
  ImageOfSpectrum(object, otf, brightness, image);
}

void Pipeline::ImageOfSpectrum(ComplexView spectrum, ConstComplexView otf, const Brightness& brightness,
                               PlaneView image) {
  MultiplyByMirroredOtf(spectrum, otf);
  Transform(spectrum, 1);
  const PlaneView intensity = Spare();
  ShiftedPowerSpectrum(intensity.samples, spectrum.re.samples, spectrum.im.samples, side_);
  if (brightness.stretched) {
    Stretch(intensity, image);
  } else {
    KeepTotal(intensity, brightness.total.value_or(0.0), image);
  }
}

}  // namespace orvanel
