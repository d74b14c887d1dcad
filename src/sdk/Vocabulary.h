// SPDX-License-Identifier: MIT
#pragma once

#include "Tolvane.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QMap>
#include <QString>

#include <initializer_list>

/// Words the data files and every layer above this one share, each defined here once.
namespace Vocabulary {

/// The key every per-name or per-mounting map falls back to.
inline const QString DefaultKey = QStringLiteral("default");

/// The switches of a controller setup that hold the low and mid coupling positions.
constexpr int LowCouplingSwitch = 4, MidCouplingSwitch = 5;

/// A plugin's data files are read from its compiled-in resources.
inline QString resourcePath(const QString &fileName)
{
    return QStringLiteral(":/Resources/%1").arg(fileName);
}

/// The text a mounting has in data-file keys ("flown", "stacked_cart", …); empty for an unknown value.
NVLPS_AUTOTEST_EXPORT QString mountingText(Tolvane::Mounting mounting);
/// The mounting a text names, the inverse of mountingText(); Invalid, with *ok false, for any other text.
NVLPS_AUTOTEST_EXPORT Tolvane::Mounting parseMounting(const QString &text, bool *ok = nullptr);

/// "<mounting>_<name>", the key of a per-mounting entry; "<mounting>_default" for DefaultKey.
inline QString mountingKey(Tolvane::Mounting mounting, const QString &name)
{
    return mountingText(mounting) + QLatin1Char('_') + name;
}

/// The value under the first of `keys` that `map` holds, else under "default", else `fallback`;
/// keys go most specific first: "<mounting>_<name>", then "<mounting>_default".
template<typename T>
T firstHeld(const QMap<QString, T> &map, std::initializer_list<QString> keys, const T &fallback = T())
{
    for (const QString &key : keys) {
        const auto it = map.constFind(key);
        if (it != map.cend())
            return it.value();
    }
    return map.value(DefaultKey, fallback);
}

/// Whether firstHeld() finds a value rather than taking its fallback.
template<typename Map>
bool isHeld(const Map &map, std::initializer_list<QString> keys)
{
    for (const QString &key : keys) {
        if (map.contains(key))
            return true;
    }
    return map.contains(DefaultKey);
}

} // namespace Vocabulary
