// SPDX-License-Identifier: MIT
#include "RiggingHardwareDescriptorFileKeys.h"

#include "CabinetShapeFileKeys.h"

namespace {
constexpr FileKey point {nullptr, FileKey::PointValue, FileKey::Millimetres, "", "point"};
constexpr FileKey anyValue {nullptr, FileKey::Any, FileKey::NoUnit, "", ""};
constexpr FileKey pickPointNumber {nullptr, FileKey::Any, FileKey::NoUnit, "", "pick point number"};

constexpr FileKey cabinetKeys[] = {
    {"weight", FileKey::Number, FileKey::NoUnit, "0", "weight of the frame, as the files of the series write it"},
    {"outriggersBoundaryMaxWidth", FileKey::Number, FileKey::Millimetres, "the width", "width of the outrigger boundary"},
    {"outriggersBoundaryMaxHeight", FileKey::Number, FileKey::Millimetres, "the height", "height of the outrigger boundary"},
    {"outriggersBoundaryMaxDepth", FileKey::Number, FileKey::Millimetres, "the depth", "depth of the outrigger boundary"},
    {"tilt, min", FileKey::Number, FileKey::Degrees, "0", "smallest tilt angle"},
    {"tilt, max", FileKey::Number, FileKey::Degrees, "0", "largest tilt angle"},
    {"tilt, stepwidth", FileKey::Number, FileKey::Degrees, "0", "tilt angle step"},
    {"3D_triangulated", FileKey::Boolean, FileKey::NoUnit, "false", "the 3D view is a triangulated mesh"},
    {"frontFlankDepth", FileKey::Number, FileKey::Millimetres, "0", "frame outline: depth of the front flank"},
    {"frontEdgeDepth", FileKey::Number, FileKey::Millimetres, "0", "frame outline: depth of the front edge"},
    {"frontEdgeWidth", FileKey::Number, FileKey::Millimetres, "the width", "frame outline: width of the front edge"},
    {"sideFlankWidth", FileKey::Number, FileKey::Millimetres, "0", "frame outline: width of the side flanks"},
    {"sideFlankXOffset", FileKey::Number, FileKey::Millimetres, "0", "frame outline: offset of the side flanks from the front"},
    {"rearEdgeWidth", FileKey::Number, FileKey::Millimetres, "the width", "frame outline: width of the rear edge"},
    {"rearEdgeDepth", FileKey::Number, FileKey::Millimetres, "0", "frame outline: depth of the rear edge"},
    {"rearTailDepth", FileKey::Number, FileKey::Millimetres, "0", "frame outline: depth of the rear tail"},
    {"rearTailHeight", FileKey::Number, FileKey::Millimetres, "the height", "frame outline: height of the rear tail"},
    {"rearTailWidth", FileKey::Number, FileKey::Millimetres, "the rear edge width", "frame outline: width of the rear tail"},
    {"rearEdgeXOffset", FileKey::Number, FileKey::Millimetres, "the rear", "frame outline: offset of the rear edge from the front"},
};
constexpr FileKeyTable cabinet("rigging cabinet", cabinetKeys, &CabinetShapeFileKeys::Table);

constexpr FileKey connectionKeys[] = {
    {"front", FileKey::PointValue, FileKey::Millimetres, "origin", "front connection point of the load beam at this position"},
};
constexpr FileKeyTable connections("load beam connection points", connectionKeys);
constexpr FileKey positionKeys[] = {
    {"mechanicalConnectionPoints", FileKey::Object, FileKey::NoUnit, "empty", "connection points of the load beam", &connections},
};
constexpr FileKeyTable position("load beam position", positionKeys);
constexpr FileKey positionItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "load beam position", &position};

constexpr FileKey loadBeamKeys[] = {
    {"width", FileKey::Number, FileKey::Millimetres, "0", "width of the load beam"},
    {"height", FileKey::Number, FileKey::Millimetres, "0", "height of the load beam"},
    {"length", FileKey::Number, FileKey::Millimetres, "0", "length of the load beam"},
    {"weight", FileKey::Number, FileKey::NoUnit, "0", "weight, divided by 1000 on reading (unlike the frame's)"},
    {"profileWidth", FileKey::Number, FileKey::Millimetres, "0", "width of the beam profile"},
    {"profileLength", FileKey::Number, FileKey::Millimetres, "0", "length of the beam profile"},
    {"profileHeight", FileKey::Number, FileKey::Millimetres, "0", "height of the beam profile"},
    {"profileBeamIntersection", FileKey::PointValue, FileKey::Millimetres, "origin", "where profile and beam meet"},
    {"loadBeamPositions", FileKey::NamedMap, FileKey::NoUnit, "empty", "positions of the load beam by name", nullptr,
     &positionItem},
};
constexpr FileKeyTable loadBeamType("load beam type", loadBeamKeys);
constexpr FileKey loadBeamItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "load beam type", &loadBeamType};

constexpr FileKey directionKeys[] = {
    {"singlePickPoint", FileKey::Array, FileKey::NoUnit, "empty",
     "pick points that may carry the array alone in this direction", nullptr, &pickPointNumber},
};
constexpr FileKeyTable direction("mounting direction", directionKeys);
constexpr FileKey directionItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "mounting direction", &direction};

