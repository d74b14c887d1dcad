// SPDX-License-Identifier: MIT
#pragma once

#include "Point.h"
#include "Size.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QVariantMap>

/**
 * Outline building blocks of rigging hardware: frames and load beams are drawn as unions of
 * axis-aligned boxes, in the coordinates of the cabinet shapes (metres; X forwards with the
 * front at x = 0, Y lateral, Z up with the top at z = 0).
 *
 * Views follow the cabinet shapes: "3D" is a quad mesh (runs of 4 corners, one planar face
 * each), "top" holds the top faces projected onto X-Y (4 corners each), "side" one closed
 * polygon per connected part projected onto X-Z, starting at the front top corner, running
 * along the top to the rear, down and back along the bottom to the front bottom corner.
 */
class NVLPS_AUTOTEST_EXPORT RiggingOutline
{
public:
    using Views = QMap<QString, QList<Point>>;

    /// An axis-aligned box: rear < front, right < left (Y), bottom < top.
    struct Box {
        double rear = 0.0;
        double front = 0.0;
        double right = 0.0;
        double left = 0.0;
        double bottom = 0.0;
        double top = 0.0;
    };

    /// The cabinet keys that describe a ladder frame; any one of them selects FrameBoxes().
    static const QStringList &FrameOutlineKeys();
    static bool HasFrameOutlineKeys(const QVariantMap &cabinet);

    /**
     * The bars of a ladder frame from the frame-outline keys of a "cabinet" block (millimetres)
     * and the frame's size (metres). See the diagram in the implementation. A block whose keys
     * describe no bar at all gives one box of the frame's size (none if the size is empty).
     */
    static QList<Box> FrameBoxes(const QVariantMap &cabinet, const Size &size);

    /// The 6 faces of a box as quads; corners run around each face.
    static QList<Point> BoxFaces(const Box &box);
    /// The top face of a box projected onto X-Y, corners front right, rear right, rear left, front left.
    static QList<Point> BoxTopFace(const Box &box);
    /**
     * The side silhouette of a union of boxes in X-Z: for every stretch of X the union covers
     * from its lowest bottom to its highest top. One closed polygon per connected stretch,
     * front stretch first; corners where the outline runs straight on are dropped.
     */
    static QList<Point> SideSilhouette(const QList<Box> &boxes);
    /// "3D", "top" and "side" of a union of boxes.
    static Views BoxViews(const QList<Box> &boxes);

    /**
     * The points of the same body turned upside down within its height (z -> -height - z).
     * Each run of `faceCorners` points (a face of a mesh: 4 for quads, 3 for triangles) is
     * reversed so that faces keep their winding; with 0 the whole list is reversed, so that a
     * side outline starts at the front top corner again. Top views need no flip.
     */
    static QList<Point> Flipped(const QList<Point> &points, double height, int faceCorners);
};
