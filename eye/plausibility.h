// Warns of eyes that can be computed but are unlike human eyes.
#ifndef ORVANEL_EYE_PLAUSIBILITY_H
#define ORVANEL_EYE_PLAUSIBILITY_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"

namespace orvanel::eye {

// Returns one sentence for each unusual value of an eye, its pupil or refraction; none for a usual eye.
std::vector<std::string> EyeWarnings(const Eye& eye);

// Summarises the warnings about many eyes in one sentence.
class TableDoubts {
 public:
  //   place  of the eye in its table, such as "line 7"
  void Add(const Eye& eye, const std::string& place);

  // Empty if there are none.
  std::string Summary() const;

 private:
  std::size_t eyes_ = 0, doubtful_ = 0;
  std::string first_;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_PLAUSIBILITY_H
