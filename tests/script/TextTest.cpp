#include "script/Text.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

struct FillCase {
  const char* text;
  const char* filled;
};

class FillTest : public testing::TestWithParam<FillCase> {};

TEST_P(FillTest, ReplacesKnownNamesOnly) {
  EXPECT_EQ(fill(GetParam().text, {{"base", "/a {name}"}, {"name", "N"}}), GetParam().filled);
}

INSTANTIATE_TEST_SUITE_P(Texts, FillTest,
                         testing::Values(FillCase{"", ""}, FillCase{"{name}{name}", "NN"},
                                         FillCase{"awk '{print $9}' {name}", "awk '{print $9}' N"},
                                         FillCase{"{base}", "/a {name}"}, FillCase{"{{name}}", "{N}"},
                                         FillCase{"open {name", "open {name"}));

}  // namespace
}  // namespace corvane
