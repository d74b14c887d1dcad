// SPDX-License-Identifier: MIT
#include "Validator.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>

#include <algorithm>

namespace {
QString jsonText(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
}
} // namespace

void Validator::add(const QString &descriptor, const QString &file, const QString &key, const QString &message)
{
    m_problems.append({m_plugin, descriptor, file, key, message});
}

void Validator::addWarnings(const QString &descriptor, const QString &file, const QList<LibraryWarnings::Warning> &warnings)
{
    QStringList distinct;
    QHash<QString, int> counts;
    for (const LibraryWarnings::Warning &warning : warnings) {
        if (counts[warning.text]++ == 0)
            distinct.append(warning.text);
    }
    for (const QString &warning : distinct)
        add(descriptor, file, QString(), QStringLiteral("library warning%1: %2").arg(counts.value(warning) > 1 ? QStringLiteral(" (%1 times)").arg(counts.value(warning)) : QString(), warning));
}

std::optional<QVariantMap> Validator::readJson(const QString &file, const QString &descriptor)
{
    const JsonReadResult json = ReadJsonFile(file);
    if (!json.ok()) {
        add(descriptor, file, QString(), json.ErrorText());
        m_unreadableFiles.append(file);
        return std::nullopt;
    }
    return json.map;
}

bool Validator::followsFromUnreadableFile(const QString &text) const
{
    return std::any_of(m_unreadableFiles.cbegin(), m_unreadableFiles.cend(), [&](const QString &file) { return text.contains(file); });
}

void Validator::checkSetup(const QString &descriptor, const QString &file, const QVariantMap &setup)
{
    checkKeys(descriptor, file, LoudspeakerSetupFileKeys::Table(), QJsonObject::fromVariantMap(setup), QString());
}

// A default names a setup by its key read as a number, as the channel reads it; the single
// default counts only where the per-mounting map is missing or empty.
void Validator::checkDefaultSetups(const QString &descriptor, const QString &file, const QString &prefix, const QVariantMap &entry)
{
    const QVariantMap setups = entry.value(QStringLiteral("controllerSetups")).toMap();
    QSet<int> keys;
    for (auto it = setups.cbegin(); it != setups.cend(); ++it)
        keys.insert(it.key().toInt());
    const auto check = [&](const QString &key, const QVariant &value) {
        if (!keys.contains(value.toInt()))
            add(descriptor, file, prefix + key, QStringLiteral("names setup %1, which controllerSetups does not list (it lists: %2)")
                                                     .arg(value.toString(), setups.isEmpty() ? QStringLiteral("none") : setups.keys().join(QStringLiteral(", "))));
    };
    const QVariantMap defaults = entry.value(QStringLiteral("defaultControllerSetups")).toMap();
    for (auto it = defaults.cbegin(); it != defaults.cend(); ++it)
        check(QStringLiteral("defaultControllerSetups/") + it.key(), it.value());
    if (!entry.contains(QStringLiteral("defaultControllerSetup")))
        return;
    if (defaults.isEmpty())
        check(QStringLiteral("defaultControllerSetup"), entry.value(QStringLiteral("defaultControllerSetup")));
    else
        add(descriptor, file, prefix + QStringLiteral("defaultControllerSetup"), QStringLiteral("is ignored: defaultControllerSetups gives the defaults per mounting"));
}

void Validator::checkSizes(const QString &descriptor, const QString &file, const QVariantMap &cabinet)
{
    for (const QString &key : {QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("depth"), QStringLiteral("weight")}) {
        if (!cabinet.contains(key))
            continue;
        const QVariant value = cabinet.value(key);
        if (value.typeId() != QMetaType::Double && value.typeId() != QMetaType::Int && value.typeId() != QMetaType::LongLong)
            continue; // the key table reports the kind
        if (value.toDouble() <= 0.0)
            add(descriptor, file, QStringLiteral("cabinet/") + key, QStringLiteral("must be greater than zero, not %1").arg(value.toDouble()));
    }
}

