// SPDX-License-Identifier: MIT
// lpsdk validate: everything a plugin author should fix, each problem with its plugin,
// descriptor, file and key; or, given balloon files, every problem of each file.
#include "CommandContext.h"
#include "PluginFolder.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>

namespace {

struct Problem
{
    QString plugin;
    QString descriptor;
    QString file;
    QString key;
    QString message;
};

class Validator
{
public:
    QList<Problem> problems;

    void add(const QString &descriptor, const QString &file, const QString &key, const QString &message)
    {
        problems.append({m_plugin, descriptor, file, key, message});
    }

    // Library warnings, one problem per distinct text with how often it came.
    void addWarnings(const QString &descriptor, const QString &file, const QStringList &warnings)
    {
        QStringList distinct;
        QHash<QString, int> counts;
        for (const QString &warning : warnings) {
            if (counts[warning]++ == 0)
                distinct.append(warning);
        }
        for (const QString &warning : distinct)
            add(descriptor, file, QString(), QStringLiteral("library warning%1: %2").arg(counts.value(warning) > 1 ? QStringLiteral(" (%1 times)").arg(counts.value(warning)) : QString(), warning));
    }

    void setPlugin(const QString &plugin) { m_plugin = plugin; }

    void checkSizes(const QString &descriptor, const QString &file, const QVariantMap &cabinet, const QStringList &keys)
    {
        for (const QString &key : keys) {
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
    void checkKeys(const QString &descriptor, const QString &file, const FileKeyTable &table, const QJsonObject &object, const QString &path)
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

    void checkValue(const QString &descriptor, const QString &file, const FileKey &row, const QJsonValue &value, const QString &key)
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

    static QString jsonText(const QJsonValue &value)
    {
        return QString::fromUtf8(QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact)).mid(1).chopped(1);
    }

    // The library's own outline checks, named per descriptor (its warning names only the cabinet).
    void checkOutlines(const QString &descriptor, const QString &file, LoudspeakerDescriptor *loudspeaker)
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

    void checkResourceFile(const QString &descriptor, const QString &file, const QString &key, const QString &name, const QString &what)
    {
        QFile resource(QStringLiteral(":/Resources/") + name);
        if (!resource.exists())
            add(descriptor, file, key, QStringLiteral("the %1 file \"%2\" is missing (looked for %3)").arg(what, name, resource.fileName()));
        else if (resource.size() == 0)
            add(descriptor, file, key, QStringLiteral("the %1 file \"%2\" is empty").arg(what, name));
    }

    void checkSetupFile(const QString &descriptor, const QString &file, const QString &key, const QString &name)
    {
        checkResourceFile(descriptor, file, key, name, QStringLiteral("controller setup"));
        QFile resource(QStringLiteral(":/Resources/") + name);
        if (resource.size() == 0)
            return;
        const QVariantMap setup = LoadJsonFile(resource.fileName());
        if (setup.isEmpty())
            add(descriptor, file, key, QStringLiteral("the controller setup file \"%1\" does not parse to a JSON object").arg(name));
        else
            checkKeys(descriptor, resource.fileName(), LoudspeakerSetupFileKeys::Table(), QJsonObject::fromVariantMap(setup), QString());
    }

    // Everything the library finds wrong with a balloon file, each problem with its field or byte.
    void checkBalloonFile(const QString &descriptor, const QString &file, const QString &key, const QString &name)
    {
        const QString path = QStringLiteral(":/Resources/") + name;
        if (QFileInfo(path).size() == 0)
            return; // reported as missing or empty
        for (const BalloonProblem &problem : BalloonCheck::CheckFile(path))
            add(descriptor, file, key, QStringLiteral("the balloon file \"%1\": %2").arg(name, problem.ToString()));
    }

    void checkLoudspeaker(PluginFolder &folder, LoudspeakerDescriptor *loudspeaker, const QString &file, const QVariantMap &map)
    {
        const QString name = loudspeaker->GetName();
        const QVariantMap cabinet = map.value(QStringLiteral("cabinet")).toMap();
        checkSizes(name, file, cabinet, {QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("depth"), QStringLiteral("weight")});
        // The shape creator says whether it knows the shape only by its warning.
        folder.takeWarnings();
        CabinetShapeCreator::CreateCabinetShapeData(cabinet, cabinet.value(QStringLiteral("cabinetShape")).toString());
        if (!folder.takeWarnings().isEmpty())
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
            const QVariantMap defaults = entry.value(QStringLiteral("defaultControllerSetups")).toMap();
            for (auto it = defaults.cbegin(); it != defaults.cend(); ++it) {
                if (!setups.contains(it.value().toString()))
                    add(name, file, prefix + QStringLiteral("defaultControllerSetups/") + it.key(),
                        QStringLiteral("names setup %1, which controllerSetups does not list (it lists: %2)").arg(it.value().toString(), setups.keys().join(QStringLiteral(", "))));
            }
            for (auto it = setups.cbegin(); it != setups.cend(); ++it)
                checkSetupFile(name, file, prefix + QStringLiteral("controllerSetups/") + it.key(), it.value().toString());
            const QVariantMap balloons = entry.value(QStringLiteral("balloonData")).toMap();
            for (auto it = balloons.cbegin(); it != balloons.cend(); ++it) {
                checkResourceFile(name, file, prefix + QStringLiteral("balloonData/") + it.key(), it.value().toString(), QStringLiteral("balloon"));
                checkBalloonFile(name, file, prefix + QStringLiteral("balloonData/") + it.key(), it.value().toString());
            }
            folder.takeWarnings();
            sourcePoints.at(i)->ReadBalloonData(SourcePointDescriptor_Interface::Synchronous);
            addWarnings(name, file, folder.takeWarnings());
        }
    }

