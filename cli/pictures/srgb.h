// The sRGB curve between the values of a picture file and light. Source: IEC 61966-2-1.
#ifndef ORVANEL_CLI_PICTURES_SRGB_H
#define ORVANEL_CLI_PICTURES_SRGB_H

namespace orvanel::cli {

// Both take and give 0 to 1 and leave 0 and 1 as they are.
double LightOfSrgb(double value);
double SrgbOfLight(double light);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PICTURES_SRGB_H
