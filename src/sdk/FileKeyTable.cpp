// SPDX-License-Identifier: MIT
#include "FileKeyTable.h"

#include "Vocabulary.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace {
// Edit distance ignoring case, with a swap of two neighbours counting as one edit ("widht").
int editDistance(const QString &a, const QString &b)
{
    const auto same = [&](int i, int j) { return a.at(i).toCaseFolded() == b.at(j).toCaseFolded(); };
    std::vector<std::vector<int>> d(a.size() + 1, std::vector<int>(b.size() + 1));
    for (int i = 0; i <= a.size(); ++i)
        d[i][0] = i;
    for (int j = 0; j <= b.size(); ++j)
        d[0][j] = j;
    for (int i = 1; i <= a.size(); ++i) {
        for (int j = 1; j <= b.size(); ++j) {
            d[i][j] = std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (same(i - 1, j - 1) ? 0 : 1)});
            if (i > 1 && j > 1 && same(i - 1, j - 2) && same(i - 2, j - 1))
                d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
        }
    }
    return d[a.size()][b.size()];
}

// True when the characters of `part` appear in `whole` in order, ignoring case: a name with
// words left out ("flown_install" in "flown_vertical_install").
bool isSubsequence(const QString &part, const QString &whole)
{
    int i = 0;
    for (int j = 0; j < whole.size() && i < part.size(); ++j) {
        if (part.at(i).toCaseFolded() == whole.at(j).toCaseFolded())
            ++i;
    }
    return i == part.size();
}

QJsonObject valueSchema(const FileKey &key);

QJsonObject objectSchema(const FileKeyTable &table)
{
    QJsonObject properties;
    for (const FileKey *row : table.AllKeys())
        properties.insert(QString::fromUtf8(row->name), valueSchema(*row));
    return {{QStringLiteral("type"), QStringLiteral("object")},
            {QStringLiteral("properties"), properties},
            {QStringLiteral("additionalProperties"), false}};
}

QString description(const FileKey &key)
{
    QString text = QString::fromUtf8(key.meaning);
    const QString unit = FileKeyTable::UnitText(key.unit);
    if (!unit.isEmpty())
        text += QStringLiteral(" [%1]").arg(unit);
    if (key.defaultValue && *key.defaultValue)
        text += QStringLiteral(". Default: %1.").arg(QString::fromUtf8(key.defaultValue));
    return text;
}

QJsonObject valueSchema(const FileKey &key)
{
    QJsonObject schema;
    switch (key.kind) {
    case FileKey::String:
    case FileKey::Number:
    case FileKey::Integer:
    case FileKey::Boolean:
        schema.insert(QStringLiteral("type"), FileKeyTable::JsonTypes(key.kind).constFirst());
        break;
    case FileKey::PointValue:
        schema.insert(QStringLiteral("$ref"), QStringLiteral("#/$defs/point"));
        break;
    case FileKey::Any:
        break;
    case FileKey::Object:
        if (key.keys)
            schema = objectSchema(*key.keys);
        else
            schema.insert(QStringLiteral("type"), QStringLiteral("object"));
        break;
    case FileKey::Array:
        schema.insert(QStringLiteral("type"), QStringLiteral("array"));
        if (key.item)
            schema.insert(QStringLiteral("items"), valueSchema(*key.item));
        break;
    case FileKey::MountingMap:
    case FileKey::NamedMap:
        schema.insert(QStringLiteral("type"), QStringLiteral("object"));
        if (key.kind == FileKey::MountingMap)
            schema.insert(QStringLiteral("propertyNames"), QJsonObject {{QStringLiteral("$ref"), QStringLiteral("#/$defs/mountingKey")}});
        if (key.keys)
            schema.insert(QStringLiteral("properties"), objectSchema(*key.keys).value(QStringLiteral("properties")));
        if (key.item)
            schema.insert(QStringLiteral("additionalProperties"), valueSchema(*key.item));
        break;
    }
    if (key.accepted) {
        const QJsonObject accepted = QJsonDocument::fromJson(key.accepted).object();
        Q_ASSERT_X(!accepted.isEmpty(), "FileKey::accepted", key.accepted);
        for (auto it = accepted.constBegin(); it != accepted.constEnd(); ++it)
            schema.insert(it.key(), it.value());
    }
    if (key.meaning && *key.meaning)
        schema.insert(QStringLiteral("description"), description(key));
    return schema;
}
} // namespace

