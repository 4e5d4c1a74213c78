// Reports what the physical model refuses: a code with its numbers, and the sentence made of them.
#ifndef ORVANEL_MODELS_ADAPTERS_PHYSICAL_REFUSAL_H
#define ORVANEL_MODELS_ADAPTERS_PHYSICAL_REFUSAL_H

#include <string>

#include "base/error.h"
#include "base/layers.h"
#include "models/physical/outcome.h"

namespace orvanel::models {

// One sentence without options of a host: "the pupil of 15 mm is outside of 0.5 to 12 mm".
std::string TextOf(const physical::Refusal& refusal);

class PhysicalRefusal : public Error {
 public:
  explicit PhysicalRefusal(const physical::Refusal& itsRefusal) : Error(TextOf(itsRefusal)), refusal(itsRefusal) {}

  physical::Refusal refusal;
};

// The result, or PhysicalRefusal thrown.
template <class T>
T Accepted(physical::Outcome<T> outcome) {
  if (!outcome) throw PhysicalRefusal(outcome.refusal());
  return std::move(*outcome);
}

}  // namespace orvanel::models

#endif  // ORVANEL_MODELS_ADAPTERS_PHYSICAL_REFUSAL_H
