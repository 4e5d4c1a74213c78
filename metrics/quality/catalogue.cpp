// The table of the metrics of image quality.
#include "metrics/quality/catalogue.h"

#include <algorithm>
#include <array>

namespace orvanel::metrics {
namespace {

constexpr const char* kThibos = "Thibos, Hong, Bradley, Applegate (2004), Journal of Vision 4(4):9";

constexpr bool kHigher = true, kLower = false;
constexpr bool kRatio = true, kAbsolute = false;
constexpr bool kOrigin = true, kAnywhere = false;
constexpr bool kContrast = true, kOptical = false;
constexpr bool kSmooth = true, kNotSmooth = false;
constexpr QualityPlane kPupil = QualityPlane::kPupil, kImage = QualityPlane::kImage,
                       kFrequency = QualityPlane::kFrequency;
using M = QualityMetric;

constexpr std::array<QualityRow, kQualityMetrics> kRows = {{
    {M::kRmsW, "RMSw", "um", "Root mean square of the wavefront over the pupil, piston and tilt left out.", kThibos,
     kLower, kPupil, kAbsolute, kAnywhere, kOptical, kSmooth, 1e-9},
    {M::kPv, "PV", "um", "Highest less lowest value of the wavefront over the pupil, tilt and the rim included.",
     kThibos, kLower, kPupil, kAbsolute, kAnywhere, kOptical, kNotSmooth, 1e-9},
    {M::kRmsS, "RMSs", "arcmin", "Root mean square of the wavefront's slopes about their mean.", kThibos, kLower,
     kPupil, kAbsolute, kAnywhere, kOptical, kSmooth, 1e-9},
    {M::kBave, "Bave", "D", "Mean over the pupil of the blur root((Wxx^2 + Wyy^2)/2 + Wxy^2).", kThibos, kLower, kPupil,
     kAbsolute, kAnywhere, kOptical, kSmooth, 1e-5},
    {M::kPfWc, "PFWc", "1",
     "(d/D)^2 of the largest concentric pupil d whose RMSw, and that of all smaller ones, is below wavelength/4.",
     kThibos, kHigher, kPupil, kRatio, kAnywhere, kOptical, kNotSmooth, 1e-9},
    {M::kPfSc, "PFSc", "1",
     "(d/D)^2 of the largest concentric pupil d whose RMSs, and that of all smaller ones, is below 1 arcmin.", kThibos,
     kHigher, kPupil, kRatio, kAnywhere, kOptical, kNotSmooth, 1e-9},
    {M::kPfCc, "PFCc", "1",
     "(d/D)^2 of the largest concentric pupil d whose Bave, and that of all smaller ones, is below 0.25 D.", kThibos,
     kHigher, kPupil, kRatio, kAnywhere, kOptical, kNotSmooth, 1e-4},
    {M::kPfWt, "PFWt", "1",
     "Share of the pupil's area in square tiles of D/50 in which the wavefront varies by less than wavelength/4.",
     kThibos, kHigher, kPupil, kRatio, kAnywhere, kOptical, kNotSmooth, 1e-3},
    {M::kPfSt, "PFSt", "1", "Share of the pupil's area where both slopes of the wavefront are below 1 arcmin.", kThibos,
     kHigher, kPupil, kRatio, kAnywhere, kOptical, kNotSmooth, 1e-4},
    {M::kPfCt, "PFCt", "1", "Share of the pupil's area where the blur is below 0.25 D.", kThibos, kHigher, kPupil,
     kRatio, kAnywhere, kOptical, kNotSmooth, 1e-4},
    {M::kD50, "D50", "arcmin", "Diameter of the circle about the origin with half of all the light.", kThibos, kLower,
     kImage, kAbsolute, kOrigin, kOptical, kSmooth, 3e-3},
    {M::kEw, "EW", "arcmin", "Diameter of the disc as bright as the PSF's peak that has all the light.", kThibos,
     kLower, kImage, kAbsolute, kAnywhere, kOptical, kSmooth, 1e-6},
    {M::kSm, "SM", "arcmin",
     "Root mean square distance of the rays from their mean on the retina; the PSF's own second moment has no limit.",
     kThibos, kLower, kImage, kAbsolute, kAnywhere, kOptical, kSmooth, 1e-9},
    {M::kHwhh, "HWHH", "arcmin", "Radius of the disc as large as the area where the PSF is above half of its peak.",
     kThibos, kLower, kImage, kAbsolute, kAnywhere, kOptical, kNotSmooth, 3e-3},
    {M::kCw, "CW", "arcmin", "HWHH of the autocorrelation of the PSF.", kThibos, kLower, kImage, kAbsolute, kAnywhere,
     kOptical, kNotSmooth, 3e-3},
    {M::kSrx, "SRX", "1", "Peak of the PSF over that of the pupil without aberration.", kThibos, kHigher, kImage,
     kRatio, kAnywhere, kOptical, kSmooth, 1e-6},
    {M::kLib, "LIB", "1", "Share of the light within 1.21967 wavelength/diameter of the origin.", kThibos, kHigher,
     kImage, kRatio, kOrigin, kOptical, kSmooth, 1e-4},
    {M::kStd, "STD", "1", "Root of the integral of the squared PSF, over that of the pupil without aberration.",
     kThibos, kHigher, kImage, kRatio, kAnywhere, kOptical, kSmooth, 1e-4},
    {M::kEnt, "ENT", "nat", "Entropy of the PSF per arcmin^2 in the circle of radius 10 arcmin about the origin.",
     kThibos, kLower, kImage, kAbsolute, kOrigin, kOptical, kSmooth, 1e-3},
    {M::kNs, "NS", "1",
     "Light weighted by a Gaussian about the origin, of SD 1 arcmin unless given, over that without aberration.",
     kThibos, kHigher, kImage, kRatio, kOrigin, kOptical, kSmooth, 1e-4},
    {M::kVsx, "VSX", "1",
     "PSF weighted by the neural sensitivity about the origin, over that without aberration; can be negative.", kThibos,
     kHigher, kImage, kRatio, kOrigin, kContrast, kSmooth, 1e-4},
    {M::kSfcMtf, "SFcMTF", "c/deg",
     "Highest frequency at which the MTF's mean over all directions is above the neural threshold.", kThibos, kHigher,
     kFrequency, kAbsolute, kAnywhere, kContrast, kNotSmooth, 1e-3},
    {M::kSfcOtf, "SFcOTF", "c/deg",
     "Lowest frequency at which the OTF's mean over all directions is below the neural threshold.", kThibos, kHigher,
     kFrequency, kAbsolute, kOrigin, kContrast, kNotSmooth, 1e-3},
    {M::kAreaMtf, "AreaMTF", "1",
     "Area between the MTF's mean over all directions and the neural threshold up to SFcMTF, over that without "
     "aberration.",
     kThibos, kHigher, kFrequency, kRatio, kAnywhere, kContrast, kSmooth, 1e-4},
    {M::kAreaOtf, "AreaOTF", "1",
     "Area between the OTF's mean over all directions and the neural threshold up to SFcOTF, over that without "
     "aberration.",
     kThibos, kHigher, kFrequency, kRatio, kOrigin, kContrast, kSmooth, 1e-4},
    {M::kSrMtf, "SRMTF", "1", "Volume under the MTF, over that without aberration.", kThibos, kHigher, kFrequency,
     kRatio, kAnywhere, kOptical, kSmooth, 1e-4},
    {M::kSrOtf, "SROTF", "1", "Volume under the OTF, which is the PSF at the origin, over that without aberration.",
     kThibos, kHigher, kFrequency, kRatio, kOrigin, kOptical, kSmooth, 1e-4},
    {M::kVsMtf, "VSMTF", "1",
     "Volume under the MTF weighted by the contrast sensitivity, over that without aberration.", kThibos, kHigher,
     kFrequency, kRatio, kAnywhere, kContrast, kSmooth, 1e-4},
    {M::kVsOtf, "VSOTF", "1",
     "Volume under the OTF weighted by the contrast sensitivity, over that without aberration; equal to VSX.", kThibos,
     kHigher, kFrequency, kRatio, kOrigin, kContrast, kSmooth, 1e-4},
    {M::kVotf, "VOTF", "1", "Volume under the OTF over that under the MTF.", kThibos, kHigher, kFrequency, kRatio,
     kOrigin, kOptical, kSmooth, 5e-4},
    {M::kVnotf, "VNOTF", "1",
     "Volume under the OTF over that under the MTF, both weighted by the contrast sensitivity.", kThibos, kHigher,
     kFrequency, kRatio, kOrigin, kContrast, kSmooth, 1e-4},
}};

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::span<const QualityRow> QualityCatalogue() { return kRows; }

const QualityRow& RowOf(QualityMetric metric) { return kRows[static_cast<std::size_t>(metric)]; }

std::optional<QualityMetric> QualityMetricNamed(std::string_view name) {
  const auto* const found = std::find_if(kRows.begin(), kRows.end(), [name](const QualityRow& row) {
    const std::string_view own = row.name;
    return std::equal(own.begin(), own.end(), name.begin(), name.end(),
                      [](char a, char b) { return Lower(a) == Lower(b); });
  });
  if (found == kRows.end()) return std::nullopt;
  return found->metric;
}

}  // namespace orvanel::metrics
