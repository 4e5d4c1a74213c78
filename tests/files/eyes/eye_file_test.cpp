// Tests reading eye files, and that each refusal names file, key and reason.
#include "files/eyes/eye_file.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

#include "base/error.h"
#include "eye/conventions/errors.h"
#include "tests/support/temporary_files.h"

namespace orvanel::files {
namespace {

constexpr const char* kGood = R"({
  "name": "Right eye", "source": "clinic", "note": "second try",
  "pupil_diameter_mm": 5.5,
  "convention": {"name": "osa", "unit": "um", "normalisation": "orthonormal", "y_axis": "up"},
  "coefficients": [0, 0.25, -3, 4e-2]
})";

std::string Replaced(const std::string& part, const std::string& by) {
  std::string text = kGood;
  const std::size_t at = text.find(part);
  if (at == std::string::npos) throw std::logic_error("not in the good file: " + part);
  return text.replace(at, part.size(), by);
}

// The message of the refusal; empty where the file is taken.
std::string Refusal(const std::string& text) {
  const TemporaryFolder folder;
  Write(folder / "eye.json", text);
  try {
    ReadEyeFile((folder / "eye.json").string());
  } catch (const Error& error) {
    const std::string message = error.what();
    const std::string file = (folder / "eye.json").string() + ": ";
    EXPECT_TRUE(message.starts_with(file)) << message;
    return message.substr(file.size());
  }
  return {};
}

TEST(EyeFile, GivesWhatItSays) {
  const TemporaryFolder folder;
  Write(folder / "eye.json", kGood);
  const Eye eye = ReadEyeFile((folder / "eye.json").string());
  EXPECT_EQ(eye.file, (folder / "eye.json").string());
  EXPECT_EQ(eye.name, "Right eye");
  EXPECT_EQ(eye.source, "clinic");
  EXPECT_EQ(eye.note, "second try");
  EXPECT_EQ(eye.pupil, Millimetres(5.5));
  EXPECT_EQ(eye.coefficients.convention(), kOsaConvention);
  EXPECT_EQ(eye.side, Side::kUnknown);
  EXPECT_EQ(eye.coefficients.AsStated(), (std::vector<double>{0, 0.25, -3, 4e-2}));
}

TEST(EyeFile, NeedsOnlyPupilConventionAndCoefficients) {
  EXPECT_EQ(Refusal(R"({"pupil_diameter_mm": 4, "convention": {"name": "library"}, "coefficients": [0]})"), "");
}

TEST(EyeFile, TakesAsManyCoefficientsAsTheOrderHas) {
  std::string many = "[0";
  for (int i = 1; i < 231; ++i) many += ", " + std::to_string(i);
  EXPECT_EQ(Refusal(Replaced("[0, 0.25, -3, 4e-2]", many + "]")), "");
  EXPECT_EQ(Refusal(Replaced("[0, 0.25, -3, 4e-2]", many + ", 231]")),
            "line 5, column 3: key 'coefficients' holds 232 coefficients in the index scheme osa, which has 231; check "
            "the index scheme");
}

TEST(EyeFile, MayStateTheReferenceWavelength) {
  const TemporaryFolder folder;
  Write(folder / "eye.json", kGood);
  EXPECT_EQ(ReadEyeFile((folder / "eye.json").string()).referenceWavelength, std::nullopt);
  Write(folder / "infrared.json", Replaced("5.5,", "5.5, \"reference_wavelength_nm\": 840.5,"));
  const Eye infrared = ReadEyeFile((folder / "infrared.json").string());
  EXPECT_EQ(infrared.referenceWavelength, Nanometres(840.5));
  Write(folder / "again.json", EyeFileText(infrared));
  EXPECT_EQ(ReadEyeFile((folder / "again.json").string()).referenceWavelength, Nanometres(840.5));
  PartialConvention stated;
  stated.reference = Nanometres(555.0);
  EXPECT_EQ(ReadEyeFile((folder / "eye.json").string(), stated).referenceWavelength, Nanometres(555.0));
  EXPECT_THROW(ReadEyeFile((folder / "infrared.json").string(), stated), ErrorAt);
}

