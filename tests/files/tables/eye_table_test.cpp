// Tests how the columns of a table of eyes are read, and what is refused.
#include "files/tables/eye_table.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <sstream>

#include "eye/conventions/errors.h"

namespace orvanel::files {
namespace {

PartialConvention Stated() {
  PartialConvention parts = PartsOf(kOsaConvention);
  parts.side = Side::kOd;
  parts.pupil = Millimetres(6.0);
  return parts;
}

// A table with the text that it reads.
struct Opened {
  explicit Opened(const std::string& text, const PartialConvention& stated = {}, TableKind kind = TableKind::kCsv,
                  TableOptions options = {})
      : stream(std::make_unique<std::istringstream>(text)), table(*stream, "t.csv", kind, stated, options) {}

  TableEye Next() {
    TableEye eye;
    EXPECT_TRUE(table.Next(eye));
    return eye;
  }

  std::unique_ptr<std::istringstream> stream;
  EyeTable table;
};

// A host that words its own messages needs more than the sentence.
TEST(EyeTable, AnErrorAtAPlaceKeepsTheCodeOfItsCause) {
  try {
    Opened("id,Z-4\n");
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.place.column, 4U);
    try {
      error.rethrow_nested();
    } catch (const InvalidCoefficientName& cause) {
      EXPECT_EQ(cause.problem, NameProblem::kSignedNumber);
      EXPECT_EQ(cause.name, "Z-4");
    }
  }
}

TEST(EyeTable, ARowMayStateEverything) {
  Opened opened(
      "id,visit,pupil_diameter_mm,eye,unit,wavelength_nm,normalisation,order,y_axis,Z4,Z8\n"
      "A,1,5.5,OS,waves,550,none,noll,down,0.25,-0.5\n"
      "B,,6,OD,um,,orthonormal,fringe,up,1,2\n");
  EXPECT_EQ(opened.table.identifierNames(), (std::vector<std::string>{"id", "visit"}));
  EXPECT_EQ(opened.table.CommonScheme(), std::nullopt);
  const TableEye a = opened.Next(), b = opened.Next();
  EXPECT_EQ(a.line, 2U);
  EXPECT_EQ(a.identifiers, (std::vector<std::string>{"A", "1"}));
  EXPECT_EQ(a.eye.pupil, Millimetres(5.5));
  EXPECT_EQ(a.eye.side, Side::kOs);
  EXPECT_EQ(a.eye.coefficients.convention(),
            (Convention{Unit::kWaves, Nanometres(550.0), Normalisation::kNone, IndexScheme::kNoll, YAxis::kDown}));
  EXPECT_EQ(a.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 0.25, 0, 0, 0, -0.5}));
  EXPECT_EQ(b.identifiers, (std::vector<std::string>{"B", ""}));
  EXPECT_EQ(b.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 1, 0, 0, 2}));
  TableEye none;
  EXPECT_FALSE(opened.table.Next(none));
}

TEST(EyeTable, TheCommandLineMayStateItForAllRows) {
  Opened opened("Z3;Z4\n0.5;-0.25\n", Stated());
  EXPECT_EQ(opened.table.CommonScheme(), IndexScheme::kOsa);
  EXPECT_EQ(opened.Next().eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0.5, -0.25}));
}

TEST(EyeTable, RowsMayHaveDifferentReferenceWavelengthsOrNone) {
  Opened opened("id,Reference_Wavelength_nm,Z4\na,850,1\nb,,1\nc,555,1\nd,85,1\ne,555,1\n", Stated());
  EXPECT_TRUE(opened.table.MayStateReference());
  EXPECT_EQ(opened.table.identifierNames(), std::vector<std::string>{"id"});
  EXPECT_EQ(opened.Next().eye.referenceWavelength, Nanometres(850.0));
  EXPECT_EQ(opened.Next().eye.referenceWavelength, std::nullopt);
  EXPECT_EQ(opened.Next().eye.referenceWavelength, Nanometres(555.0));
  TableEye row;
  try {
    opened.table.Next(row);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_STREQ(error.what(),
                 "t.csv: line 5, column 3: column 'Reference_Wavelength_nm': reference_wavelength_nm is 85; it is from "
                 "300 to 1200 nm. Write it in nanometres, such as 555");
  }
  EXPECT_EQ(opened.Next().eye.referenceWavelength, Nanometres(555.0));
}

