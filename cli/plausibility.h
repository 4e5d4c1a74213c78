// What can be computed but is probably not what the user means.
#ifndef ORVANEL_CLI_PLAUSIBILITY_H
#define ORVANEL_CLI_PLAUSIBILITY_H

#include <cstddef>
#include <string>
#include <vector>

#include "cli/eyes/eye.h"
#include "cli/simulation.h"

namespace orvanel::cli {

// One sentence for each doubt about an eye by itself, its pupil and its refraction; none for a usual eye.
std::vector<std::string> EyeWarnings(const Eye& eye);

// The same about what is simulated of it.
std::vector<std::string> Warnings(const Simulation& simulation);

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

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_PLAUSIBILITY_H
