// Parses the options of models.
#include "cli/commands/options/model_options.h"

#include <functional>
#include <initializer_list>
#include <string_view>
#include <utility>
#include <vector>

#include "base/error.h"
#include "base/number_text.h"
#include "base/split.h"
#include "cli/commands/options/options.h"
#include "cli/quality/named_light.h"
#include "files/tables/spectrum.h"

namespace orvanel::cli {
namespace {

constexpr const char* kModelGroup = "The model, and the conditions of the physical one";
constexpr double kLargestField = 600.0;  // arc minutes
constexpr int kMaxSamples = 4096;

double NumberWithin(std::string_view text, double low, double high) {
  const double number = ParseNumber(text);
  if (number < low || number > high) {
    throw Error(Quoted(std::string(text)) + " is outside of " + ShortestText(low) + " to " + ShortestText(high));
  }
  return number;
}

physical::Display ReadDisplay(const std::string& file) {
  std::vector<physical::PrimaryPowers> rows;
  for (const auto& [wavelength, power] : ReadPrimaries(file)) rows.push_back({wavelength.value(), power});
  physical::Display display = DisplayOf(rows);
  constexpr const char* kNames[] = {"red", "green", "blue"};
  for (std::size_t c = 0; c < display.primaries.size(); ++c) {
    if (display.primaries[c].empty()) {
      throw Error(file + ": " + kNames[c] +
                  " has no light between 400 and 700 nm; write at least two rows with its power");
    }
  }
  return display;
}

physical::StilesCrawford StilesCrawfordOf(const std::string& text) {
  const std::vector<std::string_view> parts = Split(text);
  if (parts.size() != 1 && parts.size() != 3) throw Error("write RHO, or RHO,X,Y");
  physical::StilesCrawford effect;
  effect.rho = NumberWithin(parts[0], 0.0, physical::kLargestRho);
  if (parts.size() == 3) {
    constexpr double kFarthest = physical::kLargestDecentrationMm;
    effect.centreXmm = NumberWithin(parts[1], -kFarthest, kFarthest);
    effect.centreYmm = NumberWithin(parts[2], -kFarthest, kFarthest);
  }
  return effect;
}

template <class Choice>
Choice Chosen(const std::string& text, std::initializer_list<std::pair<const char*, Choice>> choices) {
  std::string words;
  for (const auto& [word, choice] : choices) {
    if (text == word) return choice;
    words += (words.empty() ? "" : ", ") + std::string(word);
  }
  throw Error(Quoted(text) + " is not one of " + words);
}

}  // namespace

const char* const kModelNotes = R"(Models (--model):
  physical  Fourier optics of the eye at true scale: angles and frequencies of the stated pupil, images linear in
            light, orders 0 to 10
  classic   the numbers of the library's eight functions, on their own scale, orders 0 to 6
Light (--light) is a wavelength in nm, white (equal energy times the photopic sensitivity, 400 to 700 nm), or a CSV
file of wavelengths in nm and weights. display is the white of a typical display. Its primaries are built in: Gaussian
spectra of power with peak and full width at half maximum of 611 and 28 nm (red), 539 and 78 nm (green), 459 and 50 nm
(blue). --spd states a measured display instead, by a CSV file of wavelengths in nm and the powers of its red, green and
blue. Several wavelengths need the reference wavelength of the eye.
The Stiles-Crawford effect (--stiles-crawford) lowers the intensity at the distance d mm from its centre by
10^(-RHO d^2); 0.05 is usual.
)";

void AddModelOptions(CLI::App& app, ModelOptions& options, ModelOutput output, const std::vector<CLI::Option*>& more) {
  PhysicalSettings& settings = options.request.physical;
  const auto add = [&](const char* name, const char* type, const std::string& text,
                       std::function<void(const std::string&)> parse) {
    return AddParsedOption(app, name, type, text, std::move(parse))->group(kModelGroup);
  };
  CLI::Option* const model =
      add("--model", "WORD", "Which model: physical, classic [physical]", [&options](const std::string& text) {
        options.request.kind =
            Chosen<ModelKind>(text, {{"physical", ModelKind::kPhysical}, {"classic", ModelKind::kClassic}});
      });
  std::vector<CLI::Option*> own = {
      add("--light", "LIGHT", "A wavelength in nm, white, display, or a CSV file of wavelengths and weights [555]",
          [&options, &settings](const std::string& text) {
            SetLight(settings, text);
            options.light = text;
          }),
      add("--stiles-crawford", "RHO[,X,Y]", "Stiles-Crawford effect per mm^2, and its centre in mm [0]",
          [&settings](const std::string& text) { settings.stilesCrawford = StilesCrawfordOf(text); })};
  const auto addPlanes = [&] {
    own.push_back(add("--spd", "FILE", "The light of a measured display: wavelengths, powers of red, green and blue",
                      [&options, &settings](const std::string& text) {
                        SetDisplay(settings, ReadDisplay(text));
                        options.light = "display " + text;
                      }));
    own.back()->excludes(own.front());
    own.push_back(add("--psf-field", "ARCMIN", "Side of the PSF window in arc minutes [20]",
                      [&settings](const std::string& text) {
                        settings.field = ArcMinutes(NumberWithin(text, 1e-3, kLargestField));
                      }));
    own.push_back(
        add("--samples", "N", "Samples on each side of the PSF window [256]", [&settings](const std::string& text) {
          settings.samples = static_cast<int>(ParseCount(text, 2, kMaxSamples));
        }));
    own.push_back(add("--view", "WORD", "View of PSF, MTF and images: patient, retina [patient]",
                      [&settings](const std::string& text) {
                        settings.view = Chosen<physical::View>(
                            text, {{"patient", physical::View::kPatient}, {"retina", physical::View::kRetina}});
                      }));
    own.push_back(add("--origin", "WORD", "Centre of the PSF window: axis, peak, centroid [axis]",
                      [&settings](const std::string& text) {
                        settings.origin = Chosen<physical::Origin>(text, {{"axis", physical::Origin::kAxis},
                                                                          {"peak", physical::Origin::kPeak},
                                                                          {"centroid", physical::Origin::kCentroid}});
                      }));
    own.push_back(add("--object-angle", "ARCMIN",
                      "Visual angle of the star's and your picture's side, in arc minutes [60]",
                      [&settings](const std::string& text) {
                        settings.objectSide = ArcMinutes(NumberWithin(text, 1e-3, 256.0 * 60.0));
                      }));
  };
  if (output == ModelOutput::kPlanes) addPlanes();
  own.insert(own.end(), more.begin(), more.end());
  app.parse_complete_callback([&options, model, own] {
    if (options.request.kind == ModelKind::kPhysical) return;
    for (const CLI::Option* const option : own) {
      if (option->count() > 0) throw CLI::ExcludesError(model->get_name() + " classic", option->get_name());
    }
  });
}

}  // namespace orvanel::cli
