// Formats a line of progress.
#include "cli/batch/rate.h"

#include <algorithm>

#include "base/number_text.h"

namespace orvanel::cli {
namespace {

// "0:12:03".
std::string Clock(double seconds) {
  const auto whole = static_cast<long long>(std::min(seconds + 0.5, 3.6e9));
  std::string text = std::to_string(whole / 3600);
  for (const long long part : {whole / 60 % 60, whole % 60}) {
    text.append(part < 10 ? ":0" : ":").append(std::to_string(part));
  }
  return text;
}

}  // namespace

std::string RateText(std::optional<double> share, double before, std::size_t eyes,
                     std::chrono::duration<double> elapsed) {
  constexpr double kWidth = 30.0, kSecondsToJudge = 1.0;
  const double seconds = elapsed.count();
  std::string text;
  if (share) {
    const auto full = static_cast<std::size_t>(kWidth * std::clamp(*share, 0.0, 1.0));
    text += '[';
    text.append(full, '#').append(static_cast<std::size_t>(kWidth) - full, '.');
    text.append("] ").append(FixedText(100.0 * *share, 0)).append(" %, ");
  }
  text += std::to_string(eyes) + " eyes";
  if (seconds < kSecondsToJudge) return text;
  const double rate = static_cast<double>(eyes) / seconds;
  text += ", " + (rate < 1000.0 ? NumberText(rate, 3) : FixedText(rate, 0)) + "/s";
  if (share && *share > before) text += ", " + Clock(seconds * (1.0 - *share) / (*share - before)) + " left";
  return text;
}

}  // namespace orvanel::cli
