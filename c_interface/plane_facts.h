// Makes planes of the C interface from results of a model.
#ifndef ORVANEL_C_INTERFACE_PLANE_FACTS_H
#define ORVANEL_C_INTERFACE_PLANE_FACTS_H

#include <memory>
#include <string>
#include <vector>

#include "base/layers.h"
#include "c_interface/handles.h"
#include "models/results.h"

namespace orvanel::c_interface {

// A plane without numbers but its kind and samples.
std::unique_ptr<orvanel_plane> PlaneOf(int32_t kind, targets::Plane samples);

// Where the samples are, in a unit of the header: sample i of an axis is (i - centre) steps from zero.
void SetAxes(orvanel_plane& plane, double step, double centre, const char* unit);
void SetAxes(orvanel_plane& plane, double step, double centreX, double centreY, const char* unit);

// The error, or not a number for eyes of so large an RMS that the model states none.
double StatedError(double error, Micrometres rms, const physical::Light& light);

// Lines of one text.
std::string Lines(const std::vector<std::string>& lines);

// The planes of results that were computed, with their facts. Their errors need the wavefront's RMS.
std::unique_ptr<orvanel_plane> PsfOf(models::Results results);
std::unique_ptr<orvanel_plane> MtfOf(models::Results results);
std::unique_ptr<orvanel_plane> WavefrontOf(models::Results results);

}  // namespace orvanel::c_interface

#endif  // ORVANEL_C_INTERFACE_PLANE_FACTS_H