QString FileKeyTable::Name() const
{
    return QString::fromUtf8(m_name);
}

QList<const FileKey *> FileKeyTable::AllKeys() const
{
    QList<const FileKey *> rows;
    for (const FileKeyTable *table = this; table; table = table->Base()) {
        for (const FileKey &row : *table)
            rows.append(&row);
    }
    return rows;
}

const FileKey *FileKeyTable::Find(const QString &key) const
{
    for (const FileKeyTable *table = this; table; table = table->Base()) {
        for (const FileKey &row : *table) {
            if (key == QLatin1String(row.name))
                return &row;
        }
    }
    return nullptr;
}

QString FileKeyTable::NearestKey(const QString &key) const
{
    // Names with words left out or added come first, then the fewest edits; at most half the
    // longer name apart, so that a suggestion is a likely slip and not just any short key.
    QString nearest;
    std::pair<bool, int> best {true, std::numeric_limits<int>::max()};
    for (const FileKey *row : AllKeys()) {
        const QString candidate = QString::fromUtf8(row->name);
        const int distance = editDistance(key, candidate);
        const std::pair<bool, int> rank {!isSubsequence(key, candidate) && !isSubsequence(candidate, key), distance};
        if (rank < best && 2 * distance <= std::max(key.size(), candidate.size())) {
            best = rank;
            nearest = candidate;
        }
    }
    return nearest;
}

QStringList FileKeyTable::MountingTexts()
{
    QStringList texts;
    for (int mounting = Tolvane::Flown; mounting <= Tolvane::FlownPullback; ++mounting)
        texts.append(Vocabulary::mountingText(static_cast<Tolvane::Mounting>(mounting)));
    return texts;
}

bool FileKeyTable::IsMountingKey(const QString &key)
{
    if (key == Vocabulary::DefaultKey)
        return true;
    const QStringList texts = MountingTexts();
    return std::any_of(texts.cbegin(), texts.cend(), [&key](const QString &text) {
        return key == text || (key.startsWith(text) && key.size() > text.size() + 1 && key.at(text.size()) == QLatin1Char('_'));
    });
}

QStringList FileKeyTable::JsonTypes(FileKey::Kind kind)
{
    switch (kind) {
    case FileKey::String:
        return {QStringLiteral("string")};
    case FileKey::Number:
        return {QStringLiteral("number")};
    case FileKey::Integer:
        return {QStringLiteral("integer")};
    case FileKey::Boolean:
        return {QStringLiteral("boolean")};
    case FileKey::PointValue:
        return {QStringLiteral("object"), QStringLiteral("array")};
    case FileKey::Object:
    case FileKey::MountingMap:
    case FileKey::NamedMap:
        return {QStringLiteral("object")};
    case FileKey::Array:
        return {QStringLiteral("array")};
    case FileKey::Any:
        break;
    }
    return {};
}

bool FileKeyTable::Accepts(FileKey::Kind kind, const QJsonValue &value)
{
    switch (kind) {
    case FileKey::String:
        return value.isString();
    case FileKey::Number:
        return value.isDouble();
    case FileKey::Integer:
        return value.isDouble() && std::trunc(value.toDouble()) == value.toDouble();
    case FileKey::Boolean:
        return value.isBool();
    case FileKey::PointValue:
        return value.isObject() || value.isArray();
    case FileKey::Object:
    case FileKey::MountingMap:
    case FileKey::NamedMap:
        return value.isObject();
    case FileKey::Array:
        return value.isArray();
    case FileKey::Any:
        break;
    }
    return true;
}

