// SPDX-License-Identifier: MIT
#include "CabinetShapeFileKeys.h"

namespace {
constexpr FileKey pointItem {nullptr, FileKey::PointValue, FileKey::Millimetres, "", "corner point"};
constexpr FileKey pointList {nullptr, FileKey::Array, FileKey::NoUnit, "", "points of the view", nullptr, &pointItem};

// Read for the "Arbitrary" shape (the points) and by the loudspeaker's outline check (the presence of all three).
constexpr FileKey viewKeys[] = {
    {"3D", FileKey::Array, FileKey::NoUnit, "empty", "quad mesh: each run of four points is one face", nullptr, &pointItem},
    {"top", FileKey::Array, FileKey::NoUnit, "empty", "outline seen from above", nullptr, &pointItem},
    {"side", FileKey::Array, FileKey::NoUnit, "empty", "outline seen from the side", nullptr, &pointItem},
};
constexpr FileKeyTable viewTable("views", viewKeys);

constexpr FileKey keys[] = {
    {"cabinetShape", FileKey::String, FileKey::NoUnit, "\"Arbitrary\"",
     "outline generator: \"Arbitrary\", \"Cuboid\", \"Trapezoidal\", \"Trapezoidal lying\", \"Cuboid trapped\", "
     "\"Cuboid chamfered\", \"Monitor\", \"LineArray\", \"LineArray standing\", \"ArcArray\", \"ArcArray standing\"",
     nullptr, nullptr,
     R"({"enum": ["Arbitrary", "Cuboid", "Trapezoidal", "Trapezoidal lying", "Cuboid trapped", "Cuboid chamfered", "Monitor",
                  "LineArray", "LineArray standing", "ArcArray", "ArcArray standing"]})"},
    {"width", FileKey::Number, FileKey::Millimetres, "0", "outer width"},
    {"height", FileKey::Number, FileKey::Millimetres, "0", "outer height"},
    {"depth", FileKey::Number, FileKey::Millimetres, "0", "outer depth"},
    {"trapAngle", FileKey::Number, FileKey::Degrees, "0", "full angle between the two side walls of a trapezoidal cabinet"},
    {"views", FileKey::NamedMap, FileKey::NoUnit, "empty",
     "named outlines, each a list of points; the \"Arbitrary\" shape takes all of them as they are", &viewTable, &pointList},
    {"depthPocket", FileKey::Number, FileKey::Millimetres, "0", "line and arc arrays: depth of the rigging pocket"},
    {"widthPocket", FileKey::Number, FileKey::Millimetres, "0", "line and arc arrays: width of the pocket opening"},
    {"anglePocket", FileKey::Number, FileKey::Degrees, "0", "line and arc arrays: angle of the pocket walls (90 = straight)"},
    {"grillArcSections", FileKey::Integer, FileKey::NoUnit, "0", "arc arrays and monitors: straight sections of the bent grill"},
    {"grillFrontOffset", FileKey::Number, FileKey::Millimetres, "0", "arc arrays: how far the grill bulges ahead of the front"},
    {"depthRigging", FileKey::Number, FileKey::Millimetres, "0", "line arrays: depth of the rigging section at the front"},
    {"depthTransition", FileKey::Number, FileKey::Millimetres, "0", "line arrays: depth of the transition behind it"},
    {"widthReduction", FileKey::Number, FileKey::Millimetres, "0", "line arrays: inward step of the side wall at the transition"},
    {"trapAngleLeft", FileKey::Number, FileKey::Degrees, "0", "trapped cuboid: angle of the left rear bevel"},
    {"trapAngleRight", FileKey::Number, FileKey::Degrees, "0", "trapped cuboid: angle of the right rear bevel"},
    {"depthToTrapLeft", FileKey::Number, FileKey::Millimetres, "0", "trapped cuboid: depth at which the left bevel starts"},
    {"depthToTrapRight", FileKey::Number, FileKey::Millimetres, "0", "trapped cuboid: depth at which the right bevel starts"},
    {"chamferDepth", FileKey::Number, FileKey::Millimetres, "0", "chamfered cuboid: depth of the chamfer"},
    {"chamferHeight", FileKey::Number, FileKey::Millimetres, "0", "chamfered cuboid: height of the chamfer"},
    {"grillRadius", FileKey::Number, FileKey::Millimetres, "0", "monitor: radius of the grill arc"},
    {"grillStartAngle", FileKey::Number, FileKey::Degrees, "0", "monitor: start angle of the grill arc"},
    {"grillEndAngle", FileKey::Number, FileKey::Degrees, "0", "monitor: end angle of the grill arc"},
};
constexpr FileKeyTable table("cabinet shape", keys);
} // namespace

const FileKeyTable &CabinetShapeFileKeys::Table()
{
    return table;
}