    void checkRigging(RiggingHardwareDescriptor *item, const QString &file, const QVariantMap &map)
    {
        checkSizes(item->GetName(), file, map.value(QStringLiteral("cabinet")).toMap(),
            {QStringLiteral("width"), QStringLiteral("height"), QStringLiteral("depth"), QStringLiteral("weight")});
        checkKeys(item->GetName(), file, RiggingHardwareDescriptorFileKeys::Table(), QJsonObject::fromVariantMap(map), QString());
    }

private:
    QString m_plugin;
};

// Adds the JSON files a plugin brought to `files`, by the "name" each declares. A second copy
// of a plugin brings no new resources; its descriptors then find the first copy's files.
void addDescriptorFiles(Validator &validator, PluginFolder &folder, const PluginFolder::Library &library, QHash<QString, QString> &files,
                        QHash<QString, QVariantMap> &maps)
{
    for (const QString &resource : library.resources) {
        if (!resource.endsWith(QLatin1String(".json"), Qt::CaseInsensitive) || resource.startsWith(QLatin1String(":/Resources/")))
            continue;
        folder.takeWarnings();
        const QVariantMap map = LoadJsonFile(resource);
        validator.addWarnings(QString(), resource, folder.takeWarnings());
        const QString name = map.value(QStringLiteral("name")).toString();
        if (!files.contains(name)) {
            files.insert(name, resource);
            maps.insert(resource, map);
        }
    }
}

} // namespace