TEST(EyeTable, TheReferenceWavelengthMayBeStatedForAllRows) {
  EXPECT_FALSE(Opened("Z4\n1\n", Stated()).table.MayStateReference());
  PartialConvention stated = Stated();
  stated.reference = Nanometres(555.0);
  Opened opened(
      "{\"Z4\": 1}\n{\"Z4\": 1, \"reference_wavelength_nm\": 555}\n"
      "{\"Z4\": 1, \"reference_wavelength_nm\": 850}\n",
      stated, TableKind::kNdjson);
  EXPECT_TRUE(opened.table.MayStateReference());
  EXPECT_EQ(opened.Next().eye.referenceWavelength, Nanometres(555.0));
  EXPECT_EQ(opened.Next().eye.referenceWavelength, Nanometres(555.0));
  TableEye row;
  EXPECT_THROW(opened.table.Next(row), ErrorAt);
}

// It would be taken for the user's own column, and silently left out.
TEST(EyeTable, AReferenceWavelengthWithoutItsUnitIsRefused) {
  EXPECT_THROW(Opened("reference_wavelength,Z4\n850,1\n", Stated()), ErrorAt);
}

TEST(EyeTable, NamedTermsAreNamedWhateverARowSays) {
  Opened opened("pupil_diameter_mm,eye,unit,normalisation,order,y_axis,\"Z(2,0)\"\n6,OD,um,orthonormal,named,up,0.5\n");
  EXPECT_EQ(opened.table.CommonScheme(), IndexScheme::kNamed);
  EXPECT_EQ(opened.Next().eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 0.5}));
}

TEST(EyeTable, NamedTermsNeedNoOrder) {
  PartialConvention stated = Stated();
  stated.scheme.reset();
  Opened opened("\"c[2,-2]\",\"Z(2,0)\"\n0.5,-0.25\n", stated);
  EXPECT_EQ(opened.table.CommonScheme(), IndexScheme::kNamed);
  const TableEye row = opened.Next();
  EXPECT_EQ(row.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0.5, -0.25}));
  EXPECT_EQ(row.eye.coefficients.convention().scheme, IndexScheme::kNamed);
}

TEST(EyeTable, KnowsEveryTermThatARowMayHave) {
  EXPECT_EQ(Opened("Z4,Z7\n", Stated()).table.Terms(), (std::vector<std::size_t>{4, 7}));
  // Number 7 is (3,-1) for osa and noll and (3,1) for fringe.
  EXPECT_EQ(Opened("order,Z7\n").table.Terms(), (std::vector<std::size_t>{7, 8}));
}

TEST(EyeTable, RowsOfJsonHaveTheirKeysForColumns) {
  Opened opened("{\"id\": \"A\", \"Z4\": 0.5}\n{\"Z4\": 1, \"Z7\": 2, \"id\": 7}\n{\"Z4\": 3}\n", Stated(),
                TableKind::kNdjson);
  EXPECT_EQ(opened.Next().eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 0.5}));
  const TableEye second = opened.Next();
  EXPECT_EQ(second.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 1, 0, 0, 2}));
  EXPECT_EQ(second.identifiers, std::vector<std::string>{"7"});
  EXPECT_EQ(opened.Next().identifiers, std::vector<std::string>{""});
}

