// Texts that must come out byte for byte as they stand in tests/golden.
#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include "script/Text.h"

namespace corvane {

/// The bytes of tests/golden/`name`.txt, each `first` of `values` replaced by its `second`, one after the
/// other. A file that is missing throws, which fails the test.
[[nodiscard]] inline std::string readGolden(const std::string& name,
                                            std::initializer_list<Placeholder> values = {}) {
  std::ifstream file(GOLDEN_FOLDER "/" + name + ".txt", std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + name);
  std::string text = (std::ostringstream() << file.rdbuf()).str();
  for (const auto& [what, with] : values) replaceAll(text, what, with);
  return text;
}

}  // namespace corvane