namespace {

void report(Output &out, const QList<Problem> &problems)
{
    out.field(QStringLiteral("problem_count"), QStringLiteral("problems"), int(problems.size()));
    out.beginList(QStringLiteral("problems"), QString());
    for (const Problem &problem : problems) {
        if (out.mode() == Output::Json) {
            out.beginObject(QString());
            out.field(QStringLiteral("plugin"), QString(), problem.plugin);
            out.field(QStringLiteral("descriptor"), QString(), problem.descriptor);
            out.field(QStringLiteral("file"), QString(), problem.file);
            out.field(QStringLiteral("key"), QString(), problem.key);
            out.field(QStringLiteral("message"), QString(), problem.message);
            out.endObject();
        } else {
            QStringList where;
            for (const QString &part : {problem.plugin, problem.descriptor, problem.file, problem.key}) {
                if (!part.isEmpty())
                    where.append(part);
            }
            out.line(where.join(QStringLiteral(": ")) + QStringLiteral(": ") + problem.message);
        }
    }
    out.endList();
}

// Balloon files given by path, checked before they are built into a plugin: no plugin is loaded.
int validateBalloonFiles(const CommandContext &context)
{
    QList<Problem> problems;
    for (const QString &file : context.arguments) {
        for (const BalloonProblem &problem : BalloonCheck::CheckFile(file)) {
            const QString where = problem.offset >= 0 ? QStringLiteral("byte %1: ").arg(problem.offset) : QString();
            problems.append({QString(), QString(), file, problem.field, where + problem.message});
        }
    }
    context.output.field(QStringLiteral("files"), QStringLiteral("files"), int(context.arguments.size()));
    report(context.output, problems);
    return problems.isEmpty() ? 0 : 1;
}

} // namespace

int runValidate(const CommandContext &context)
{
    if (!context.arguments.isEmpty())
        return validateBalloonFiles(context);
    PluginFolder &folder = context.plugins();
    Validator validator;
    QHash<QString, QString> firstOwner; // descriptor name -> plugin
    int descriptors = 0;
    QHash<QString, QString> files;
    QHash<QString, QVariantMap> maps;

    for (const PluginFolder::Library &library : folder.libraries()) {
        const QString plugin = QFileInfo(library.path).fileName();
        validator.setPlugin(plugin);
        if (!library.root) {
            validator.add(QString(), library.path, QString(), QStringLiteral("the library does not load: ") + library.error);
            continue;
        }
        if (!library.series) {
            validator.add(QString(), library.path, QString(), QStringLiteral("the library loads, but ") + library.error);
            continue;
        }
        validator.addWarnings(QString(), QString(), library.warnings);
        addDescriptorFiles(validator, folder, library, files, maps);

        const auto checkName = [&](const QString &kind, const QString &name, const QString &file) {
            ++descriptors;
            if (name.isEmpty())
                validator.add(name, file, QStringLiteral("name"), QStringLiteral("a %1 descriptor has an empty name (did its file parse?)").arg(kind));
            else if (firstOwner.contains(name))
                validator.add(name, file, QStringLiteral("name"), QStringLiteral("the name is taken (first registered by %1); the registry keeps only the first").arg(firstOwner.value(name)));
            else
                firstOwner.insert(name, plugin);
        };
        for (LoudspeakerDescriptor *loudspeaker : library.root->findChildren<LoudspeakerDescriptor *>(QString(), Qt::FindDirectChildrenOnly)) {
            const QString file = files.value(loudspeaker->GetName());
            checkName(QStringLiteral("loudspeaker"), loudspeaker->GetName(), file);
            if (!file.isEmpty())
                validator.checkLoudspeaker(folder, loudspeaker, file, maps.value(file));
        }
        for (RiggingHardwareDescriptor *item : library.root->findChildren<RiggingHardwareDescriptor *>(QString(), Qt::FindDirectChildrenOnly)) {
            const QString file = files.value(item->GetName());
            checkName(QStringLiteral("rigging"), item->GetName(), file);
            if (!file.isEmpty())
                validator.checkRigging(item, file, maps.value(file));
        }
    }

    Output &out = context.output;
    out.field(QStringLiteral("plugin_folder"), QStringLiteral("plugin folder"), folder.directory());
    out.field(QStringLiteral("libraries"), QStringLiteral("libraries"), int(folder.libraries().size()));
    out.field(QStringLiteral("descriptors"), QStringLiteral("descriptors"), descriptors);
    report(out, validator.problems);
    return validator.problems.isEmpty() ? 0 : 1;
}
