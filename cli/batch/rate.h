// Formats the speed of a long run and its remaining time.
#ifndef ORVANEL_CLI_BATCH_RATE_H
#define ORVANEL_CLI_BATCH_RATE_H

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>

#include "base/layers.h"

namespace orvanel::cli {

// "#######.......  51 %  1234 eyes, 780/s, 0:12:03 left".
//   share    of the table that is done; empty if its length is unknown
//   before   share that earlier runs have done
//   eyes     done in this run
std::string RateText(std::optional<double> share, double before, std::size_t eyes,
                     std::chrono::duration<double> elapsed);

}  // namespace orvanel::cli

#endif  // ORVANEL_CLI_BATCH_RATE_H
