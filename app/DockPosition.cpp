#include "app/DockPosition.h"

namespace corvane {

DockPosition getDockPosition(PropertyLists& lists, const std::string& libraryFolder) {
  std::string problem;  // most machines without a Dock have no such file; that is nothing to report
  const auto dock = lists.readDictionary(libraryFolder + "/Preferences/com.apple.dock.plist", problem);
  if (!dock) return DockPosition::bottom;
  const auto entry = dock->find("orientation");
  const auto* orientation = entry == dock->end() ? nullptr : entry->second.as<std::string>();
  if (!orientation || *orientation == "bottom") return DockPosition::bottom;
  return *orientation == "left" ? DockPosition::left : DockPosition::right;
}

ScreenPoint windowPoint(DockPosition dock) {
  return dock == DockPosition::left ? ScreenPoint{40.0, 100.0} : ScreenPoint{10.0, 100.0};
}

}  // namespace corvane
