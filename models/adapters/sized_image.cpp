// Filters each channel in its own light, one filter at a time.
#include "models/adapters/sized_image.h"

#include <algorithm>
#include <utility>

#include "models/adapters/physical_eye.h"
#include "models/adapters/physical_model.h"
#include "models/adapters/physical_refusal.h"
#include "models/physical/retinal_image.h"

namespace orvanel::models {
SizedObject LuminanceOf(SizedObject object) {
  if (object.channels.size() != kLuminanceShares.size()) return object;
  Plane luminance(object.channels[0].columns(), object.channels[0].rows());
  double surround = 0.0;
  for (std::size_t c = 0; c < kLuminanceShares.size(); ++c) {
    const double share = kLuminanceShares.at(c);
    for (std::size_t i = 0; i < luminance.size(); ++i) luminance[i] += share * object.channels[c][i];
    surround += share * object.surround[c];
  }
  return {{std::move(luminance)}, {surround}, object.pixel};
}

SizedImager::SizedImager(PhysicalSettings settings) : settings_(std::move(settings)), workspace_(ChosenKernels()) {
  if (settings_.display) {
    lights_.assign(settings_.display->primaries.begin(), settings_.display->primaries.end());
  } else {
    lights_ = {settings_.light};
  }
}

std::size_t SizedImager::Lines() const {
  std::size_t lines = 0;
  for (const physical::Light& light : lights_) {
    lines += static_cast<std::size_t>(
        std::count_if(light.begin(), light.end(), [](const auto& line) { return line.weight > 0.0; }));
  }
  return lines;
}

SizedImage SizedImager::ImageOf(const Eye& eye, SizedObject object, const std::function<void()>& afterLine) {
  if (lights_.size() == 1) {
    object = LuminanceOf(std::move(object));
  } else if (object.channels.size() == 1) {
    object.channels.resize(lights_.size(), object.channels[0]);
    object.surround.resize(lights_.size(), object.surround[0]);
  }
  const physical::Eye physical = PhysicalEyeOf(eye, settings_);
  SizedImage image{std::move(object), {}};
  for (std::size_t c = 0; c < lights_.size(); ++c) {
    const Plane& channel = image.object.channels[c];
    const physical::ObjectSize size{channel.columns(), channel.rows(), image.object.pixel.value(), 0};
    const auto filter = Accepted(physical::ImageFilter::Of(physical, lights_[c], size, workspace_, afterLine));
    physical::RetinalImage seen =
        Accepted(filter.ImageOf(channel.data(), image.object.surround[c], settings_.view, workspace_));
    image.seen.emplace_back(seen.columns, seen.rows, std::move(seen.luminance));
  }
  return image;
}

}  // namespace orvanel::models
