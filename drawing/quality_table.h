// Draws metrics of image quality as a table.
#ifndef ORVANEL_DRAWING_QUALITY_TABLE_H
#define ORVANEL_DRAWING_QUALITY_TABLE_H

#include "base/layers.h"
#include "drawing/canvas/surface.h"
#include "evaluation/simulated_eye.h"

namespace orvanel::drawing {

constexpr double kQualityTableWidth = 420.0;

// The values with units, those without aberration, and the conditions, in the box. Many metrics are drawn smaller.
// Notes of values are marked by a star; reports and summary.json have their texts. Draws nothing without metrics.
void DrawQualityTable(Surface& surface, const Box& box, const SimulatedEye& simulated);

}  // namespace orvanel::drawing

#endif  // ORVANEL_DRAWING_QUALITY_TABLE_H
