// SPDX-License-Identifier: MIT
#include "Vocabulary.h"

#include <iterator>

QString Vocabulary::mountingText(Tolvane::Mounting mounting)
{
    // In the order of the enumeration, which starts at Invalid = -1.
    static const QString texts[] = {QStringLiteral("invalid"),         QStringLiteral("flown"),
                                    QStringLiteral("stacked"),         QStringLiteral("flown_horizontal"),
                                    QStringLiteral("stacked_horizontal"), QStringLiteral("stacked_cart"),
                                    QStringLiteral("flown_install"),   QStringLiteral("flown_pullback")};
    const int index = int(mounting) - Tolvane::Invalid;
    return index >= 0 && index < int(std::size(texts)) ? texts[index] : QString();
}
