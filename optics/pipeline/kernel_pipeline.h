// Declares the pipeline of the 256 grid, which runs vector kernels that fuse the stages.
#ifndef ORVANEL_OPTICS_PIPELINE_KERNEL_PIPELINE_H
#define ORVANEL_OPTICS_PIPELINE_KERNEL_PIPELINE_H

#include <cstdint>

#include "optics/kernels/kernels.h"
#include "optics/pipeline/pipeline.h"

namespace orvanel {

// The memory of a KernelPipeline. The scratch memory, the object and the spare plane do not outlast an operation.
struct alignas(64) KernelMemory {
  unsigned char plane[kPlaneBytes];
  unsigned char lines[kLinesBytes];
  double intensity[kKernelGrid * kIntensityPitch];  // of the PSF last formed
  HalfSpectrum transferFunctions[2];
  HalfSpectrum object;
};

class KernelPipeline final : public Pipeline {
 public:
  static constexpr std::uint64_t kSamples = sizeof(KernelMemory) / sizeof(double);

  KernelPipeline(const Kernels& kernels, KernelMemory& memory);

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
  bool HoldsTransferFunctions() const override { return true; }
  void RealImage(ConstPlaneView object, const std::optional<ConstComplexView>& otf, const Brightness& brightness,
                 PlaneView image) override;
  PreparedSides SidesOfPrepared() const override;
  double Prepare(ConstPlaneView object, PlaneView first, PlaneView second) override;
  void PreparedImage(ConstPlaneView first, ConstPlaneView second, const std::optional<ConstComplexView>& otf,
                     const Brightness& brightness, PlaneView image) override;
  void Transform(ComplexView planes, int direction) override;
  void CentredTransform(ComplexView planes, int direction, int log2n) override;
  void DrawRing(PlaneView plane, int diameter, int gapDirection) const override;
  PlaneView Spare() override;

 private:
  HalfSpectrum& OfMtf() const { return memory_.transferFunctions[ofMtf_]; }
  HalfSpectrum& OfImages() const { return memory_.transferFunctions[ofImages_]; }
  void Image(const ObjectSpectrum& object, const std::optional<ConstComplexView>& otf, const Brightness& brightness,
             double ownTotal, PlaneView image);

  const Kernels& kernels_;
  const Tables& tables_;
  KernelMemory& memory_;
  Scratch scratch_;
  Recentring psf_;  // from the intensity to the PSF last formed

  // Which of the two half spectra is the transfer function of the MTF, and which that of images. They are the same one
  // if both belong to the same PSF. A new one is written where it leaves the other kind as it is.
  int ofMtf_ = 0;
  int ofImages_ = 1;
  bool mtfIsOfPsf_ = false;  // the transfer function of the MTF belongs to the PSF last formed
};

}  // namespace orvanel

#endif  // ORVANEL_OPTICS_PIPELINE_KERNEL_PIPELINE_H