constexpr FileKey gravityNames[] = {
    {"standard", FileKey::PointValue, FileKey::Millimetres, "", "centre of gravity taken before any \"<load beam type>_<position>\" entry"},
    {"default", FileKey::PointValue, FileKey::Millimetres, "", "centre of gravity when no other name applies"},
};
constexpr FileKeyTable gravity("centres of gravity", gravityNames);

constexpr FileKey cornerNames[] = {
    {"front, top", FileKey::Any, FileKey::Millimetres, "", "front top corner"},
    {"rear, top", FileKey::Any, FileKey::Millimetres, "", "rear top corner"},
    {"rear, bottom", FileKey::Any, FileKey::Millimetres, "", "rear bottom corner"},
    {"front, bottom", FileKey::Any, FileKey::Millimetres, "", "front bottom corner"},
};
constexpr FileKeyTable corners("mechanical connection points", cornerNames);

constexpr FileKey keys[] = {
    {"dataApproved", FileKey::Boolean, FileKey::NoUnit, "true", "the data is approved for use"},
    {"name", FileKey::String, FileKey::NoUnit, "empty", "registry name of the item"},
    {"partNumber", FileKey::String, FileKey::NoUnit, "empty", "part number"},
    {"partNumberAppendix", FileKey::String, FileKey::NoUnit, "\".000\"", "appended to the part number on request"},
    {"displayName", FileKey::String, FileKey::NoUnit, "the name", "name shown to users"},
    {"shackleHeight", FileKey::Number, FileKey::Millimetres, "0", "height of the shackle"},
    {"pickpointDistance", FileKey::Number, FileKey::Millimetres, "0", "distance between pick points"},
    {"loadAdapterXPinholes", FileKey::Number, FileKey::Millimetres, "0", "pinhole offset of the load adapter"},
    {"loadAdapterResolution", FileKey::Number, FileKey::Millimetres, "1000", "pinhole spacing of the load adapter"},
    {"shackleHoleOffset", FileKey::Number, FileKey::Millimetres, "0", "offset of the shackle hole along X"},
    {"canUseArraySight", FileKey::Boolean, FileKey::NoUnit, "false", "takes an array sight"},
    {"supportsPullback", FileKey::Boolean, FileKey::NoUnit, "false", "has a pullback outline"},
    {"mountingPoint", FileKey::NamedMap, FileKey::Millimetres, "empty", "mounting points by mounting or name", nullptr, &point},
    {"compressionSet", FileKey::NamedMap, FileKey::NoUnit, "empty", "compression sets, kept as read for the host", nullptr,
     &anyValue},
    {"maximumLoad", FileKey::Number, FileKey::NoUnit, "1000", "largest load"},
    {"maximumLoadSinglePickpoint", FileKey::Number, FileKey::NoUnit, "1000", "largest load on one pick point"},
    {"cabinet", FileKey::Object, FileKey::NoUnit, "empty", "size, weight, tilt range and outline of the frame", &cabinet},
    {"views", FileKey::NamedMap, FileKey::NoUnit, "empty",
     "outlines of an \"Arbitrary\" frame when its cabinet block has none", nullptr, &anyValue},
    {"connectionPoint", FileKey::NamedMap, FileKey::Millimetres, "empty", "connection points by mounting or name", nullptr, &point},
    {"connectionPointOffsets", FileKey::NamedMap, FileKey::Millimetres, "empty",
     "connection point offsets by value with one decimal (\"2.5\") or \"default\"", nullptr, &point},
    {"mechanicalConnectionPoints", FileKey::NamedMap, FileKey::Millimetres, "empty",
     "per corner (\"front, top\", ...) a point, or points keyed by mounting; \"front, top\" is the load beams' reference", &corners, &anyValue},
    {"frontLink", FileKey::Any, FileKey::NoUnit, "null", "front link descriptor, kept as read for the host"},
    {"centerOfGravity", FileKey::NamedMap, FileKey::Millimetres, "empty",
     "centres of gravity by name or load beam position", &gravity, &point},
    {"pickPoints", FileKey::NamedMap, FileKey::NoUnit, "empty", "pick points by number, kept as read for the host", nullptr,
     &anyValue},
    {"compressionPullPoint", FileKey::NamedMap, FileKey::Millimetres, "empty", "compression pull points by name", nullptr, &point},
    {"loadBeamTypes", FileKey::NamedMap, FileKey::NoUnit, "empty", "load beam types by name", nullptr, &loadBeamItem},
    {"loadBeamCategoryDisplayName", FileKey::String, FileKey::NoUnit, "\"Load beam\"", "name of the load beam category"},
    {"automaticMountingDirectionCalculation", FileKey::Boolean, FileKey::NoUnit, "false",
     "hosts work out the mounting direction themselves"},
    {"mountingDirection", FileKey::NamedMap, FileKey::NoUnit, "empty", "mounting directions by name", nullptr, &directionItem},
};
constexpr FileKeyTable table("rigging hardware descriptor", keys);
} // namespace

const FileKeyTable &RiggingHardwareDescriptorFileKeys::Table()
{
    return table;
}

const FileKeyTable &RiggingHardwareDescriptorFileKeys::Cabinet()
{
    return cabinet;
}

const FileKeyTable &RiggingHardwareDescriptorFileKeys::LoadBeamType()
{
    return loadBeamType;
}