constexpr const char* kSpelledOut = R"({
  "pupil_diameter_mm": 5.5, "eye": "OS",
  "convention": {"unit": "waves", "wavelength_nm": 543.5, "normalisation": "none", "order": "fringe", "y_axis": "down"},
  "coefficients": [0, 0, 0, 4, 5, 6, 7, 8, 9]
})";

Eye EyeOf(const std::string& text, const PartialConvention& stated = {}) {
  const TemporaryFolder folder;
  Write(folder / "eye.json", text);
  return ReadEyeFile((folder / "eye.json").string(), stated);
}

TEST(EyeFile, AnErrorAtAPlaceKeepsTheCodeOfItsCause) {
  std::string text = kSpelledOut;
  text.replace(text.find("5.5"), 3, "-5.5");
  try {
    EyeOf(text);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.place.line, 2U);
    try {
      error.rethrow_nested();
    } catch (const LengthNotPositive& cause) {
      EXPECT_EQ(cause.key, "pupil_diameter_mm");
      EXPECT_EQ(cause.text, "-5.5");
    }
  }
}

TEST(EyeFile, MaySpellItsConventionOut) {
  const Eye eye = EyeOf(kSpelledOut);
  EXPECT_EQ(eye.side, Side::kOs);
  EXPECT_EQ(eye.coefficients.convention(),
            (Convention{Unit::kWaves, Nanometres(543.5), Normalisation::kNone, IndexScheme::kFringe, YAxis::kDown}));
  // 4 is defocus, 5 and 6 are astigmatism, 7 and 8 coma, 9 spherical aberration.
  EXPECT_EQ(eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 6, 4, 5, 0, 8, 7, 0, 0, 0, 9}));
}

TEST(EyeFile, MayBeginWithAByteOrderMark) {
  EXPECT_EQ(EyeOf("\xEF\xBB\xBF" + std::string(kGood)).coefficients.AsStated(), (Coefficients{0, 0.25, -3, 4e-2}));
}

// With a search of the text for each number, these would take minutes.
TEST(EyeFile, OfManyCoefficientsIsRefusedAtOnce) {
  std::string list = "[0", names = "{\"Z0\": 0";
  for (int i = 1; i < 60'000; ++i) {
    list += ",0";
    names += ",\"Z(" + std::to_string(i) + "\":0";
  }
  EXPECT_EQ(Refusal(Replaced("[0, 0.25, -3, 4e-2]", list + "]")),
            "line 5, column 3: key 'coefficients' holds 60000 coefficients in the index scheme osa, which has 231; "
            "check the index scheme");
  EXPECT_TRUE(Refusal(Replaced("[0, 0.25, -3, 4e-2]", names + "}")).starts_with("line 5, column 28: key 'Z(1' looks"));
}

TEST(EyeFile, MayNameItsCoefficients) {
  const std::string beginning = R"({"pupil_diameter_mm": 5, "eye": "OD", "convention": {"unit": "nm", )"
                                R"("normalisation": "none", "y_axis": "up")";
  EXPECT_EQ(EyeOf(beginning + R"json(}, "coefficients": {"Z(2,0)": 1, "c[2,-2]": 2}})json").coefficients.AsStated(),
            (Coefficients{0, 0, 0, 2, 1}));
  EXPECT_EQ(EyeOf(beginning + R"(, "order": "noll"}, "coefficients": {"Z5": 1, "Z4": 2}})").coefficients.AsStated(),
            (Coefficients{0, 0, 0, 1, 2}));
}

TEST(EyeFile, IsCompletedByTheCommandLine) {
  PartialConvention stated = PartsOf(kOsaConvention);
  stated.side = Side::kOd;
  stated.pupil = Millimetres(6.0);
  const Eye eye = EyeOf(R"({"coefficients": [0, 0, 0, 1]})", stated);
  EXPECT_EQ(eye.pupil, Millimetres(6.0));
  EXPECT_EQ(eye.side, Side::kOd);
  EXPECT_EQ(eye.coefficients.convention(), kOsaConvention);
  EXPECT_THROW(EyeOf(kSpelledOut, stated), Error);
}

