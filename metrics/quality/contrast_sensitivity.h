// The contrast sensitivity of the visual system without its optics, by spatial frequency.
#ifndef ORVANEL_METRICS_QUALITY_CONTRAST_SENSITIVITY_H
#define ORVANEL_METRICS_QUALITY_CONTRAST_SENSITIVITY_H

#include <optional>
#include <vector>

namespace orvanel::metrics {

// Equal in all directions. The default is that of an average observer.
class ContrastSensitivity {
 public:
  struct Point {
    double frequency = 0.0;    // cycles per degree
    double sensitivity = 0.0;  // 1 over the smallest contrast that is seen
    bool operator==(const Point&) const = default;
  };

  // A polynomial in log10 up to 60 c/deg, 0 beyond; extrapolated below kMeasuredFrom. Peak: 211 at 8.66 c/deg.
  // Source: Campbell and Green (1965), Journal of Physiology 181:576.
  ContrastSensitivity() = default;
  static constexpr double kMeasuredFrom = 3.9;

  // A table, linear in between; constant below its first frequency, 0 beyond its last. Has 2 to 10,000 points.
  // Frequencies rise, from 0 or more; sensitivities are at least 0. Otherwise the result is empty.
  //   wrong  receives the index of the first wrong point
  static constexpr double kHighestFrequency = 1000.0, kLargestSensitivity = 1e9;
  static std::optional<ContrastSensitivity> Of(std::vector<Point> table, int& wrong);

  double At(double frequency) const;
  // The same without its end.
  double Continued(double frequency) const;
  // By frequency, at 0.
  double SlopeAtZero() const;
  double end() const { return table_.empty() ? kLast : table_.back().frequency; }
  // Empty for the default.
  const std::vector<Point>& table() const { return table_; }
  bool isDefault() const { return table_.empty(); }
  bool operator==(const ContrastSensitivity&) const = default;

 private:
  static constexpr double kLast = 60.0;
  std::vector<Point> table_;
};

}  // namespace orvanel::metrics

#endif  // ORVANEL_METRICS_QUALITY_CONTRAST_SENSITIVITY_H
