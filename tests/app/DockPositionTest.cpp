#include "app/DockPosition.h"

#include <gtest/gtest.h>

#include "tests/support/RecordingPorts.h"

namespace corvane {
namespace {

struct DockCase {
  std::optional<PropertyListDictionary> preferences;
  DockPosition position;
  double x;
};

class DockPositionTest : public testing::TestWithParam<DockCase> {};

TEST_P(DockPositionTest, DecidesWhereTheWindowStands) {
  MemoryPropertyLists lists;
  if (GetParam().preferences) lists.files["com.apple.dock.plist"] = *GetParam().preferences;
  const auto position = getDockPosition(lists, "/Library");
  EXPECT_EQ(position, GetParam().position);
  EXPECT_EQ(windowPoint(position).x, GetParam().x);
  EXPECT_EQ(windowPoint(position).y, 100.0);
}

PropertyListDictionary orientation(PropertyListValue value) { return {{"orientation", std::move(value)}}; }

INSTANTIATE_TEST_SUITE_P(
    Docks, DockPositionTest,
    testing::Values(DockCase{std::nullopt, DockPosition::bottom, 10},
                    DockCase{PropertyListDictionary{}, DockPosition::bottom, 10},
                    DockCase{orientation({std::string("bottom")}), DockPosition::bottom, 10},
                    DockCase{orientation({std::string("left")}), DockPosition::left, 40},
                    DockCase{orientation({std::string("right")}), DockPosition::right, 10},
                    DockCase{orientation({std::string("Left")}), DockPosition::right, 10},
                    DockCase{orientation({std::int64_t{1}}), DockPosition::bottom, 10}));

}  // namespace
}  // namespace corvane
