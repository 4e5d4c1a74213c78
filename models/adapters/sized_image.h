// Computes the retinal images of objects of a true angular size: charts, and pictures through the primaries of a
// display.
#ifndef ORVANEL_MODELS_ADAPTERS_SIZED_IMAGE_H
#define ORVANEL_MODELS_ADAPTERS_SIZED_IMAGE_H

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "eye/eye.h"
#include "models/physical/workspace.h"
#include "models/physical_settings.h"
#include "targets/plane.h"

namespace orvanel::models {

// Linear light; 1 is white. Each pixel has its value over its whole area.
struct SizedObject {
  std::vector<Plane> channels;   // one of luminance, or red, green and blue
  std::vector<double> surround;  // of each channel, without end
  ArcMinutes pixel;              // its side
};

// What a channel adds to the luminance of white. Source: IEC 61966-2-1.
constexpr std::array kLuminanceShares = {0.2126, 0.7152, 0.0722};

SizedObject LuminanceOf(SizedObject object);

// An object and its images, one for each channel; row 0 at the top.
struct SizedImage {
  SizedObject object;  // as shown in the light of the settings
  std::vector<Plane> seen;
};

// Keeps its memory for the next image. Use one in one thread at a time.
class SizedImager {
 public:
  explicit SizedImager(PhysicalSettings settings);

  // Without a display, one channel of luminance in the light of the settings. With one, three channels: each is imaged
  // in the light of its primary alone, so that a uniform field keeps its colour and chromatic aberration shows as
  // coloured fringes. An object of luminance is shown as grey. The error is that of ImageFilter. Throws
  // PhysicalRefusal.
  //   afterLine  called after each spectral line, Lines() times in all; it may throw
  SizedImage ImageOf(const Eye& eye, SizedObject object, const std::function<void()>& afterLine = {});
  std::size_t Lines() const;

  const PhysicalSettings& settings() const { return settings_; }

 private:
  PhysicalSettings settings_;
  std::vector<physical::Light> lights_;  // of each channel
  physical::Workspace workspace_;
};

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ADAPTERS_SIZED_IMAGE_H
