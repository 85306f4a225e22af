// Which picture a button shows that is drawn from its pictures alone, and how the pictures of the system's
// two tints are named. Pure functions; any thread. Texts are UTF-8.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What the base name of a button's pressed picture is: the name of the picture up to its first "Aqua".
/// Nothing when the name has none.
[[nodiscard]] std::optional<std::string> untintedImageName(std::string_view imageName);

/// The name under which the application may keep the pressed picture for a tint.
[[nodiscard]] std::string tintedImageName(std::string_view baseName, bool isGraphite);

struct ButtonCondition {
  bool isEnabled = false;
  bool isHighlighted = false;
  bool showsState = false;
  bool isOn = false;
};

struct ButtonLook {
  bool isAlternate = false;  // the pressed picture, where there is one
  bool isDarkened = false;
  double fraction = 1;  // how solid the picture is drawn, up to 1
  bool operator==(const ButtonLook&) const = default;
};

[[nodiscard]] ButtonLook shapedButtonLook(const ButtonCondition& condition);

}  // namespace corvane
