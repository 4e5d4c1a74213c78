// Says in sentences what a model's numbers are: scale, light, view and errors.
#ifndef ORVANEL_EVALUATION_MODEL_NOTES_H
#define ORVANEL_EVALUATION_MODEL_NOTES_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "models/results.h"

namespace orvanel::evaluation {

// "555 nm", or "31 wavelengths from 400 to 700 nm"; for the classic model its one wavelength.
std::string LightText(const Results& results);

// What light objects of true size are seen in. One sentence.
std::string SeenInText(const Results& results);

// The light of the physical model, and the wavelength at which the coefficients hold, stated or assumed. One sentence.
std::string ReferenceNote(const Results& results);

// What places of the PSF are relative to: "axis", "peak" or "centroid".
const char* Word(physical::Origin origin);

// Above this RMS the physical model states no errors.
constexpr double kLargestStatedWaves = 5.0;

// Its errors: a PSF's is a part of the perfect eye's peak, an image's one of the largest difference from the surround.
constexpr double kPsfError = 1e-9, kMtfError = 1e-4, kImageError = 1e-4;

// The RMS of a wavefront in waves of the shortest light.
double WavesRms(Micrometres rms, const physical::Light& light);

// The sentences for sheets and reports. Above the limit of the stated errors, if the results have the RMS, one says so.
std::vector<std::string> ModelNotes(const Results& results);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_MODEL_NOTES_H
