// Adds the program's options to the errors of the layers below.
#include "cli/error_text.h"

#include "evaluation/errors.h"
#include "eye/errors.h"
#include "files/errors.h"
#include "metrics/errors.h"
#include "models/adapters/physical_refusal.h"

namespace orvanel::cli {
namespace {

const char* OptionFor(FileFix fix) {
  switch (fix) {
    case FileFix::kChooseRow:
      return "choose one with --row";
    case FileFix::kAskForNoRow:
      return "remove --row";
    case FileFix::kReadAsEyeFile:
      return "remove --prescription-columns and --decimal-comma";
    case FileFix::kReplaceFile:
      return "let --force replace it";
    case FileFix::kReplaceFolder:
      return "let --force replace those of an earlier run";
    case FileFix::kReadNoPrescription:
      return "remove --prescription-columns";
    case FileFix::kReadDecimalCommas:
      return "add --decimal-comma, or write it with a point";
    case FileFix::kReadDecimalPoints:
      return "remove --decimal-comma";
  }
  return "";
}

std::string RemedyFor(physical::Problem problem) {
  switch (problem) {
    case physical::Problem::kNoReferenceWavelength:
      return "; state it with --reference-wavelength, or as reference_wavelength_nm in the file";
    case physical::Problem::kGridSpacing:
      return "; use a smaller --psf-field or more --samples";
    case physical::Problem::kPixelSize:
      return "; use a larger --acuity or a smaller --object-angle";
    default:
      return "";
  }
}

}  // namespace

std::string TextOf(const Error& error) {
  if (const auto* const pupil = dynamic_cast<const PupilLargerThanMeasured*>(&error)) {
    return pupil->fact + "Use a smaller one, or let --extrapolate continue the polynomials";
  }
  if (const auto* const order = dynamic_cast<const OrderAboveHighest*>(&error)) {
    return order->fact + "let --highest-order " + std::to_string(order->highest) + " drop what is above";
  }
  if (const auto* const metric = dynamic_cast<const MetricOfPhysicalModel*>(&error)) {
    return metric->fact + "remove --model classic";
  }
  if (const auto* const threads = dynamic_cast<const TooFewThreads*>(&error)) {
    return threads->fact + "request fewer with --jobs";
  }
  if (const auto* const physical = dynamic_cast<const PhysicalRefusal*>(&error)) {
    return error.what() + RemedyFor(physical->refusal.problem);
  }
  if (const auto* const file = dynamic_cast<const FileError*>(&error)) return file->fact + OptionFor(file->fix);
  if (const auto* const at = dynamic_cast<const ErrorAt*>(&error); at != nullptr && at->cause) {
    const std::string whole = error.what();
    return whole.substr(0, whole.size() - at->reason.size()) + ReasonOf(*at);
  }
  return error.what();
}

std::string ReasonOf(const ErrorAt& error) { return error.cause ? error.before + TextOf(*error.cause) : error.reason; }

}  // namespace orvanel::cli
