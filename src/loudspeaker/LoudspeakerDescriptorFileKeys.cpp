// SPDX-License-Identifier: MIT
#include "LoudspeakerDescriptorFileKeys.h"

#include "CabinetShapeFileKeys.h"

namespace {
constexpr FileKey point {nullptr, FileKey::PointValue, FileKey::Millimetres, "", "point"};
constexpr FileKey angle {nullptr, FileKey::Number, FileKey::Degrees, "", ""};
constexpr FileKey angleList {nullptr, FileKey::Array, FileKey::Degrees, "", "angles", nullptr, &angle};
constexpr FileKey anyValue {nullptr, FileKey::Any, FileKey::NoUnit, "", ""};

constexpr FileKey cabinetKeys[] = {
    {"name", FileKey::String, FileKey::NoUnit, "empty", "cabinet name, used in the outline check's warning"},
    {"weight", FileKey::Number, FileKey::NoUnit, "0", "weight, as the files of the series write it"},
    {"3D_triangulated", FileKey::Boolean, FileKey::NoUnit, "false", "the 3D view is a triangulated mesh"},
};
constexpr FileKeyTable cabinet("loudspeaker cabinet", cabinetKeys, &CabinetShapeFileKeys::Table);

// Setup keys per mounting; these names differ from the mounting texts of other maps.
constexpr FileKey defaultSetupKeys[] = {
    {"flown", FileKey::Integer, FileKey::NoUnit, "0", "setup key when flown vertically"},
    {"flown_horizontal", FileKey::Integer, FileKey::NoUnit, "0", "setup key when flown horizontally"},
    {"stacked", FileKey::Integer, FileKey::NoUnit, "0", "setup key when stacked vertically"},
    {"stacked_horizontal", FileKey::Integer, FileKey::NoUnit, "0", "setup key when stacked horizontally"},
    {"stacked_cart", FileKey::Integer, FileKey::NoUnit, "0", "setup key when stacked on a cart"},
    {"flown_vertical_install", FileKey::Integer, FileKey::NoUnit, "0", "setup key of the installation mounting"},
    {"flown_vertical_pullback", FileKey::Integer, FileKey::NoUnit, "0", "setup key of the pullback mounting"},
};
constexpr FileKeyTable defaultSetups("default controller setups", defaultSetupKeys);

constexpr FileKey setupFile {nullptr, FileKey::String, FileKey::NoUnit, "", "controller setup file name under :/Resources/"};
constexpr FileKey balloonFile {nullptr, FileKey::String, FileKey::NoUnit, "", "balloon file name under :/Resources/"};

constexpr FileKey sourcePointKeys[] = {
    {"name", FileKey::String, FileKey::NoUnit, "empty", "name of the source point; also the DSP channel's name"},
    {"origin", FileKey::MountingMap, FileKey::Millimetres, "empty", "origin of the source point per mounting", nullptr, &point},
    {"center", FileKey::MountingMap, FileKey::Millimetres, "\"default\": the cabinet's acoustic centre",
     "centre per mounting", nullptr, &point},
    {"flushMountAttenuation", FileKey::Boolean, FileKey::NoUnit, "false",
     "the balloons have a flush-mount variant; they are then always read at once"},
    {"balloonData", FileKey::NamedMap, FileKey::NoUnit, "empty",
     "balloon key (\"default\" or a value with one decimal such as \"12.5\") to balloon file name", nullptr, &balloonFile},
    {"verticalAngles", FileKey::MountingMap, FileKey::Degrees, "empty", "vertical angles per mounting", nullptr, &angleList},
    {"normalAngles", FileKey::MountingMap, FileKey::Degrees, "empty", "normal (aiming) angles per mounting", nullptr, &angleList},
    {"defaultControllerSetups", FileKey::Object, FileKey::NoUnit, "empty",
     "default setup key per mounting; a mounting not named gets 0", &defaultSetups},
    {"defaultControllerSetup", FileKey::Integer, FileKey::NoUnit, "none",
     "default setup key of every mounting, used only without \"defaultControllerSetups\""},
    {"controllerSetups", FileKey::NamedMap, FileKey::NoUnit, "empty",
     "setup key (decimal text) to controller setup file name", nullptr, &setupFile},
};
constexpr FileKeyTable sourcePoint("source point", sourcePointKeys);
constexpr FileKey sourcePointItem {nullptr, FileKey::Object, FileKey::NoUnit, "", "source point", &sourcePoint};

constexpr FileKey dispersionKeys[] = {
    {"horizontal", FileKey::Number, FileKey::Degrees, "0", "nominal horizontal dispersion"},
    {"vertical", FileKey::Number, FileKey::Degrees, "0", "nominal vertical dispersion"},
};
constexpr FileKeyTable dispersion("nominal dispersion", dispersionKeys);

constexpr FileKey audioCentreKeys[] = {
    {"center", FileKey::Any, FileKey::Millimetres, "the \"default\" source point centre",
     "acoustic centre: one point, or points keyed by mounting (\"flown_default\", \"default\")"},
    {"verticalAngle", FileKey::Any, FileKey::Degrees, "0",
     "vertical angle of the acoustic axis: one number, or numbers keyed by mounting"},
};
constexpr FileKeyTable audioCentre("center of audio", audioCentreKeys);

constexpr FileKey cornerNames[] = {
    {"front, top", FileKey::Any, FileKey::Millimetres, "", "front top corner"},
    {"rear, top", FileKey::Any, FileKey::Millimetres, "", "rear top corner"},
    {"rear, bottom", FileKey::Any, FileKey::Millimetres, "", "rear bottom corner"},
    {"front, bottom", FileKey::Any, FileKey::Millimetres, "", "front bottom corner"},
};
constexpr FileKeyTable corners("mechanical connection points", cornerNames);

constexpr FileKey keys[] = {
    {"dataApproved", FileKey::Boolean, FileKey::NoUnit, "true", "the data is approved for use"},
    {"name", FileKey::String, FileKey::NoUnit, "empty", "registry name of the loudspeaker"},
    {"partNumber", FileKey::String, FileKey::NoUnit, "empty", "part number"},
    {"partNumberAppendix", FileKey::String, FileKey::NoUnit, "\".000\"", "appended to the part number on request"},
    {"displayName", FileKey::String, FileKey::NoUnit, "the name", "name shown to users"},
    {"type", FileKey::String, FileKey::NoUnit, "none (warning)",
     "\"narrow dispersion\", \"wide dispersion\", \"Sub\", \"Top\", \"Point Source\", \"Line Array Top, narrow dispersion\" "
     "or \"Line Array Top, wide dispersion\"; any other text logs a warning",
     nullptr, nullptr,
     R"({"enum": ["narrow dispersion", "wide dispersion", "Sub", "Top", "Point Source", "Line Array Top, narrow dispersion",
                  "Line Array Top, wide dispersion"]})"},
    {"cabinet", FileKey::Object, FileKey::NoUnit, "empty", "size, weight and outline of the cabinet", &cabinet},
    {"mountingPoint", FileKey::NamedMap, FileKey::Millimetres, "empty", "mounting points by name", nullptr, &point},
    {"centerOfGravity", FileKey::NamedMap, FileKey::Millimetres, "empty", "centres of gravity by mounting or name", nullptr, &point},
    {"centerOfAudio", FileKey::Object, FileKey::NoUnit, "empty", "acoustic centre of the cabinet", &audioCentre},
    {"connectionPoint", FileKey::NamedMap, FileKey::Millimetres, "empty",
     "connection points by mounting (\"flown_default\", \"default\") or name", nullptr, &point},
    {"nominalDispersion", FileKey::Object, FileKey::NoUnit, "0 and 0", "nominal dispersion angles", &dispersion},
    {"frontEdgeOffset", FileKey::Number, FileKey::Millimetres, "0", "offset of the front edge"},
    {"rearEdgeOffset", FileKey::Number, FileKey::Millimetres, "0", "offset of the rear edge"},
    {"canBeUsedInMainArrays", FileKey::Boolean, FileKey::NoUnit, "false", "may be used in main arrays"},
    {"canBeUsedInSubArrays", FileKey::Boolean, FileKey::NoUnit, "false", "may be used in sub-woofer arrays"},
    {"showBeam", FileKey::Boolean, FileKey::NoUnit, "false", "hosts draw the beam"},
    {"hasAlternateDispersionMode", FileKey::Boolean, FileKey::NoUnit, "false", "has an alternate dispersion mode"},
    {"hasFixedCabinetsPerSubArrayPosition", FileKey::Boolean, FileKey::NoUnit, "false",
     "the cabinet count per sub-array position is fixed"},
    {"defaultCabinetsPerSubArrayPosition", FileKey::Integer, FileKey::NoUnit, "1", "cabinets per sub-array position"},
    {"defaultCabinetsPerMixedSubArrayPosition", FileKey::Integer, FileKey::NoUnit, "1", "cabinets per mixed sub-array position"},
    {"mixedSubArrayFilterMode", FileKey::Integer, FileKey::NoUnit, "-1", "filter mode in mixed sub-arrays"},
    {"splayAngles", FileKey::MountingMap, FileKey::Degrees, "\"default\": [0]", "possible splay angles per mounting", nullptr,
     &angleList},
    {"mechanicalConnectionPoints", FileKey::NamedMap, FileKey::Millimetres, "the cabinet corners",
     "per corner (\"front, top\", \"rear, bottom, compression\", ...) a point, or points keyed by mounting or link "
     "(\"prev_2.5\", \"next_5.0\"); \", compression\" after a corner name gives its compression point", &corners, &anyValue},
    {"frontLink", FileKey::Any, FileKey::NoUnit, "null", "front link descriptor, kept as read for the host"},
    {"sourcePoints", FileKey::Array, FileKey::NoUnit, "empty", "acoustic source points, in order", nullptr, &sourcePointItem},
};
constexpr FileKeyTable table("loudspeaker descriptor", keys);
} // namespace

const FileKeyTable &LoudspeakerDescriptorFileKeys::Table()
{
    return table;
}

const FileKeyTable &LoudspeakerDescriptorFileKeys::Cabinet()
{
    return cabinet;
}

const FileKeyTable &LoudspeakerDescriptorFileKeys::SourcePoint()
{
    return sourcePoint;
}
