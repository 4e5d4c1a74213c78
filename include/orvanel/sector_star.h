// Draws the Siemens star (sector star), whose sectors show how much contrast is left at every distance from its centre.
//
// It is the object of OrvanelGetPattern. The function prints nothing.
#ifndef ORVANEL_SECTOR_STAR_H
#define ORVANEL_SECTOR_STAR_H

namespace orvanel {

// Writes 256 x 256 samples, row-major, top row first: 0.0 for black and 1.0 for white.
void DrawSectorStar(double* plane);

}  // namespace orvanel

#endif  // ORVANEL_SECTOR_STAR_H