QString FileKeyTable::UnitText(FileKey::Unit unit)
{
    switch (unit) {
    case FileKey::Millimetres:
        return QStringLiteral("mm");
    case FileKey::Degrees:
        return QStringLiteral("degrees");
    case FileKey::Decibels:
        return QStringLiteral("dB");
    case FileKey::Milliseconds:
        return QStringLiteral("ms");
    case FileKey::Hertz:
        return QStringLiteral("Hz");
    case FileKey::NoUnit:
        break;
    }
    return {};
}

QString FileKeyTable::DescribeValue(const FileKey &key)
{
    switch (key.kind) {
    case FileKey::String:
    case FileKey::Number:
    case FileKey::Integer:
    case FileKey::Boolean:
        return JsonTypes(key.kind).constFirst();
    case FileKey::PointValue:
        return QStringLiteral("point");
    case FileKey::Any:
        return QStringLiteral("any");
    case FileKey::Object:
        return key.keys ? QStringLiteral("object (%1)").arg(key.keys->Name()) : QStringLiteral("object");
    case FileKey::Array:
        return key.item ? QStringLiteral("array of %1").arg(DescribeValue(*key.item)) : QStringLiteral("array");
    case FileKey::MountingMap:
        return key.item ? QStringLiteral("mounting map of %1").arg(DescribeValue(*key.item)) : QStringLiteral("mounting map");
    case FileKey::NamedMap:
        return key.item ? QStringLiteral("map of %1").arg(DescribeValue(*key.item)) : QStringLiteral("map");
    }
    return {};
}

QJsonObject FileKeyTable::ToJsonSchema(const QString &id, const QString &title) const
{
    QJsonObject schema = objectSchema(*this);
    schema.insert(QStringLiteral("$schema"), QStringLiteral("https://json-schema.org/draft/2020-12/schema"));
    schema.insert(QStringLiteral("$id"), id);
    schema.insert(QStringLiteral("title"), title);
    schema.insert(QStringLiteral("description"),
                  QStringLiteral("%1. The files may carry line comments (// to the end of the line, outside strings): "
                                 "strip them before validating, or validate them as JSON with comments.")
                      .arg(title));

    const QJsonObject number {{QStringLiteral("type"), QStringLiteral("number")}};
    const QJsonObject pointObject {
        {QStringLiteral("type"), QStringLiteral("object")},
        {QStringLiteral("properties"),
         QJsonObject {{QStringLiteral("x"), number},
                      {QStringLiteral("y"), number},
                      {QStringLiteral("z"), number},
                      {QStringLiteral("name"), QJsonObject {{QStringLiteral("type"), QStringLiteral("string")}}}}},
        {QStringLiteral("additionalProperties"), false}};
    const QJsonObject pointArray {{QStringLiteral("type"), QStringLiteral("array")},
                                  {QStringLiteral("items"), number},
                                  {QStringLiteral("maxItems"), 3}};
    QStringList mountings = MountingTexts();
    const QString pattern = QStringLiteral("^(default|(%1)(_.+)?)$").arg(mountings.join(QLatin1Char('|')));
    schema.insert(QStringLiteral("$defs"),
                  QJsonObject {{QStringLiteral("point"),
                                QJsonObject {{QStringLiteral("description"),
                                              QStringLiteral("A point in millimetres: {\"x\", \"y\", \"z\"} with an optional \"name\", or [x, y, z]; missing coordinates are 0.")},
                                             {QStringLiteral("oneOf"), QJsonArray {pointObject, pointArray}}}},
                               {QStringLiteral("mountingKey"),
                                QJsonObject {{QStringLiteral("description"),
                                              QStringLiteral("\"default\", a mounting, or a mounting followed by \"_\" and a name.")},
                                             {QStringLiteral("pattern"), pattern}}}});
    return schema;
}
