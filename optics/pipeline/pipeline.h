// Declares the pipeline from a wavefront to its images, in the operations that an implementation may fuse.
#ifndef ORVANEL_OPTICS_PIPELINE_PIPELINE_H
#define ORVANEL_OPTICS_PIPELINE_PIPELINE_H

#include <optional>

#include "optics/view.h"
#include "optics/wavefront.h"
#include "orvanel/psf_peak.h"

namespace orvanel {

// How an image is scaled: stretched to span 0 .. 1; or to a total and clipped to 0 .. 1. By default the total is that
// of the object.
struct Brightness {
  bool stretched = false;
  std::optional<double> total{};
};

// One implementation for one grid. It holds one PSF and two transfer functions, those of the MTF and of images, in
// memory that it is given. All planes are side x side.
class Pipeline {
 public:
  Pipeline(const Pipeline&) = delete;
  Pipeline& operator=(const Pipeline&) = delete;
  virtual ~Pipeline() = default;

  int side() const { return side_; }

  // ---- Wavefront to PSF

  // The wavefront of these terms inside the pupil, kWavefrontOutside outside.
  virtual void Synthesize(const SelectedTerms& terms, PlaneView wavefront) = 0;

  // Forms the PSF of a wavefront and returns its peak before normalisation, in the unit of StrehlReference; 0 for a PSF
  // without light, which is zero on all samples.
  virtual double FormPsf(ConstPlaneView wavefront, double wavelength) = 0;

  // The same peak. Does not form a PSF.
  virtual double PeakIntensity(ConstPlaneView wavefront, double wavelength) = 0;

  // Writes the PSF last formed, peak 1 at the centre; zero before the first.
  virtual void WritePsf(PlaneView psf) const = 0;

  // PeakBetweenSamples of the PSF last formed; on other grids than 256, its brightest sample.
  virtual PsfPeak PeakBetweenSamples() const = 0;

  // ---- PSF to transfer functions

  // Forms the transfer function of the MTF from the PSF last formed. WriteMtf writes its moduli over that at zero
  // frequency, and WritePhase its angles; zero frequency is at the centre.
  virtual void FormMtf() = 0;
  virtual void WriteMtf(PlaneView mtf) const = 0;
  virtual void WritePhase(PlaneView phase) const = 0;

  // Forms the transfer function of images from the PSF last formed, or from a PSF in a plane. WriteOtfReal and
  // WriteOtfImag write its parts; zero frequency is at (0, 0).
  virtual void FormOtf() = 0;
  virtual void FormOtf(ConstPlaneView psf) = 0;
  virtual void WriteOtfReal(PlaneView re) const = 0;
  virtual void WriteOtfImag(PlaneView im) const = 0;

  // True if each transfer function is held until the next of its kind is formed. If false, other operations overwrite
  // it: its owner then writes it
  // to planes at once, and passes these planes to the images.
  virtual bool HoldsTransferFunctions() const = 0;

  // ---- Object to image

  // The retinal image of a real object through the transfer function in these planes; without planes, through the one
  // last formed.
  virtual void RealImage(ConstPlaneView object, const std::optional<ConstComplexView>& otf,
                         const Brightness& brightness, PlaneView image) = 0;

  // The same of an object transformed in advance. Prepare fills two planes of PreparedSides samples a side and returns
  // the object's total; a side of 0 needs no plane. The brightness of such an image has its total.
  struct PreparedSides {
    int first;
    int second;
  };
  virtual PreparedSides SidesOfPrepared() const = 0;
  virtual double Prepare(ConstPlaneView object, PlaneView first, PlaneView second) = 0;
  virtual void PreparedImage(ConstPlaneView first, ConstPlaneView second, const std::optional<ConstComplexView>& otf,
                             const Brightness& brightness, PlaneView image) = 0;

  // The same of a complex object, which is used up. The brightness has its total.
  void ComplexImage(ComplexView object, ConstComplexView otf, const Brightness& brightness, PlaneView image);

  // ---- Tools

  // Fft2 and CentredFft2 of transforms.h.
  virtual void Transform(ComplexView planes, int direction) = 0;
  virtual void CentredTransform(ComplexView planes, int direction, int log2n) = 0;

  // DrawRing of ring.h.
  virtual void DrawRing(PlaneView plane, int diameter, int gapDirection) const = 0;

  // A plane for the length of an operation. Image operations overwrite it.
  virtual PlaneView Spare() = 0;

 protected:
  explicit Pipeline(int side) : side_(side) {}

  // The image of an object's spectrum, which is used up.
  void ImageOfSpectrum(ComplexView spectrum, ConstComplexView otf, const Brightness& brightness, PlaneView image);

 private:
  int side_;
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PIPELINE_PIPELINE_H
