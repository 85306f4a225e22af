#include "ui/ShapedButtonLook.h"

namespace corvane {
namespace {

constexpr std::string_view kAqua = "Aqua";
constexpr std::string_view kGraphite = "Graphite";
constexpr double kDimmed = 0.4;

}  // namespace

std::optional<std::string> untintedImageName(std::string_view imageName) {
  const auto suffix = imageName.find(kAqua);
  if (suffix == std::string_view::npos) return std::nullopt;
  return std::string(imageName.substr(0, suffix));
}

std::string tintedImageName(std::string_view baseName, bool isGraphite) {
  return std::string(baseName).append(isGraphite ? kGraphite : kAqua);
}

ButtonLook shapedButtonLook(const ButtonCondition& condition) {
  if (!condition.isEnabled) return {.fraction = kDimmed};
  const bool isOn = condition.showsState && condition.isOn;
  return {.isAlternate = condition.isHighlighted || isOn,
          .isDarkened = condition.isHighlighted && condition.showsState};
}

}  // namespace corvane