TEST(EyeTable, ANameCannotSteerTheTerminal) {
  Opened opened("name,Z4\n\"a\x1b[2Jb\nc\",1\n", Stated());
  const TableEye row = opened.Next();
  EXPECT_EQ(row.eye.name, "a\\x1b[2Jb\\x0ac");
  EXPECT_EQ(row.identifiers, std::vector<std::string>{"a\x1b[2Jb\nc"});  // carried as they are
}

TEST(EyeTable, GoesOnBehindABadRow) {
  Opened opened("id,Z4\na,x\nb,1\nc,1,2\nd,2\n", Stated());
  TableEye row;
  EXPECT_THROW(opened.table.Next(row), ErrorAt);
  EXPECT_EQ(opened.Next().identifiers, std::vector<std::string>{"b"});
  EXPECT_THROW(opened.table.Next(row), ErrorAt);
  EXPECT_EQ(opened.Next().identifiers, std::vector<std::string>{"d"});
}

TEST(EyeTable, NamesMayHaveBlanksAndOtherLetters) {
  PartialConvention stated = Stated();
  stated.pupil.reset();
  stated.side.reset();
  Opened opened("zone; EYE; Pupil_Diameter_mm ; Z12;z 4;Z_3_-1; C1_visit\n1; od; 6 ;1;2;3;4\n", stated);
  const TableEye row = opened.Next();
  EXPECT_EQ(row.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 2, 0, 0, 3, 0, 0, 0, 0, 1}));
  EXPECT_EQ(row.eye.side, Side::kOd);
  EXPECT_EQ(row.eye.pupil, Millimetres(6.0));
  EXPECT_EQ(opened.table.identifierNames(), (std::vector<std::string>{"zone", " C1_visit"}));
  EXPECT_EQ(opened.table.Summary(), "read as coefficients: Z12, z 4, Z_3_-1; copied: zone, C1_visit");
}

TEST(EyeTable, SaysWhatKeysOfTheFirstRowAreReadAs) {
  EXPECT_EQ(Opened("{\" Z4\": 1, \"eye\": \"R\", \"id\": 3}\n", Stated(), TableKind::kNdjson).table.Summary(),
            "read as coefficients: Z4; copied: id");
  std::string many = "Z4";
  for (int i = 0; i < 100; ++i) many += ",own" + std::to_string(i);
  const std::string summary = Opened(many + "\n", Stated()).table.Summary();
  EXPECT_TRUE(summary.ends_with("own38, own39 and 60 more")) << summary;
}

TEST(EyeTable, ARowOfJsonAtFaultIsIdentifiedAllTheSame) {
  Opened opened(
      "{\"id\": \"A\", \"visit\": 1, \"Z4\": 0.5}\n"
      "{\"Z4\": null, \"id\": \"B\", \"visit\": 2}\n"
      "{\"id\": \"C\", \"Z4\": 1, \"Z4\": 2, \"visit\": 3}\n"
      "{\"id\": \"D\", \"visit\": 4, \"Z4\": 1e999}\n"
      "{\"visit\": 5, \"id\": \"E\", \"Z4\": \"x\"}\n"
      "{\"visit\": 6, \"id\": \"F\", \"Z4\": 1, \"Z_1_2\": 2}\n"
      "{\"visit\": 7, \"id\": \"G\", \"Z4\": 1, \"new\": 2}\n"
      "{\"visit\": 8, \"id\": \"H\", oops\n",
      Stated(), TableKind::kNdjson);
  opened.Next();
  for (const char* id : {"B", "C", "D", "E", "F", "G", "H"}) {
    TableEye row;
    EXPECT_THROW(opened.table.Next(row), ErrorAt) << id;
    EXPECT_EQ(row.identifiers, (std::vector<std::string>{id, std::to_string(*id - 'A' + 1)}));
  }
}

