// SPDX-License-Identifier: MIT
#include "BalloonProblem.h"

QString BalloonProblem::ToString() const
{
    QString where = field;
    if (offset >= 0) {
        const QString byte = QStringLiteral("byte %1").arg(offset);
        where = where.isEmpty() ? byte : QStringLiteral("%1 (%2)").arg(where, byte);
    }
    return where.isEmpty() ? message : QStringLiteral("%1: %2").arg(where, message);
}
