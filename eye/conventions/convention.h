// Declares the conventions of published Zernike coefficients, and converts between them.
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
enum class IndexScheme { kOsa, kNoll, kFringe, kNamed };  // kNamed: each coefficient comes with its term, as Z(2,0)
enum class YAxis { kUp, kDown };
enum class Side { kOd, kOs, kUnknown };  // right eye, left eye

// The word of a value in files and on the command line, the value of a word, and the list of words: "mm, um, nm,
// waves". Words are read in upper and lower case, with blanks around them, and with synonyms: "OS" as "L" and "left",
// "um" as
// "\u00b5m" and "microns".
template <class Value>
std::string_view Word(Value value);
template <class Value>
std::optional<Value> ValueOf(std::string_view word);
template <class Value>
std::string WordsOf();

// The convention of coefficients.
struct Convention {
  Unit unit = Unit::kMicrometres;
  Nanometres wavelength;  // of the unit waves; 0 for other units
  Normalisation normalisation = Normalisation::kOrthonormal;
  IndexScheme scheme = IndexScheme::kOsa;
  YAxis yAxis = YAxis::kUp;
  friend bool operator==(const Convention&, const Convention&) = default;
};

// The two conventions with a name: that of OSA/ANSI Z80.28, and that of the library.
constexpr Convention kOsaConvention{Unit::kMicrometres, Nanometres(), Normalisation::kOrthonormal, IndexScheme::kOsa,
                                    YAxis::kUp};
constexpr Convention kLibraryConvention{Unit::kMillimetres, Nanometres(), Normalisation::kNone, IndexScheme::kOsa,
                                        YAxis::kDown};
std::optional<Convention> ConventionNamed(std::string_view name);  // "osa" or "library", in either case

// "um, orthonormal, index scheme osa, y up"; "waves of 550 nm, ...".
std::string Text(const Convention& convention);

// "um", "waves of 550 nm".
std::string UnitText(const Convention& convention);

// One number for each term by OSA index; missing ones at the end are 0. At most kMaxTerms.
using Coefficients = std::vector<double>;

// Converts from a list in the index scheme osa, noll or fringe, which begins with the first index, and back. Throws
// ListTooLong, and TermNotInScheme if the scheme has no index for a term that is not 0.
Coefficients FromList(IndexScheme scheme, const std::vector<double>& list);
std::vector<double> ToList(IndexScheme scheme, const Coefficients& coefficients);

// The first term that is not 0 and has no number in this index scheme.
std::optional<ZernikeTerm> TermWithoutPlace(IndexScheme scheme, const Coefficients& coefficients);

// The same wavefront in another unit, normalisation and direction of y; the same bits if none of them changes. The
// length of a wave is that of its convention.
Coefficients Converted(Coefficients coefficients, const Convention& from, const Convention& to);

// Mirrors an eye left to right: terms that are odd in x change their sign.
Coefficients Mirrored(Coefficients coefficients);

// Coefficients in the convention of the library: millimetres, not normalised, by OSA index, y down.
using LibraryCoefficients = std::array<Millimetres, ORVANEL_COEFFICIENTS>;

// The numbers for calls of the library, in millimetres.
std::array<double, ORVANEL_COEFFICIENTS> Bare(const LibraryCoefficients& coefficients);

}  // namespace orvanel::eye

#endif  // ORVANEL_EYE_CONVENTIONS_CONVENTION_H