TEST(EyeFile, IsReadAsItIsWritten) {
  Eye eye = EyeOf(kSpelledOut);
  eye.name = "A \"name\"";
  for (const IndexScheme scheme : {IndexScheme::kOsa, IndexScheme::kNoll, IndexScheme::kFringe, IndexScheme::kNamed}) {
    Convention convention = eye.coefficients.convention();
    convention.scheme = scheme;
    Coefficients numbers = eye.coefficients.AsStated();
    numbers[3] = 1.0 / 3.0;
    eye.coefficients = {convention, std::move(numbers)};
    const Eye again = EyeOf(EyeFileText(eye));
    EXPECT_EQ(again.name, eye.name);
    EXPECT_EQ(again.side, eye.side);
    EXPECT_EQ(again.pupil, eye.pupil);
    EXPECT_EQ(again.coefficients, eye.coefficients) << Word(scheme);
  }
}

TEST(EyeFile, ShippedEyesAreGood) {
  for (const auto& entry : std::filesystem::directory_iterator(ORVANEL_EYES)) {
    const Eye eye = ReadEyeFile(entry.path().string());
    EXPECT_FALSE(eye.name.empty()) << entry;
    EXPECT_FALSE(eye.source.empty()) << entry;
  }
}

TEST(EyeFile, CutOffAnywhereIsRefused) {
  const std::string text = kGood;
  for (std::size_t length = 0; length < text.size(); ++length) {
    EXPECT_NE(Refusal(text.substr(0, length)), "") << length;
  }
}

struct Fault {
  const char* name;  // as a sentence
  std::string text;
  const char* message;
};

void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.name; }

class EyeFileFault : public testing::TestWithParam<Fault> {};

TEST_P(EyeFileFault, IsRefusedWithKeyReasonAndRemedy) { EXPECT_EQ(Refusal(GetParam().text), GetParam().message); }