// Every key against the reader's table: unknown keys (with the nearest known one),
// values of the wrong JSON type, and mounting maps keyed by something that is no mounting.
void Validator::checkKeys(const QString &descriptor, const QString &file, const FileKeyTable &table, const QJsonObject &object, const QString &path)
{
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const QString key = path.isEmpty() ? it.key() : path + QLatin1Char('/') + it.key();
        const FileKey *row = table.Find(it.key());
        if (!row) {
            const QString nearest = table.NearestKey(it.key());
            add(descriptor, file, key, QStringLiteral("no reader knows this key in a %1%2").arg(table.Name(),
                nearest.isEmpty() ? QString() : QStringLiteral(" (did you mean \"%1\"?)").arg(nearest)));
            continue;
        }
        checkValue(descriptor, file, *row, it.value(), key);
    }
}

void Validator::checkValue(const QString &descriptor, const QString &file, const FileKey &row, const QJsonValue &value, const QString &key)
{
    if (!FileKeyTable::Accepts(row.kind, value)) {
        add(descriptor, file, key, QStringLiteral("expects %1, not %2").arg(FileKeyTable::DescribeValue(row), jsonText(value)));
        return;
    }
    switch (row.kind) {
    case FileKey::Object:
        if (row.keys)
            checkKeys(descriptor, file, *row.keys, value.toObject(), key);
        break;
    case FileKey::Array:
        if (row.item) {
            const QJsonArray items = value.toArray();
            for (qsizetype i = 0; i < items.size(); ++i)
                checkValue(descriptor, file, *row.item, items.at(i), key + QLatin1Char('/') + QString::number(i));
        }
        break;
    case FileKey::MountingMap:
    case FileKey::NamedMap: {
        const QJsonObject members = value.toObject();
        for (auto it = members.constBegin(); it != members.constEnd(); ++it) {
            const QString member = key + QLatin1Char('/') + it.key();
            if (row.kind == FileKey::MountingMap && !FileKeyTable::IsMountingKey(it.key()))
                add(descriptor, file, member, QStringLiteral("names no mounting (accepted: default, %1, each optionally followed by _NAME)").arg(FileKeyTable::MountingTexts().join(QStringLiteral(", "))));
            else if (row.item)
                checkValue(descriptor, file, *row.item, it.value(), member);
        }
        break;
    }
    default:
        break;
    }
}

// The library's own outline checks, named per descriptor (its warning names only the cabinet).
void Validator::checkOutlines(const QString &descriptor, const QString &file, LoudspeakerDescriptor *loudspeaker)
{
    const QList<Point> mesh = loudspeaker->Get3dView(Tolvane::Flown);
    if (mesh.isEmpty())
        add(descriptor, file, QStringLiteral("cabinet"), QStringLiteral("the 3-D outline is empty"));
    else if (mesh.size() % 4 != 0)
        add(descriptor, file, QStringLiteral("cabinet"), QStringLiteral("the 3-D outline has %1 points, no multiple of four (a mesh of quadrilaterals)").arg(mesh.size()));
    if (loudspeaker->GetTopView().isEmpty())
        add(descriptor, file, QStringLiteral("cabinet"), QStringLiteral("the top outline is empty"));
    if (loudspeaker->GetSideView(Tolvane::Flown).isEmpty())
        add(descriptor, file, QStringLiteral("cabinet"), QStringLiteral("the side outline is empty"));
}

void Validator::checkResourceFile(const QString &descriptor, const QString &file, const QString &key, const QString &name, const QString &what)
{
    QFile resource(QStringLiteral(":/Resources/") + name);
    if (!resource.exists())
        add(descriptor, file, key, QStringLiteral("the %1 file \"%2\" is missing (looked for %3)").arg(what, name, resource.fileName()));
    else if (resource.size() == 0)
        add(descriptor, file, key, QStringLiteral("the %1 file \"%2\" is empty").arg(what, name));
}

