// Eye files: what a good one says, and that each refusal names file, key and reason.
#include "cli/eye_file.h"

#include <gtest/gtest.h>

#include <ostream>

#include "cli/error.h"
#include "tests/cli/temporary_folder.h"

namespace orvanel::cli {
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
  EXPECT_EQ(eye.convention, Convention::kOsa);
  EXPECT_EQ(eye.coefficients, (std::vector<double>{0, 0.25, -3, 4e-2}));
}

TEST(EyeFile, NeedsOnlyPupilConventionAndCoefficients) {
  EXPECT_EQ(Refusal(R"({"pupil_diameter_mm": 4, "convention": {"name": "library"}, "coefficients": [0]})"), "");
}

TEST(EyeFile, TakesTwentyEightCoefficients) {
  std::string many = "[0";
  for (int i = 1; i < 28; ++i) many += ", " + std::to_string(i);
  EXPECT_EQ(Refusal(Replaced("[0, 0.25, -3, 4e-2]", many + "]")), "");
  EXPECT_EQ(Refusal(Replaced("[0, 0.25, -3, 4e-2]", many + ", 28]")),
            "key 'coefficients' holds 29 numbers; give 1 to 28, for radial orders 0 to 6");
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
     "key 'pupil_diametre_mm' is not known; did you mean 'pupil_diameter_mm'?"},
    {"UnknownKey", Replaced("\"note\"", "\"eyelashes\""),
     "key 'eyelashes' is not known; the keys are name, source, note, pupil_diameter_mm, convention, coefficients"},
    {"MisspeltKeyOfTheConvention", Replaced("normalisation", "normalization"),
     "key 'convention.normalization' is not known; did you mean 'convention.normalisation'?"},
    {"KeyGivenTwice", Replaced("\"note\"", "\"source\""), "key 'source' is given twice; keep one of the two"},
    {"KeyOfTheConventionGivenTwice", Replaced("\"unit\": \"um\"", "\"name\": \"osa\""),
     "key 'convention.name' is given twice; keep one of the two"},
    {"PupilMissing", Replaced("\"pupil_diameter_mm\": 5.5,", ""),
     "key 'pupil_diameter_mm' is missing; give the pupil's diameter, such as 6.0"},
    {"PupilInQuotes", Replaced("5.5", "\"5.5\""),
     "key 'pupil_diameter_mm' must be a number, not string; write millimetres without quotes, such as 6.0"},
    {"PupilTrue", Replaced("5.5", "true"),
     "key 'pupil_diameter_mm' must be a number, not boolean; write millimetres without quotes, such as 6.0"},
    {"PupilZero", Replaced("5.5", "0.0"), "key 'pupil_diameter_mm' is 0.0; a diameter is greater than 0"},
    {"PupilNegative", Replaced("5.5", "-5.5"), "key 'pupil_diameter_mm' is -5.5; a diameter is greater than 0"},
    {"PupilBeyondDoubles", Replaced("5.5", "1e999"),
     "key 'pupil_diameter_mm': a number is too large to be finite; check its exponent"},
    {"CoefficientBeyondDoubles", Replaced("4e-2", "-1e999"),
     "key 'coefficients': a number is too large to be finite; check its exponent"},
    {"CoefficientNotANumber", Replaced("4e-2", "null"),
     "key 'coefficients[3]' must be a number, not null; write 0 for a term that is absent"},
    {"CoefficientsMissing", Replaced(",\n  \"coefficients\": [0, 0.25, -3, 4e-2]", ""),
     "key 'coefficients' is missing; give an array of 1 to 28 numbers"},
    {"CoefficientsEmpty", Replaced("[0, 0.25, -3, 4e-2]", "[]"),
     "key 'coefficients' holds 0 numbers; give 1 to 28, for radial orders 0 to 6"},
    {"CoefficientsAnObject", Replaced("[0, 0.25, -3, 4e-2]", "{}"),
     "key 'coefficients' must be an array, not object; give 1 to 28 numbers in square brackets"},
    {"ConventionMissing", R"({"pupil_diameter_mm": 4, "coefficients": [0]})",
     R"(key 'convention' is missing; say {"name": "osa"} or {"name": "library"})"},
    {"ConventionAString", R"({"pupil_diameter_mm": 4, "convention": "osa", "coefficients": [0]})",
     R"(key 'convention' must be an object, not string; say {"name": "osa"} or {"name": "library"})"},
    {"ConventionWithoutName", Replaced("\"name\": \"osa\", ", ""),
     R"(key 'convention.name' is missing; it is "osa" or "library")"},
    {"ConventionUnknown", Replaced("\"osa\"", "\"noll\""),
     R"(key 'convention.name' is "noll"; it must be "osa" or "library")"},
    {"UnitContradictsTheConvention", Replaced("\"um\"", "\"mm\""),
     R"(key 'convention.unit' is "mm", which contradicts the convention 'osa'; there it is "um")"},
    {"NormalisationContradictsTheConvention", Replaced("\"orthonormal\"", "\"none\""),
     R"(key 'convention.normalisation' is "none", which contradicts the convention 'osa'; there it is "orthonormal")"},
    {"AxisContradictsTheConvention", Replaced("\"up\"", "\"down\""),
     R"(key 'convention.y_axis' is "down", which contradicts the convention 'osa'; there it is "up")"},
    {"NameANumber", Replaced("\"Right eye\"", "7"), "key 'name' must be a string, not number; put it in quotes"},
    {"NameOfTwoLines", Replaced("Right eye", "Right\\neye"),
     "key 'name' holds a line break or control character; write it in one line"},
    {"NotAnObject", "[1, 2]", "must be a JSON object, not array; put its keys in braces"},
    {"Empty", "",
     "is not valid JSON at line 1, column 1: syntax error while parsing value - unexpected end of input; expected '[', "
     "'{', or a literal"},
    {"BrokenOnTheFourthLine", Replaced("{\"name\": \"osa\"", "{\"name\" \"osa\""),
     "is not valid JSON at line 4, column 29: syntax error while parsing object separator - unexpected string literal; "
     "expected ':'"},
    {"NotANumberOfJson", Replaced("4e-2", "NaN"),
     "is not valid JSON at line 5, column 33: syntax error while parsing value - invalid literal; last read: '-3, N'"},
    {"ByteOrderMark", "\xEF\xBB\xBF" + std::string(kGood),
     "begins with a byte order mark; save it as UTF-8 without one"},
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
    EXPECT_EQ(error.what(), folder.path().string() + ": is a directory; give the eye file itself");
  }
}

}  // namespace
}  // namespace orvanel::cli
