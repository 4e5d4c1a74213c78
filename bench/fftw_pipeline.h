// Declares a peer: the same results, computed as a careful user of FFTW would. One object is one eye.
//
// The implementation is careful in these ways. Plans are measured once (FFTW_PATIENT) and reused. FFTW aligns the
// memory. Real planes are transformed as real planes, so that a half spectrum is enough for MTF, phase and image. The
// values of the polynomials and the transform of the star are computed once, the transfer function once for each eye.
// Scales are part of other passes. Sine, cosine, arc tangent and square root are the C library's, and the compiler
// vectorises the loops. Nothing depends on the internals of a transform.
#ifndef ORVANEL_BENCH_FFTW_PIPELINE_H
#define ORVANEL_BENCH_FFTW_PIPELINE_H

#include <fftw3.h>

#include <array>
#include <memory>
#include <vector>

namespace orvanel::bench {

// The unit of the tables: a complex transform of 256 x 256, out of place.
class UnitTransform {
 public:
  UnitTransform();
  ~UnitTransform();
  UnitTransform(const UnitTransform&) = delete;
  UnitTransform& operator=(const UnitTransform&) = delete;

  void Run() { fftw_execute(plan_); }

 private:
  fftw_complex* in_;
  fftw_complex* out_;
  fftw_plan plan_;
};

class FftwPipeline {
 public:
  // The star is the object of Pattern.
  explicit FftwPipeline(const double* star);
  ~FftwPipeline();
  FftwPipeline(const FftwPipeline&) = delete;
  FftwPipeline& operator=(const FftwPipeline&) = delete;

  // Computes wavefront, PSF, MTF, and the phase if `phase` is not null.
  void Input(const double* coefficients, double pupil_mm, double* psf, double* mtf, double* phase);

  // Computes only the Strehl ratio.
  double Strehl(const double* coefficients);

  // Computes the ring and its retinal image in the eye of the last Input. Prints the line that the library prints.
  void Ring(double acuity, int gapDirection, double* optotype, double* image);

  // Computes the retinal image of the star in the eye of the last Input, stretched to span 0 to 1 or with its light
  // kept.
  void Pattern(bool stretched, double* image);

 private:
  void FormIntensity(const double* coefficients);
  void ImageOf(const fftw_complex* object, double objectTotal, bool stretched, double* image);

  struct Release {
    void operator()(void* memory) const { fftw_free(memory); }
  };
  using RealPlane = std::unique_ptr<double[], Release>;
  using ComplexPlane = std::unique_ptr<fftw_complex[], Release>;
  static ComplexPlane AllocateComplex(std::size_t count) { return ComplexPlane(fftw_alloc_complex(count)); }

  std::vector<int> inside_;    // samples of the pupil in a plane
  std::vector<double> terms_;  // values of one polynomial after the other on these samples
  double halfWidth_mm_ = 0.0;

  ComplexPlane pupil_;
  ComplexPlane field_;
  RealPlane intensity_;
  RealPlane centred_;  // the PSF
  ComplexPlane otf_;   // half its transform
  RealPlane object_;
  ComplexPlane spectrum_;  // half the object's transform
  ComplexPlane star_;
  double starTotal_ = 0.0;
  ComplexPlane product_;
  ComplexPlane filtered_;

  fftw_plan fieldOfPupil_;
  fftw_plan otfOfPsf_;
  fftw_plan spectrumOfObject_;
  fftw_plan filteredOfProduct_;
};

}  // namespace orvanel::bench

#endif  // ORVANEL_BENCH_FFTW_PIPELINE_H
