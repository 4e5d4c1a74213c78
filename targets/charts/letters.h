// Draws letters and rings on a grid of 5 x 5 strokes, from the origin at the top left corner.
#ifndef ORVANEL_TARGETS_CHARTS_LETTERS_H
#define ORVANEL_TARGETS_CHARTS_LETTERS_H

#include "base/layers.h"
#include "targets/charts/shape.h"

namespace orvanel::targets::charts {

// A ring of outer diameter 5 and inner diameter 3. The gap on the right has parallel sides at a distance of 1.
// Source: ISO 8596. It is also the Sloan letter C.
Shape LandoltRing();

// A stem on the left and three bars of length 5.
Shape TumblingE();

// Letters as wide as high, with strokes of width 1. Source of the design: Sloan (1959), New test charts for the
// measurement of visual acuity at far and near distances. The outlines are our own.
Shape LetterD();
Shape LetterH();
Shape LetterK();
Shape LetterN();
Shape LetterO();
Shape LetterR();
Shape LetterS();
Shape LetterT();
Shape LetterV();
Shape LetterZ();

}  // namespace orvanel::targets::charts

#endif  // ORVANEL_TARGETS_CHARTS_LETTERS_H
