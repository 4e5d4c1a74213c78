// The conventions in which Zernike coefficients are published, and the way from each to any other.
#ifndef ORVANEL_EYE_CONVENTIONS_CONVENTION_H
#define ORVANEL_EYE_CONVENTIONS_CONVENTION_H

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/layers.h"
#include "base/units.h"
#include "eye/conventions/mode.h"
#include "orvanel/orvanel.h"

namespace orvanel::eye {

enum class Unit { kMillimetres, kMicrometres, kNanometres, kWaves };
enum class Normalisation { kOrthonormal, kNone };
enum class Order { kOsa, kNoll, kFringe, kNamed };  // kNamed: each coefficient comes with its term, as Z(2,0)
enum class YAxis { kUp, kDown };
enum class Side { kOd, kOs, kUnknown };  // right eye, left eye

// The word of a value in files and on the command line, the value of a word, and all words: "mm, um, nm, waves". Words
// are read in letters of either case, with blanks around them, and as others write them too: "OS" as "L" and "left",
// "um" as "\u00b5m" and "microns".
template <class Value>
std::string_view Word(Value value);
template <class Value>
std::optional<Value> ValueOf(std::string_view word);
template <class Value>
std::string WordsOf();

// How coefficients are meant.
struct Convention {
  Unit unit = Unit::kMicrometres;
  Nanometres wavelength;  // of waves, else 0
  Normalisation normalisation = Normalisation::kOrthonormal;
  Order order = Order::kOsa;
  YAxis yAxis = YAxis::kUp;
  friend bool operator==(const Convention&, const Convention&) = default;
};

// The two conventions with a name: that of OSA/ANSI Z80.28, and the library's own.
constexpr Convention kOsaConvention{Unit::kMicrometres, Nanometres(), Normalisation::kOrthonormal, Order::kOsa,
                                    YAxis::kUp};
constexpr Convention kLibraryConvention{Unit::kMillimetres, Nanometres(), Normalisation::kNone, Order::kOsa,
                                        YAxis::kDown};
std::optional<Convention> ConventionNamed(std::string_view name);  // "osa" or "library", in either case

// "um, orthonormal, order osa, y up"; "waves of 550 nm, ...".
std::string Text(const Convention& convention);

// "um", "waves of 550 nm".
std::string UnitText(const Convention& convention);

// One number for each term by OSA index; those behind the last are 0. At most kMostTerms.
using Coefficients = std::vector<double>;

// From a list in one of the orders osa, noll and fringe, from its first number on, and back. Both throw Error naming
// the term where the target has no place for one that is not 0.
Coefficients FromList(Order order, const std::vector<double>& list);
std::vector<double> ToList(Order order, const Coefficients& coefficients);

// The first term that is not 0 and that has no number in this order.
std::optional<ZernikeTerm> TermWithoutPlace(Order order, const Coefficients& coefficients);

// The same wavefront in another unit, normalisation and direction of y; with neither changed, the same bits. A wave
// counts as what its convention says.
Coefficients Converted(Coefficients coefficients, const Convention& from, const Convention& to);

// The eye in a mirror, left and right exchanged: terms that are odd in x change their sign.
Coefficients Mirrored(Coefficients coefficients);

// Coefficients as the library takes them: millimetres, not normalised, by OSA index, y down.
using LibraryCoefficients = std::array<Millimetres, ORVANEL_COEFFICIENTS>;

// The numbers that the library's calls take, millimetres.
std::array<double, ORVANEL_COEFFICIENTS> Bare(const LibraryCoefficients& coefficients);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_CONVENTION_H
