// Texts that must come out byte for byte as they stand in tests/golden.
#pragma once

#include <gtest/gtest.h>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

/// The bytes of tests/golden/`name`.txt, each `first` of `values` replaced by its `second`. A file that is
/// missing throws, which fails the test.
[[nodiscard]] std::string readGolden(
    std::string_view name, std::initializer_list<std::pair<std::string_view, std::string_view>> values = {});

/// Equality that shows the first line that differs, its number, and its tabs and line end in escaped form.
[[nodiscard]] testing::AssertionResult sameText(std::string_view expected, std::string_view actual);

}  // namespace corvane
