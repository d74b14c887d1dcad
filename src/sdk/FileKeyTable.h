// SPDX-License-Identifier: MIT
#pragma once

#include "FileKey.h"
#include "nvloudspeakerpluginsdk_export.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <cstddef>

/**
 * The keys one block of a JSON data file may hold: the top level of a loudspeaker
 * descriptor, rigging descriptor or controller setup, or a block nested in one ("cabinet",
 * an entry of "sourcePoints"). Tables are constant data defined beside their readers and
 * may extend a base table (the cabinet blocks share the shape parameters); nested blocks are
 * reached through FileKey::keys and FileKey::item.
 *
 * The tables only describe: readers never reject a file because of them. Checkers use them
 * to report unknown keys (Find, NearestKey) and values of the wrong JSON type (Accepts).
 *
 * Immutable after static initialisation; every operation may run on any thread.
 */
class NVLPS_EXPORT FileKeyTable
{
public:
    /// How a table names the table it extends: a function, so that tables of other files stay constant data.
    using BaseTable = const FileKeyTable &(*)();

    constexpr FileKeyTable(const char *name, const FileKey *keys, std::size_t count, BaseTable base = nullptr)
        : m_name(name), m_keys(keys), m_count(count), m_base(base)
    {
    }
    template<std::size_t N>
    constexpr FileKeyTable(const char *name, const FileKey (&keys)[N], BaseTable base = nullptr)
        : FileKeyTable(name, keys, N, base)
    {
    }

    /// Name of the block ("loudspeaker descriptor", "cabinet", ...).
    QString Name() const;
    /// The table this one extends, or null.
    const FileKeyTable *Base() const { return m_base ? &m_base() : nullptr; }
    /// The table's own rows, without those of the base.
    const FileKey *begin() const { return m_keys; }
    const FileKey *end() const { return m_keys + m_count; }
    /// Own rows and the base's rows, own first.
    QList<const FileKey *> AllKeys() const;

    /// The row of `key` (own rows first, then the base's), or null. Case-sensitive, as the readers are.
    const FileKey *Find(const QString &key) const;
    /// The known key `key` was most likely meant to be, ignoring case: one with words left out or
    /// added ("flown_install"), else the fewest edits ("widht"); empty when none is close.
    QString NearestKey(const QString &key) const;

    /// True for a key of a mounting-keyed map: "default", a mounting text ("flown", "stacked_cart", ...),
    /// or a mounting text followed by "_" and a name ("flown_default", "stacked_Load beam").
    static bool IsMountingKey(const QString &key);
    /// The mounting texts of mounting-keyed maps.
    static QStringList MountingTexts();

    /// The JSON type names ("string", "number", "integer", "boolean", "object", "array") a kind accepts;
    /// empty for Any.
    static QStringList JsonTypes(FileKey::Kind kind);
    /// True when `value` has a JSON type that `kind` accepts (an integer-valued number counts as an integer).
    static bool Accepts(FileKey::Kind kind, const QJsonValue &value);
    /// Text of a unit for tables ("mm", "degrees", "dB", "ms", "Hz"; empty for none).
    static QString UnitText(FileKey::Unit unit);
    /// Short description of a row's value ("number", "array of point", "mounting map of array of number").
    static QString DescribeValue(const FileKey &key);

    /// A JSON Schema (draft 2020-12) of a file whose top level is this table.
    QJsonObject ToJsonSchema(const QString &id, const QString &title) const;

private:
    const char *m_name;
    const FileKey *m_keys;
    std::size_t m_count;
    BaseTable m_base;
};
