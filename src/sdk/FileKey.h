// SPDX-License-Identifier: MIT
#pragma once

#include "nvloudspeakerpluginsdk_export.h"

class FileKeyTable;

/**
 * One key of a JSON data file as its reader understands it: the name, what kind of JSON
 * value it takes, the unit the file writes it in, the default the reader uses when the key
 * is missing, and what it means. Rows of a FileKeyTable; plain constant data.
 *
 * Lengths are millimetres in the files and metres in the API, angles degrees, gains dB,
 * delays milliseconds (seconds in the API), frequencies Hz.
 *
 * Container kinds describe their contents through `keys` (the keys of an Object) and
 * `item` (each element of an Array, each member of a MountingMap or NamedMap).
 *
 * Plain constant data: safe to read from any thread.
 */
struct NVLPS_EXPORT FileKey
{
    /// The kind of value a key takes. Each maps onto one or two JSON types.
    enum Kind {
        String,      ///< JSON string
        Number,      ///< JSON number
        Integer,     ///< JSON number without a fraction
        Boolean,     ///< JSON true or false
        PointValue,  ///< a point in millimetres: {"x", "y", "z", "name"} or [x, y, z]
        Any,         ///< any JSON value, kept as read
        Object,      ///< JSON object with the fixed keys of `keys`
        Array,       ///< JSON array, each element described by `item`
        MountingMap, ///< JSON object keyed by mounting ("flown", "stacked_default", "default", ...), members described by `item`
        NamedMap     ///< JSON object with names of the file's choosing, members described by `item`; `keys` lists well-known names
    };

    /// The unit the file writes a number in.
    enum Unit {
        NoUnit,
        Millimetres,  ///< divided by 1000 on reading: metres in the API
        Degrees,
        Decibels,     ///< converted to a linear factor with 10^(dB/20) where the API is linear
        Milliseconds, ///< divided by 1000 on reading: seconds in the API
        Hertz
    };

    const char *name;                    ///< key as written in the file; null for the `item` of a container
    Kind kind;
    Unit unit;
    const char *defaultValue;            ///< what a missing key reads as, in words ("" when the kind's empty value)
    const char *meaning;
    const FileKeyTable *keys = nullptr;  ///< Object: its keys; NamedMap: well-known member names
    const FileKey *item = nullptr;       ///< Array, MountingMap, NamedMap: each element or member
    /// The values the reader tells apart, as JSON Schema keywords in the text of a JSON object
    /// ({"enum": [...]} or {"minimum": 0, "maximum": 15}); null when any value of the kind is read alike.
    const char *accepted = nullptr;
};