void Validator::checkSetupFile(const QString &descriptor, const QString &file, const QString &key, const QString &name)
{
    checkResourceFile(descriptor, file, key, name, QStringLiteral("controller setup"));
    QFile resource(QStringLiteral(":/Resources/") + name);
    if (resource.size() == 0)
        return;
    if (const std::optional<QVariantMap> setup = readJson(resource.fileName(), descriptor))
        checkSetup(descriptor, resource.fileName(), *setup);
}

// Everything the library finds wrong with a balloon file, each problem with its field or byte.
void Validator::checkBalloonFile(const QString &descriptor, const QString &file, const QString &key, const QString &name)
{
    const QString path = QStringLiteral(":/Resources/") + name;
    if (QFileInfo(path).size() == 0)
        return; // reported as missing or empty
    for (const BalloonProblem &problem : BalloonCheck::CheckFile(path))
        add(descriptor, file, key, QStringLiteral("the balloon file \"%1\": %2").arg(name, problem.ToString()));
}

void Validator::checkLoudspeaker(LoudspeakerDescriptor *loudspeaker, const QString &file, const QVariantMap &map)
{
    const QString name = loudspeaker->GetName();
    if (name.isEmpty())
        add(name, file, QStringLiteral("name"), QStringLiteral("a loudspeaker descriptor has an empty name"));
    const QVariantMap cabinet = map.value(QStringLiteral("cabinet")).toMap();
    checkSizes(name, file, cabinet);
    // The shape creator says whether it knows the shape only by its warning.
    m_warnings.take();
    CabinetShapeCreator::CreateCabinetShapeData(cabinet, cabinet.value(QStringLiteral("cabinetShape")).toString());
    if (!m_warnings.take().isEmpty())
        add(name, file, QStringLiteral("cabinet/cabinetShape"), QStringLiteral("unknown shape \"%1\"").arg(cabinet.value(QStringLiteral("cabinetShape")).toString()));
    else
        checkOutlines(name, file, loudspeaker);
    checkKeys(name, file, LoudspeakerDescriptorFileKeys::Table(), QJsonObject::fromVariantMap(map), QString());

    const QVariantList entries = map.value(QStringLiteral("sourcePoints")).toList();
    const QList<SourcePointDescriptor *> sourcePoints = loudspeaker->GetSourcePointDescriptors();
    for (int i = 0; i < entries.size() && i < sourcePoints.size(); ++i) {
        const QVariantMap entry = entries.at(i).toMap();
        const QString prefix = QStringLiteral("sourcePoints/%1/").arg(i);
        const QVariantMap setups = entry.value(QStringLiteral("controllerSetups")).toMap();
        checkDefaultSetups(name, file, prefix, entry);
        if (!m_checkResources)
            continue;
        for (auto it = setups.cbegin(); it != setups.cend(); ++it)
            checkSetupFile(name, file, prefix + QStringLiteral("controllerSetups/") + it.key(), it.value().toString());
        const QVariantMap balloons = entry.value(QStringLiteral("balloonData")).toMap();
        for (auto it = balloons.cbegin(); it != balloons.cend(); ++it) {
            checkResourceFile(name, file, prefix + QStringLiteral("balloonData/") + it.key(), it.value().toString(), QStringLiteral("balloon"));
            checkBalloonFile(name, file, prefix + QStringLiteral("balloonData/") + it.key(), it.value().toString());
        }
        m_warnings.take();
        sourcePoints.at(i)->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
        addWarnings(name, file, m_warnings.take());
    }
}

void Validator::checkRigging(RiggingHardwareDescriptor *item, const QString &file, const QVariantMap &map)
{
    if (item->GetName().isEmpty())
        add(QString(), file, QStringLiteral("name"), QStringLiteral("a rigging descriptor has an empty name"));
    checkSizes(item->GetName(), file, map.value(QStringLiteral("cabinet")).toMap());
    checkKeys(item->GetName(), file, RiggingHardwareDescriptorFileKeys::Table(), QJsonObject::fromVariantMap(map), QString());
}

