/// @file
/// Tests of reading scripts.
#include "language/script_file.h"

#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <vector>

#include "language/failure.h"
#include "scratch.h"

namespace onu {
namespace {

using test::Scratch;
using testing::ElementsAre;
using testing::HasSubstr;

std::vector<std::string> LinesOf(const std::string& path) {
  ScriptFile script(path);
  std::vector<std::string> lines;
  while (const std::optional<ScriptLine> line = script.next()) {
    lines.push_back(line->place + "=" + line->text);
  }
  return lines;
}

std::string ErrorOf(const std::string& path) {
  try {
    const ScriptFile script(path);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.status(), ExitStatus::WorkFailed);
    return failure.what();
  }
  return "opened";
}

TEST(ScriptFile, Lines_ComeWithTheirPlaces) {
  const Scratch scratch;
  const std::string path = scratch.write("a.onu", "one\n\n# two words\nlast");
  EXPECT_THAT(LinesOf(path), ElementsAre(path + ":1=one", path + ":2=", path + ":3=# two words",
                                         path + ":4=last"));
}

TEST(ScriptFile, EmptyFile_HasNoLines) {
  const Scratch scratch;
  EXPECT_THAT(LinesOf(scratch.write("a.onu", "")), testing::IsEmpty());
}

TEST(ScriptFile, WhatCannotBeRead_IsAFailure) {
  const Scratch scratch;
  const std::string path = scratch / "none.onu";
  EXPECT_EQ(ErrorOf(path), "cannot read the script " + path + ": No such file or directory");
  EXPECT_THAT(ErrorOf(scratch.path()), HasSubstr(": Is a directory"));
}

}  // namespace
}  // namespace onu
