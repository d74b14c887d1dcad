// SPDX-License-Identifier: MIT
#include "Vocabulary.h"

QString Vocabulary::mountingText(Tolvane::Mounting mounting)
{
    switch (mounting) {
    case Tolvane::Invalid:
        return QStringLiteral("invalid");
    case Tolvane::Flown:
        return QStringLiteral("flown");
    case Tolvane::Stacked:
        return QStringLiteral("stacked");
    case Tolvane::FlownHorizontal:
        return QStringLiteral("flown_horizontal");
    case Tolvane::StackedHorizontal:
        return QStringLiteral("stacked_horizontal");
    case Tolvane::StackedCart:
        return QStringLiteral("stacked_cart");
    case Tolvane::FlownInstall:
        return QStringLiteral("flown_install");
    case Tolvane::FlownPullback:
        return QStringLiteral("flown_pullback");
    }
    return QString();
}
