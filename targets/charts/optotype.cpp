// Tabulates the sets of optotypes.
#include "targets/charts/optotype.h"

#include "base/number_text.h"
#include "targets/charts/letters.h"

namespace orvanel::targets::charts {
namespace {

constexpr Optotype kSloan[] = {{"C", LandoltRing, 0.0}, {"D", LetterD, 0.0}, {"H", LetterH, 0.0}, {"K", LetterK, 0.0},
                               {"N", LetterN, 0.0},     {"O", LetterO, 0.0}, {"R", LetterR, 0.0}, {"S", LetterS, 0.0},
                               {"V", LetterV, 0.0},     {"Z", LetterZ, 0.0}};

constexpr Optotype kHotv[] = {{"H", LetterH, 0.0}, {"O", LetterO, 0.0}, {"T", LetterT, 0.0}, {"V", LetterV, 0.0}};

// Directions of the gap.
constexpr Optotype kRings[] = {{"right", LandoltRing, 0.0},       {"up", LandoltRing, 90.0},
                               {"left", LandoltRing, 180.0},      {"down", LandoltRing, 270.0},
                               {"up-right", LandoltRing, 45.0},   {"up-left", LandoltRing, 135.0},
                               {"down-left", LandoltRing, 225.0}, {"down-right", LandoltRing, 315.0}};

// Directions of the bars.
constexpr Optotype kTumblingE[] = {
    {"right", TumblingE, 0.0}, {"up", TumblingE, 90.0}, {"left", TumblingE, 180.0}, {"down", TumblingE, 270.0}};

constexpr bool kLetters = true;
constexpr OptotypeSet kSets[] = {
    {"sloan", "Sloan letters", kSloan, kLetters},
    {"hotv", "letters H, O, T, V", kHotv, kLetters},
    {"landolt4", "Landolt rings, 4 directions", std::span(kRings, 4), !kLetters},
    {"landolt8", "Landolt rings, 8 directions", kRings, !kLetters},
    {"tumbling-e", "tumbling E, 4 directions", kTumblingE, !kLetters},
};

}  // namespace

Shape Optotype::Drawn() const {
  constexpr double kHalf = 0.5 * kStrokesPerOptotype;
  return draw().Placed({{-kHalf, -kHalf}, 1.0, 0.0}).Placed({{}, 1.0, degrees});
}

std::span<const OptotypeSet> OptotypeSets() { return kSets; }

const OptotypeSet* OptotypeSetNamed(std::string_view word) {
  for (const OptotypeSet& set : kSets) {
    if (set.word == word) return &set;
  }
  return nullptr;
}

std::optional<int> FindOptotype(const OptotypeSet& set, std::string_view name) {
  for (std::size_t i = 0; i < set.optotypes.size(); ++i) {
    if (Folded(name) == Folded(set.optotypes[i].name)) return static_cast<int>(i);
  }
  return std::nullopt;
}

}  // namespace orvanel::targets::charts