const Fault kFaults[] = {
    {"MisspeltKey", Replaced("pupil_diameter_mm", "pupil_diametre_mm"),
     "line 3, column 3: key 'pupil_diametre_mm' is not known; did you mean 'pupil_diameter_mm'?"},
    {"UnknownKey", Replaced("\"note\"", "\"eyelashes\""),
     "line 2, column 44: key 'eyelashes' is not known; the keys are name, source, note, pupil_diameter_mm, "
     "reference_wavelength_nm, eye, convention, coefficients"},
    {"MisspeltKeyOfTheConvention", Replaced("normalisation", "normalization"),
     "line 4, column 47: key 'convention.normalization' is not known; did you mean 'convention.normalisation'?"},
    {"KeyGivenTwice", Replaced("\"note\"", "\"source\""), "line 2, column 44: key 'source' is given twice; keep one"},
    {"KeyOfTheConventionGivenTwice", Replaced("\"unit\": \"um\"", "\"name\": \"osa\""),
     "line 4, column 33: key 'convention.name' is given twice; keep one"},
    {"PupilMissing", Replaced("\"pupil_diameter_mm\": 5.5,", ""),
     "line 4, column 3: the convention of the coefficients is incomplete; missing: pupil_diameter_mm (over which the "
     "eye was measured)"},
    {"PupilInQuotes", Replaced("5.5", "\"5.5\""),
     "line 3, column 3: key 'pupil_diameter_mm' must be a number, not string; write it without quotes, such as 6.0"},
    {"PupilTrue", Replaced("5.5", "true"),
     "line 3, column 3: key 'pupil_diameter_mm' must be a number, not boolean; write it without quotes, such as 6.0"},
    {"PupilZero", Replaced("5.5", "0.0"),
     "line 3, column 3: key pupil_diameter_mm is 0.0; a length must be greater than 0"},
    {"PupilNegative", Replaced("5.5", "-5.5"),
     "line 3, column 3: key pupil_diameter_mm is -5.5; a length must be greater than 0"},
    {"PupilBeyondDoubles", Replaced("5.5", "1e999"),
     "line 3, column 3: key 'pupil_diameter_mm' holds a number too large to be finite; check its exponent"},
    {"CoefficientBeyondDoubles", Replaced("4e-2", "-1e999"),
     "line 5, column 3: key 'coefficients' holds a number too large to be finite; check its exponent"},
    {"CoefficientNotANumber", Replaced("4e-2", "null"),
     "line 5, column 33: key 'coefficients[3]' must be a number, not null; write 0 for a term that is absent"},
    {"CoefficientsMissing", Replaced(",\n  \"coefficients\": [0, 0.25, -3, 4e-2]", ""),
     "line 1, column 1: key 'coefficients' is missing; give an array of numbers, or an object such as {\"Z(2,0)\": "
     "0.1}"},
    {"CoefficientsEmpty", Replaced("[0, 0.25, -3, 4e-2]", "[]"),
     "line 5, column 3: key 'coefficients' holds no numbers; give at least one"},
    {"CoefficientsAnObject", Replaced("[0, 0.25, -3, 4e-2]", "{}"),
     "line 5, column 3: key 'coefficients' holds no numbers; give at least one"},
    {"ConventionMissing", R"({"pupil_diameter_mm": 4, "coefficients": [0]})",
     "line 1, column 1: the convention of the coefficients is incomplete; missing: unit (mm, um, nm, waves); "
     "normalisation (orthonormal, none); order (osa, noll, fringe, named); y_axis (up, down); eye (OD, OS, unknown)"},
    {"ConventionAString", R"({"pupil_diameter_mm": 4, "convention": "osa", "coefficients": [0]})",
     "line 1, column 26: key 'convention' must be an object, not string; write {\"name\": \"osa\"} or {\"name\": "
     "\"library\"}, or state its parts"},
    {"ConventionWithoutName", Replaced("\"name\": \"osa\", ", ""),
     "line 4, column 3: the convention of the coefficients is incomplete; missing: order (osa, noll, fringe, named); "
     "eye (OD, OS, unknown)"},
    {"SpelledOutWithGaps", R"({"pupil_diameter_mm": 4,
 "convention": {"unit": "waves", "y_axis": "up"}, "coefficients": [0]})",
     "line 2, column 2: the convention of the coefficients is incomplete; missing: wavelength_nm (of one wave); "
     "normalisation (orthonormal, none); order (osa, noll, fringe, named); eye (OD, OS, unknown)"},
    {"UnitUnknown", Replaced("\"um\"", "\"inch\""),
     "line 4, column 33: key unit is 'inch'; it is one of mm, um, nm, waves"},
    {"SideUnknown", Replaced("\"note\": \"second try\"", "\"eye\": \"third\""),
     "line 2, column 44: key eye is 'third'; it is one of OD, OS, unknown"},
    {"WavelengthInQuotes", Replaced("\"unit\": \"um\"", "\"wavelength_nm\": \"550\""),
     "line 4, column 33: key 'convention.wavelength_nm' must be a number, not string; write it without quotes, such as "
     "6.0"},
    {"WavelengthWithoutWaves", Replaced("\"unit\": \"um\"", "\"wavelength_nm\": 550"),
     "line 4, column 3: wavelength_nm is stated, but the unit is um; only the unit waves has a wavelength. State the "
     "one at which the coefficients hold as reference_wavelength_nm"},
    {"ReferenceWavelengthInMicrometres", Replaced("5.5,", "5.5, \"reference_wavelength_nm\": 0.85,"),
     "line 3, column 29: key reference_wavelength_nm is 0.85; it is from 300 to 1200 nm. Write it in nanometres, such "
     "as 555"},
    {"ReferenceWavelengthInQuotes", Replaced("5.5,", "5.5, \"reference_wavelength_nm\": \"850\","),
     "line 3, column 29: key 'reference_wavelength_nm' must be a number, not string; write it without quotes, such as "
     "6.0"},
    {"ReferenceWavelengthMisspelt", Replaced("5.5,", "5.5, \"reference_wavelength\": 850,"),
     "line 3, column 29: key 'reference_wavelength' is not known; did you mean 'reference_wavelength_nm'?"},
    {"ReferenceWavelengthInTheConvention", Replaced("\"unit\": \"um\"", "\"reference_wavelength_nm\": 850"),
     "line 4, column 33: key 'convention.reference_wavelength_nm' is not known; write it beside 'convention', not "
     "within"},
    {"TermNamedTwice", Replaced("[0, 0.25, -3, 4e-2]", R"json({"Z4": 1, "Z(2,0)": 2})json"),
     "line 5, column 29: key 'coefficients.Z(2,0)' names the term Z(2,0), which is given already; keep one"},
    {"NameOfNoCoefficient", Replaced("[0, 0.25, -3, 4e-2]", R"({"defocus": 1})"),
     "line 5, column 20: key 'coefficients.defocus' is not a name of a coefficient; write Z4, Z(2,0) or c[2,-2]"},
    {"NameOfNoTerm", Replaced("[0, 0.25, -3, 4e-2]", R"json({"Z(2,1)": 1})json"),
     "line 5, column 20: key 'Z(2,1)' is not a Zernike term; write the radial order n (0 to 20) first and then m, from "
     "-n "
     "to n in steps of 2"},
    {"NamedOrderWithAList",
     Replaced("\"name\": \"osa\",", "\"order\": \"named\",").replace(2, 0, "  \"eye\": \"OD\",\n"),
     "line 6, column 3: key 'coefficients' is an array, but the index scheme is \"named\"; write an object such as "
     "{\"Z(2,0)\": 0.1}"},
    {"ConventionUnknown", Replaced("\"osa\"", "\"noll\""),
     "line 4, column 18: key 'convention.name' is 'noll'; write \"osa\" or \"library\", or state unit, "
     "normalisation, order and y_axis without a name"},
    {"UnitContradictsTheConvention", Replaced("\"um\"", "\"mm\""),
     "line 4, column 3: unit is mm in the convention, which contradicts its name 'osa', where it is um; state it "
     "once"},
    {"NormalisationContradictsTheConvention", Replaced("\"orthonormal\"", "\"none\""),
     "line 4, column 3: normalisation is none in the convention, which contradicts its name 'osa', where it is "
     "orthonormal; state it once"},
    {"AxisContradictsTheConvention", Replaced("\"up\"", "\"down\""),
     "line 4, column 3: y_axis is down in the convention, which contradicts its name 'osa', where it is up; state it "
     "once"},
    {"NameANumber", Replaced("\"Right eye\"", "7"),
     "line 2, column 3: key 'name' must be a string, not number; put it in quotes"},
    {"NameOfTwoLines", Replaced("Right eye", "Right\\neye"),
     "line 2, column 3: key 'name' holds a line break or control character; write it in one line"},
    {"NotAnObject", "[1, 2]", "line 1, column 1: must be a JSON object, not array; put its keys in braces"},
    {"Empty", "",
     "line 1, column 1: is not valid JSON: syntax error while parsing value - unexpected end of input; expected '[', "
     "'{', or a literal"},
    {"BrokenOnTheFourthLine", Replaced("{\"name\": \"osa\"", "{\"name\" \"osa\""),
     "line 4, column 29: is not valid JSON: syntax error while parsing object separator - unexpected string literal; "
     "expected ':'"},
    {"NotANumberOfJson", Replaced("4e-2", "NaN"),
     "line 5, column 33: is not valid JSON: syntax error while parsing value - invalid literal; last read: '-3, N'"},
    {"Utf16", "\xFF\xFE" + std::string(kGood), "line 1, column 1: the file is UTF-16; save it as UTF-8"},
    {"NameOfAConventionAnArray", Replaced("\"osa\"", "[\"osa\"]"),
     "line 4, column 18: key 'convention.name' is array; write \"osa\" or \"library\", or state unit, "
     "normalisation, order and y_axis without a name"},
    {"NestedDeeply", Replaced("\"osa\"", std::string(100'000, '[') + std::string(100'000, ']')),
     "line 4, column 56: has brackets nested more than 32 deep; remove them"},
    {"TooLarge", std::string(kGood) + std::string(1 << 20, ' '), "is larger than 1 MiB; an eye file holds one eye"},
};

INSTANTIATE_TEST_SUITE_P(All, EyeFileFault, testing::ValuesIn(kFaults),
                         [](const auto& fault) { return std::string(fault.param.name); });

TEST(EyeFile, ThatDoesNotExistIsRefused) {
  try {
    ReadEyeFile("nowhere.json");
    FAIL();
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "nowhere.json: cannot be read: No such file or directory");
  }
}

TEST(EyeFile, ThatIsADirectoryIsRefused) {
  const TemporaryFolder folder;
  try {
    ReadEyeFile(folder.path().string());
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.what(), folder.path().string() + ": is a directory; give a file");
  }
}

}  // namespace
}  // namespace orvanel::files
