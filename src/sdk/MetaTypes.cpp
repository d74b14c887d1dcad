// SPDX-License-Identifier: MIT
#include "Point.h"

#include <QMetaType>

namespace {
// Registered when the library is loaded, so that hosts can look the types up by name and
// carry outlines and named points in QVariants.
[[maybe_unused]] const bool metaTypesRegistered = [] {
    qRegisterMetaType<Point>();
    qRegisterMetaType<QList<Point>>();
    qRegisterMetaType<QMap<QString, Point>>();
    qRegisterMetaType<QMap<QString, QList<Point>>>();
    return true;
}();
} // namespace
