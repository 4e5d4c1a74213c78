// Declares the pipeline for grids of any side: the portable stages one after the other.
#ifndef ORVANEL_OPTICS_PIPELINE_PORTABLE_PIPELINE_H
#define ORVANEL_OPTICS_PIPELINE_PORTABLE_PIPELINE_H

#include <cstdint>

#include "optics/pipeline/pipeline.h"

namespace orvanel {

// Sides that are no power of two are reported by the transforms, and their planes are not transformed.
class PortablePipeline final : public Pipeline {
 public:
  static constexpr std::uint64_t kPlanes = 4;

  // Works in kPlanes planes, one after the other, each with the offset `pitch` from the last.
  PortablePipeline(int side, double* memory, std::uint64_t pitch);

  void Synthesize(const SelectedTerms& terms, PlaneView wavefront) override;
  double FormPsf(ConstPlaneView wavefront, double wavelength) override;
  double PeakIntensity(ConstPlaneView wavefront, double wavelength) override;
  void WritePsf(PlaneView psf) const override;
  PsfPeak PeakBetweenSamples() const override;
  void FormMtf() override;
  void WriteMtf(PlaneView mtf) const override;
  void WritePhase(PlaneView phase) const override;
  void FormOtf() override;
  void FormOtf(ConstPlaneView psf) override;
  void WriteOtfReal(PlaneView re) const override;
  void WriteOtfImag(PlaneView im) const override;
  bool HoldsTransferFunctions() const override { return false; }
  void RealImage(ConstPlaneView object, const std::optional<ConstComplexView>& otf, const Brightness& brightness,
                 PlaneView image) override;
  PreparedSides SidesOfPrepared() const override { return {side(), side()}; }
  double Prepare(ConstPlaneView object, PlaneView first, PlaneView second) override;
  void PreparedImage(ConstPlaneView first, ConstPlaneView second, const std::optional<ConstComplexView>& otf,
                     const Brightness& brightness, PlaneView image) override;
  void Transform(ComplexView planes, int direction) override;
  void CentredTransform(ComplexView planes, int direction, int log2n) override;
  void DrawRing(PlaneView plane, int diameter, int gapDirection) const override;
  PlaneView Spare() override { return spare_; }

 private:
  // The intensity of a wavefront's field, zero frequency at the centre.
  void WriteIntensity(ConstPlaneView wavefront, double wavelength, PlaneView intensity);

  ComplexView field_;  // of a transform: a pupil, a transfer function or an object
  PlaneView spare_;
  PlaneView intensity_;  // of the PSF last formed, the brightest sample at the centre
  double scale_ = 0.0;   // from intensity to PSF
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PIPELINE_PORTABLE_PIPELINE_H
