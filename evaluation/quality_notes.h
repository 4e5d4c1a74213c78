// Words values of metrics of image quality, and the conditions that they depend on, for reports and sheets.
#ifndef ORVANEL_EVALUATION_QUALITY_NOTES_H
#define ORVANEL_EVALUATION_QUALITY_NOTES_H

#include <string>
#include <vector>

#include "base/layers.h"
#include "metrics/quality/quality.h"

namespace orvanel::evaluation {

// One metric in words.
struct QualityText {
  std::string name;   // "D50"
  std::string value;  // "4.31 arcmin"; "unknown" if it is not a number
  std::string limit;  // of the pupil without aberration, likewise; empty where it has no meaning
  std::string error;  // the same, absolute
  std::string note;   // empty if there is none
};

QualityText TextOf(const QualityValue& value);
QualityText TextOf(const MtfValue& value);

// The metrics, then the MTF.
std::vector<QualityText> TextsOf(const Quality& quality);

// Sentences about origin, reference, contrast sensitivity and Gaussian, as far as the metrics depend on them.
std::vector<std::string> QualityConditions(const Quality& quality, const QualityRequest& request);

// The same of values of several eyes, whose origins are at several places.
std::vector<std::string> QualityConditions(const QualityRequest& request);

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_QUALITY_NOTES_H
