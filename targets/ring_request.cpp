// Names the directions of a ring's gap.
#include "targets/ring_request.h"

namespace orvanel::targets {

const char* Word(Gap gap) {
  switch (gap) {
    case Gap::kDown:
      return "down";
    case Gap::kUp:
      return "up";
    case Gap::kRight:
      return "right";
    case Gap::kLeft:
      return "left";
  }
  return "";
}

}  // namespace orvanel::targets
