// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/**
 * One problem of the coupling filter table, located: the row (counted in the order the table
 * is read, from 1) with its two positions and the column at fault, or a whole position pair
 * (row 0, no column) that has no filters. A plain value.
 */
struct CouplingTableProblem
{
    int row = 0;
    int lowPosition = 0;
    int midPosition = 0;
    QString column;
    QString message;

    /// "row 12 (LowPos 4, MidPos 1), BiquadFX", or "LowPos 4, MidPos 1" for a pair.
    QString Location() const
    {
        if (row == 0)
            return QStringLiteral("LowPos %1, MidPos %2").arg(lowPosition).arg(midPosition);
        return QStringLiteral("row %1 (LowPos %2, MidPos %3), %4").arg(row).arg(lowPosition).arg(midPosition).arg(column);
    }
    /// Location() and the message: "row 12 (LowPos 4, MidPos 1), BiquadFX: message".
    QString ToString() const { return Location() + QStringLiteral(": ") + message; }
};
