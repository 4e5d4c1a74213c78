// Tests the columns "light" and "model": what rows state, what they leave to the run, and what is refused.
#include "cli/batch/row_conditions.h"

#include <gtest/gtest.h>
#ifndef _WIN32
#include <sys/stat.h>
#endif

#include "base/number_text.h"
#include "cli/batch/run_record.h"
#include "tests/support/temporary_files.h"

namespace orvanel::cli {
namespace {

using Fields = std::vector<std::string>;

RowConditions Conditions(const Fields& columns, ModelKind kind = ModelKind::kPhysical) {
  ModelRequest model{kind, {}};
  model.physical.samples = 128;
  return {columns, "eyes.csv", model, "560"};
}

std::string Refusal(RowConditions& conditions, const std::string& field) {
  Fields fields = {field};
  try {
    conditions.Complete(fields);
  } catch (const ConditionRefused& error) {
    return error.what();
  }
  return "accepted";
}

TEST(RowConditions, AreFoundByName) {
  EXPECT_FALSE(Conditions({"id", "lights", "lamp"}).haveLight());
  EXPECT_EQ(Conditions({"id", "lights"}).Summary(), "");
  RowConditions conditions = Conditions({"id", " LIGHT", "Model"});
  EXPECT_TRUE(conditions.haveLight());
  EXPECT_EQ(conditions.Summary(), "conditions of each row: light, model");
  EXPECT_EQ(Conditions({"model"}).Summary(), "conditions of each row: model");
  try {
    Conditions({"light", "id", "Light"});
    FAIL() << "accepted";
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "eyes.csv: the columns 'light' and 'Light' both state the light; keep one");
  }
}

TEST(RowConditions, ThatARowLeavesEmptyAreThoseOfTheRun) {
  RowConditions conditions = Conditions({"model", "id", "light"});
  Fields fields = {"", "a", " "};
  const RowLight light = conditions.Complete(fields);
  EXPECT_EQ(light.settings, nullptr);
  EXPECT_EQ(fields, (Fields{"physical", "a", "560"}));
  fields = {"Physical", "a", "589.25"};
  const RowLight own = conditions.Complete(fields);
  EXPECT_EQ(fields, (Fields{"Physical", "a", "589.25"}));
  ASSERT_NE(own.settings, nullptr);
  EXPECT_EQ(own.settings->light.at(0).wavelengthNm, 589.25);
  EXPECT_EQ(own.settings->samples, 128);
  fields = {"id"};
  EXPECT_EQ(Conditions({"id"}).Complete(fields).settings, nullptr);
  EXPECT_EQ(fields, Fields{"id"});
}

TEST(RowConditions, AFileIsReadOnce) {
  const TemporaryFolder folder;
  const std::string file = (folder / "light.csv").string();
  Write(file, "500,1\n650,0.5\n");
  RowConditions conditions = Conditions({"light"});
  Fields fields = {file};
  const RowLight light = conditions.Complete(fields);
  ASSERT_NE(light.settings, nullptr);
  EXPECT_EQ(light.settings->light.size(), 2U);
  const std::string hash = HashOfFile(file);
  Write(file, "500,1\n");
  EXPECT_EQ(conditions.Complete(fields).settings, light.settings);
  EXPECT_EQ(conditions.files(), (std::map<std::string, std::string>{{file, hash}}));
  // The next run reads it again.
  RowConditions next = Conditions({"light"});
  next.Read(conditions.files());
  EXPECT_EQ(next.files(), (std::map<std::string, std::string>{{file, HashOfFile(file)}}));
}

TEST(RowConditions, WhatIsNoLightIsRefused) {
  const TemporaryFolder folder;
  RowConditions conditions = Conditions({"light"});
  const std::string missing = " is not a wavelength in nm, white or display, and there is no file of this name";
  EXPECT_EQ(Refusal(conditions, "blue\x1b[31m"), "column 'light': 'blue\\x1b[31m'" + missing);
  EXPECT_EQ(Refusal(conditions, "-"), "column 'light': '-'" + missing);
  EXPECT_EQ(conditions.files().at("-"), "");
  EXPECT_EQ(Refusal(conditions, "100"), "column 'light': '100' is outside of 300 to 1200 nm");
  EXPECT_EQ(Refusal(conditions, folder.path().string()),
            "column 'light': " + Quoted(folder.path().string()) + " is not a file; name a CSV file");
  EXPECT_NE(Refusal(conditions, std::string(5000, 'x')).find("is too long"), std::string::npos);
  const std::string file = (folder / "light.csv").string();
  Write(file, "500,1\n589,-1\n");
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(Refusal(conditions, file), "column 'light': " + file + ": line 2, column 5: the weight -1 is negative");
    Write(file, "500,1\n");  // too late
  }
  const std::string large = (folder / "large.csv").string();
  Write(large, std::string((1 << 20) + 1, '\n'));
  EXPECT_NE(Refusal(conditions, large).find("is larger than 1 MiB"), std::string::npos);
  EXPECT_EQ(conditions.files().at(large), "");
#ifndef _WIN32
  const std::string pipe = (folder / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_NE(Refusal(conditions, pipe).find("is not a file"), std::string::npos);
#endif
}

TEST(RowConditions, TooManyFilesEndTheRun) {
  RowConditions conditions = Conditions({"light"});
  for (int i = 0; i < 1000; ++i) EXPECT_NE(Refusal(conditions, "lamp " + std::to_string(i)), "accepted");
  EXPECT_NE(Refusal(conditions, "lamp 0"), "accepted");
  Fields fields = {"lamp 1000"};
  try {
    conditions.Complete(fields);
    FAIL() << "accepted";
  } catch (const ConditionRefused& error) {
    FAIL() << error.what();
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()).find("eyes.csv: the column 'light' names more than 1000 files"),
              std::string::npos);
  }
}

TEST(RowConditions, AnotherModelNeedsAnotherRun) {
  RowConditions physical = Conditions({"model"}), classic = Conditions({"model"}, ModelKind::kClassic);
  EXPECT_EQ(Refusal(physical, "physical"), "accepted");
  EXPECT_EQ(Refusal(physical, " Classic"),
            "column 'model': the columns of this run are those of the physical model; compute this row in a run with "
            "--model classic");
  EXPECT_EQ(Refusal(classic, "classic"), "accepted");
  EXPECT_NE(Refusal(classic, "physical").find("in a run with --model physical"), std::string::npos);
  EXPECT_NE(Refusal(physical, "A100").find("'A100' is not one of physical, classic"), std::string::npos);
}

TEST(RowConditions, TheClassicModelHasNoLight) {
  RowConditions conditions = Conditions({"light"}, ModelKind::kClassic);
  EXPECT_NE(Refusal(conditions, "589").find("the classic model has no light"), std::string::npos);
  Fields fields = {""};
  EXPECT_EQ(conditions.Complete(fields).settings, nullptr);
  EXPECT_EQ(fields, Fields{""});
}

}  // namespace
}  // namespace orvanel::cli
