// SPDX-License-Identifier: MIT
#include "Vocabulary.h"

#include <algorithm>
#include <array>

namespace {

// In the order of the enumeration, which starts at Invalid = -1.
const std::array<QString, 8> &mountingTexts()
{
    static const std::array<QString, 8> texts = {QStringLiteral("invalid"),         QStringLiteral("flown"),
                                                 QStringLiteral("stacked"),         QStringLiteral("flown_horizontal"),
                                                 QStringLiteral("stacked_horizontal"), QStringLiteral("stacked_cart"),
                                                 QStringLiteral("flown_install"),   QStringLiteral("flown_pullback")};
    return texts;
}

} // namespace

QString Vocabulary::mountingText(Tolvane::Mounting mounting)
{
    const int index = int(mounting) - Tolvane::Invalid;
    return index >= 0 && index < int(mountingTexts().size()) ? mountingTexts()[index] : QString();
}

Tolvane::Mounting Vocabulary::parseMounting(const QString &text, bool *ok)
{
    const auto &texts = mountingTexts();
    const auto index = std::find(texts.begin(), texts.end(), text) - texts.begin();
    const bool known = index < qsizetype(texts.size());
    if (ok)
        *ok = known;
    return known ? Tolvane::Mounting(Tolvane::Invalid + index) : Tolvane::Invalid;
}