TEST(EyeTable, ARowOfCsvWithAFieldAtFaultIsIdentifiedByThoseBefore) {
  Opened opened("id,Z4,note\na,1,say \"no\"\n\"b,1,x\n", Stated());
  TableEye row;
  EXPECT_THROW(opened.table.Next(row), ErrorAt);
  EXPECT_EQ(row.identifiers, (std::vector<std::string>{"a", ""}));
  EXPECT_THROW(opened.table.Next(row), ErrorAt);
  EXPECT_EQ(row.identifiers, (std::vector<std::string>{"", ""}));
}

// With a search for each name, this would take minutes.
TEST(EyeTable, RowsWithEightyThousandKeysInAnyOrderAreRead) {
  constexpr int kKeys = 80'000;
  std::string text = "{\"Z4\":1", line = "{\"Z4\":2";
  for (int i = 0; i < kKeys; ++i) {
    text += ",\"own" + std::to_string(i) + "\":1";
    line += ",\"own" + std::to_string(kKeys - 1 - i) + "\":" + std::to_string(kKeys - 1 - i);
  }
  Opened opened(text + "}\n" + line + "}\n", Stated(), TableKind::kNdjson);
  opened.Next();
  EXPECT_EQ(opened.Next().identifiers.at(54'321), "54321");
}

TEST(EyeTable, ColumnsOfARefractionAreCarriedThroughUnlessAskedFor) {
  const std::string text = "id,sphere,cylinder,axis,Z4\na,-2,-0.75,20,0.5\n";
  Opened carried(text, Stated());
  const TableEye row = carried.Next();
  EXPECT_EQ(row.identifiers, (std::vector<std::string>{"a", "-2", "-0.75", "20"}));
  EXPECT_FALSE(row.eye.prescription);
  Opened read(text, Stated(), TableKind::kCsv, {.prescription = true});
  const TableEye eye = read.Next();
  EXPECT_EQ(eye.identifiers, std::vector<std::string>{"a"});
  ASSERT_TRUE(eye.eye.prescription);
  const PowerVector expected = ToPowerVector({Dioptres(-2.0), Dioptres(-0.75), Degrees(20.0)});
  EXPECT_EQ(eye.eye.prescription->m, expected.m);
  EXPECT_EQ(eye.eye.prescription->j0, expected.j0);
  EXPECT_EQ(eye.eye.prescription->j45, expected.j45);
  EXPECT_EQ(eye.eye.coefficients.AsStated(), (Coefficients{0, 0, 0, 0, 0.5}));
  EXPECT_EQ(read.table.Summary(), "read as coefficients: Z4; added as refraction: sphere, cylinder, axis; copied: id");
}

TEST(EyeTable, ARefractionMayBeEmptyOrASphereAlone) {
  Opened opened("S;Cyl;AX;Z4\n ;;;0.5\n-1;0;0;0.5\n", Stated(), TableKind::kCsv, {.prescription = true});
  EXPECT_FALSE(opened.Next().eye.prescription);
  EXPECT_EQ(opened.Next().eye.prescription->m, Dioptres(-1.0));
  Opened sphere("sph,Z4\n-1.5,0.5\n", Stated(), TableKind::kCsv, {.prescription = true});
  EXPECT_EQ(sphere.Next().eye.prescription->m, Dioptres(-1.5));
}

TEST(EyeTable, ARefractionThatIsHalfThereIsRefused) {
  const auto reason = [](const std::string& text) -> std::string {
    try {
      Opened opened(text, Stated(), TableKind::kCsv, {.prescription = true});
      for (TableEye row; opened.table.Next(row);) {
      }
    } catch (const ErrorAt& error) {
      return error.what();
    }
    return {};
  };
  EXPECT_EQ(reason("sphere,cylinder,axis,Z4\n-2,-0.75,,1\n"),
            "t.csv: line 2, column 10: column 'axis' is empty and column 'cylinder' is not; write 0, or leave all "
            "three empty");
  EXPECT_EQ(reason("sphere,cylinder,axis,Z4\n-2,-0.75,181,1\n"),
            "t.csv: line 2, column 10: column 'axis': an axis must be from 0 to 180 degrees");
  EXPECT_EQ(reason("sphere,cylinder,Z4\n"),
            "t.csv: line 1, column 8: cylinder and axis belong together; add the column that is missing");
  EXPECT_EQ(reason("sphere,sph,Z4\n"),
            "t.csv: line 1, column 8: the columns 'sphere' and 'sph' both hold the sphere; keep one");
  EXPECT_EQ(reason("id,Z4\n"),
            "t.csv: line 1, column 1: no column holds the sphere of a refraction; name it sphere, or read no "
            "prescription");
  EXPECT_EQ(reason("sphere,Z4\nplano,1\n"),
            "t.csv: line 2, column 1: column 'sphere': 'plano' is not a number; write it as 0.12 or 1.2e-1");
}

TEST(EyeTable, NumbersMayHaveDecimalCommas) {
  PartialConvention stated = Stated();
  stated.pupil.reset();
  Opened opened("id;pupil_diameter_mm;sphere;Z4\na;5,5;-1,25;-0,125\nb;5,5;0;0.5\n", stated, TableKind::kCsv,
                {.prescription = true, .decimalComma = true});
  const TableEye row = opened.Next();
  EXPECT_EQ(row.eye.pupil, Millimetres(5.5));
  EXPECT_EQ(row.eye.prescription->m, Dioptres(-1.25));
  EXPECT_EQ(row.eye.coefficients.AsStated().at(4), -0.125);
  TableEye other;
  try {
    opened.table.Next(other);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.reason, "column 'Z4': '0.5' has a point among numbers with decimal commas; write it as 0,12");
  }
  EXPECT_THROW(Opened("{\"Z4\": 0.5}\n", Stated(), TableKind::kNdjson, {.decimalComma = true}), Error);
}

struct Fault {
  const char* name;  // as a sentence
  const char* text;
  const char* message;
};

void PrintTo(const Fault& fault, std::ostream* stream) { *stream << fault.name; }

class EyeTableFault : public testing::TestWithParam<Fault> {};

TEST_P(EyeTableFault, IsRefusedWithPlaceReasonAndRemedy) {
  std::string message;
  try {
    Opened opened(GetParam().text, Stated());
    for (TableEye row; opened.table.Next(row);) {
    }
  } catch (const ErrorAt& error) {
    message = error.what();
  }
  EXPECT_EQ(message, GetParam().message);
}

const Fault kFaults[] = {
    {"Empty", "", "t.csv: line 1, column 1: the table is empty; its first row names the columns"},
    {"ColumnTwice", "id,Z4,id\n", "t.csv: line 1, column 7: the column 'id' is in the header twice; keep one"},
    {"TermTwice", "Z4,\"Z(2,0)\"\n1,2\n",
     "t.csv: line 2, column 3: column 'Z(2,0)': the term Z(2,0) has a column already; keep one"},
    {"NearlyOneOfOurs", "units,Z4\n",
     "t.csv: line 1, column 1: the column 'units' is not known; did you mean 'unit'? If it is your own column, rename "
     "it"},
    {"NoCoefficients", "id,sphere\n",
     "t.csv: line 1, column 1: no column holds coefficients; name them Z4, Z(2,0) or c[2,-2] in the first row"},
    {"NameWithoutQuotes", "id,Z(2,0)\n",
     "t.csv: line 1, column 4: the column 'Z(2' looks like a coefficient but is not one; write Z(2,0) or c[2,-2] with "
     "radial order and azimuthal frequency, in quotes if commas separate the columns"},
    {"DecimalComma", "id;Z4\na;0,5\n",
     "t.csv: line 2, column 3: column 'Z4': '0,5' has a decimal comma; write it with a point"},
    {"PartTwice", "unit,Unit,Z4\n", "t.csv: line 1, column 6: the column 'unit' is in the header twice; keep one"},
    {"MayBeACoefficient", "id,Z-12,Z4\n",
     "t.csv: line 1, column 4: the column 'Z-12' may be a coefficient or a term with a sign; write Z4, Z(2,0) or "
     "c[2,-2], or rename the column if it is your own"},
    {"CoefficientWithAUnit", "id,Z4_um\n",
     "t.csv: line 1, column 4: the column 'Z4_um' is a coefficient with a unit in its name; write Z4, Z(2,0) or "
     "c[2,-2], and state the unit for all of them"},
    {"DecimalCommaInQuotes", "id,Z4\na,\"0,5\"\n",
     "t.csv: line 2, column 3: column 'Z4': '0,5' has a decimal comma; write it with a point"},
    {"DecimalCommaBetweenCommas", "id,Z4\na,0,5\n",
     "t.csv: line 2, column 5: the row has 3 fields, but the header has 2; are there decimal commas? Write numbers "
     "with a point"},
    {"RowCutOff", "id,Z4,Z5\na,1\n",
     "t.csv: line 2, column 3: the row has 2 fields, but the header has 3; is the row cut off?"},
    {"CoefficientEmpty", "id,Z4\na,\n",
     "t.csv: line 2, column 3: column 'Z4': is empty; write a number, 0 for a term that is absent"},
    {"CoefficientNotFinite", "id,Z4\na,inf\n",
     "t.csv: line 2, column 3: column 'Z4': 'inf' is not finite; give a number"},
    {"CoefficientNotANumber", "id,Z4\na,#DIV/0!\n",
     "t.csv: line 2, column 3: column 'Z4': '#DIV/0!' is not a number; write it as 0.12 or 1.2e-1"},
    {"CoefficientTooLarge", "id,Z4\na,1e999\n",
     "t.csv: line 2, column 3: column 'Z4': '1e999' is too large or too small; check its exponent"},
    {"NotInTheOrder", "id,Z300\na,1\n",
     "t.csv: line 2, column 3: column 'Z300': Z300 is not in the index scheme osa, whose numbers are 0 to 230"},
    {"PartUnknown", "unit,Z4\nfeet,1\n",
     "t.csv: line 2, column 1: column 'unit': unit is 'feet'; it is one of mm, um, nm, waves"},
    {"PartContradicts", "id,unit,Z4\na,mm,1\n",
     "t.csv: line 2, column 3: unit is mm in the table, which contradicts the command line, where it is um; state it "
     "once"},
};

INSTANTIATE_TEST_SUITE_P(All, EyeTableFault, testing::ValuesIn(kFaults),
                         [](const auto& fault) { return std::string(fault.param.name); });

TEST(EyeTable, APupilOfNothingIsRefused) {
  PartialConvention stated = Stated();
  stated.pupil.reset();
  Opened opened("pupil_diameter_mm,Z4\n0,1\n,1\n", stated);
  TableEye row;
  try {
    opened.table.Next(row);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.reason, "column 'pupil_diameter_mm': pupil_diameter_mm is 0; a length must be greater than 0");
  }
  try {
    opened.table.Next(row);
    FAIL();
  } catch (const ErrorAt& error) {
    EXPECT_EQ(error.reason,
              "the convention of the coefficients is incomplete; missing: pupil_diameter_mm (over which the eye was "
              "measured)");
  }
}

TEST(EyeTable, AMillionColumnsOfTheUsersOwnAreCarried) {
  constexpr std::size_t kColumns = 1'000'000;
  std::string text = "Z4", row = "0.5";
  for (std::size_t i = 0; i < kColumns; ++i) {
    text += ",own" + std::to_string(i);
    row += ",x";
  }
  Opened opened(text + "\n" + row + "\n", Stated());
  const TableEye eye = opened.Next();
  EXPECT_EQ(eye.identifiers.size(), kColumns);
  EXPECT_EQ(eye.eye.coefficients.AsStated().at(4), 0.5);
}

}  // namespace
}  // namespace orvanel::files
