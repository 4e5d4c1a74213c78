// Describes the results of the physical model: as JSON for programs, as lines for people.
#ifndef ORVANEL_CLI_PHYSICAL_SUMMARY_H
#define ORVANEL_CLI_PHYSICAL_SUMMARY_H

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "base/layers.h"
#include "evaluation/simulated_eye.h"

namespace orvanel::cli {

// The model with its light, reference wavelength, view and errors. Of both models.
nlohmann::ordered_json ModelJson(const Results& results);

// Strehl ratios, wavefront, PSF window and cut-off.
nlohmann::ordered_json PhysicalScalarsJson(const Results& results);

// The MTF at the frequencies of interest.
nlohmann::ordered_json PhysicalMtfJson(const Results& results);

// The rings with their sizes and files.
nlohmann::ordered_json PhysicalRingsJson(const Results& results);

// What the report says between the refraction and the pictures.
std::string PhysicalLines(const SimulatedEye& simulated);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PHYSICAL_SUMMARY_H
