// What can be computed but is probably not what the user means.
#ifndef ORVANEL_EYE_PLAUSIBILITY_H
#define ORVANEL_EYE_PLAUSIBILITY_H

#include <cstddef>
#include <string>
#include <vector>

#include "base/layers.h"
#include "eye/eye.h"

namespace orvanel::eye {

// One sentence for each doubt about an eye by itself, its pupil and its refraction; none for a usual eye.
std::vector<std::string> EyeWarnings(const Eye& eye);

// Doubts about many eyes, in one sentence.
class TableDoubts {
 public:
  //   place  of the eye in its table, such as "line 7"
  void Add(const Eye& eye, const std::string& place);

  // Empty where there are none.
  std::string Summary() const;

 private:
  std::size_t eyes_ = 0, doubtful_ = 0;
  std::string first_;
};

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_PLAUSIBILITY_H
