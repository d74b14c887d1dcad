// SPDX-License-Identifier: MIT
// lpsdk validate: everything a plugin author should fix, each problem with its plugin,
// descriptor, file and key. Checks a plugin folder, data or balloon files, or a coupling table.
#include "CommandContext.h"
#include "Validator.h"

#include <nvLoudspeakerPluginSdk/nvLoudspeakerPluginSdk.h>

#include <QFileInfo>

#include <algorithm>

namespace {

QString libraryName(const QString &path)
{
    return QFileInfo(path).fileName();
}

// The library that registered `name`, of the kind whose names `names` picks from a result.
QString owner(const QList<PluginLoadResult> &libraries, const QString &name, QStringList PluginLoadResult::*names)
{
    for (const PluginLoadResult &library : libraries) {
        if ((library.*names).contains(name))
            return libraryName(library.fileName);
    }
    return QString();
}

// The library's warnings, except those about what the checks find again, located, and those
// that follow from a file that does not parse.
void addUnlocatedWarnings(Validator &validator, const QList<LibraryWarnings::Warning> &warnings)
{
    QList<LibraryWarnings::Warning> unlocated;
    for (const LibraryWarnings::Warning &warning : warnings) {
        if (warning.category != QLatin1String("nvlps.json") && warning.category != QLatin1String("nvlps.balloon") && warning.category != QLatin1String("nvlps.shape")
            && !validator.followsFromUnreadableFile(warning.text))
            unlocated.append(warning);
    }
    validator.addWarnings(QString(), QString(), unlocated);
}

// A descriptor the registries ignored: its file and the file of the one they kept, so that
// the author sees both. A file that does not parse reports that instead.
void checkDuplicate(Validator &validator, const QList<PluginLoadResult> &libraries, const QString &file)
{
    const std::optional<QVariantMap> map = validator.readJson(file);
    if (!map)
        return;
    const QString name = map->value(QStringLiteral("name")).toString();
    const PluginProvider &provider = PluginProvider::GetInstance();
    QString kept;
    QString keeper;
    LoudspeakerDescriptor *loudspeaker = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
    RiggingHardwareDescriptor *item = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(name);
    // A name in both registries: loudspeaker files are those with source points.
    if (loudspeaker && (!item || map->contains(QStringLiteral("sourcePoints")))) {
        kept = loudspeaker->GetFilePath();
        keeper = owner(libraries, name, &PluginLoadResult::loudspeakers);
    } else if (item) {
        kept = item->GetFilePath();
        keeper = owner(libraries, name, &PluginLoadResult::riggings);
    }
    validator.add(name, file, QStringLiteral("name"), QStringLiteral("the name is taken by %1 of %2, registered first; the registry keeps only the first").arg(kept, keeper));
}

void checkFolder(Validator &validator, const CommandContext &context, int &descriptors)
{
    const QList<PluginLoadResult> &libraries = context.plugins(true);
    const QList<LibraryWarnings::Warning> loading = context.warnings.take();

    const PluginProvider &provider = PluginProvider::GetInstance();
    bool anyLoaded = false;
    for (const PluginLoadResult &library : libraries) {
        validator.setPlugin(libraryName(library.fileName));
        if (!library.loaded) {
            validator.add(QString(), library.fileName, QString(), QStringLiteral("the library does not load: ") + library.errorString);
            continue;
        }
        anyLoaded = true;
        descriptors += int(library.loudspeakers.size() + library.riggings.size() + library.duplicateFiles.size());
        for (const QString &name : library.loudspeakers) {
            LoudspeakerDescriptor *loudspeaker = provider.GetLoudspeakerDescriptorProvider()->GetLoudspeakerDescriptor(name);
            if (const std::optional<QVariantMap> map = validator.readJson(loudspeaker->GetFilePath(), name))
                validator.checkLoudspeaker(loudspeaker, loudspeaker->GetFilePath(), *map);
        }
        for (const QString &name : library.riggings) {
            RiggingHardwareDescriptor *item = provider.GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptor(name);
            if (const std::optional<QVariantMap> map = validator.readJson(item->GetFilePath(), name))
                validator.checkRigging(item, item->GetFilePath(), *map);
        }
        for (const QString &file : library.duplicateFiles)
            checkDuplicate(validator, libraries, file);
    }
    validator.setPlugin(provider.GetPluginDirectory());
    addUnlocatedWarnings(validator, loading);
    if (!anyLoaded)
        validator.add(QString(), QString(), QString(), libraries.isEmpty() ? QStringLiteral("the folder holds no plugin library") : QStringLiteral("no library of the folder loads as a plugin"));
}

// One data file without a plugin, recognised by its keys: the reader whose table knows most of
// them. The files it names live in a plugin's resources, so they are not looked for.
void checkFile(Validator &validator, const CommandContext &context, const QString &file, int &descriptors)
{
    validator.setCheckResources(false);
    const std::optional<QVariantMap> map = validator.readJson(file);
    if (!map)
        return;
    const std::pair<const FileKeyTable *, const char *> tables[] = {{&LoudspeakerDescriptorFileKeys::Table(), "loudspeaker"},
        {&RiggingHardwareDescriptorFileKeys::Table(), "rigging"}, {&LoudspeakerSetupFileKeys::Table(), "setup"}};
    const char *kind = nullptr;
    int best = 0;
    for (const auto &[table, name] : tables) {
        const int known = int(std::count_if(map->keyBegin(), map->keyEnd(), [table = table](const QString &key) { return table->Find(key) != nullptr; }));
        if (known > best) {
            best = known;
            kind = name;
        }
    }
    if (!kind) {
        validator.add(QString(), file, QString(), QStringLiteral("no reader knows its keys: it is no loudspeaker, rigging or controller setup file"));
        return;
    }
    ++descriptors;
    context.warnings.take();
    if (qstrcmp(kind, "loudspeaker") == 0) {
        LoudspeakerDescriptor loudspeaker(file);
        addUnlocatedWarnings(validator, context.warnings.take());
        validator.checkLoudspeaker(&loudspeaker, file, *map);
    } else if (qstrcmp(kind, "rigging") == 0) {
        RiggingHardwareDescriptor item(file);
        addUnlocatedWarnings(validator, context.warnings.take());
        validator.checkRigging(&item, file, *map);
    } else {
        validator.checkSetup(QString(), file, *map);
    }
}

// The coupling table of --cpl-db, which main() has opened: every problem the library found
// when it read the table, located by row, positions and column.
void checkCouplingTable(Validator &validator, const CommandContext &context)
{
    const QString file = context.parser.value(QStringLiteral("cpl-db"));
    validator.setPlugin(QFileInfo(file).fileName());
    CouplingFilterProvider &provider = CouplingFilterProvider::GetInstance();
    if (!provider.Initialize())
        validator.add(QString(), file, QString(), QStringLiteral("the CplFilter table does not read (LowPos, MidPos, BiquadType, BiquadFX, BiquadQ, BiquadVdB)"));
    context.warnings.take(); // each is one of the problems below
    for (const CouplingTableProblem &problem : provider.GetTableProblems())
        validator.add(QString(), file, problem.Location(), problem.message);
}

// A balloon file given by path, checked before it is built into a plugin.
void checkBalloonFile(Validator &validator, const QString &file)
{
    for (const BalloonProblem &problem : BalloonCheck::CheckFile(file)) {
        const QString where = problem.offset >= 0 ? QStringLiteral("byte %1: ").arg(problem.offset) : QString();
        validator.add(QString(), file, problem.field, where + problem.message);
    }
}

} // namespace

int runValidate(const CommandContext &context)
{
    Validator validator(context.warnings);
    int descriptors = 0;
    Output &out = context.output;
    // Files given by path need no plugin: JSON data files, and balloon files otherwise.
    for (const QString &file : context.arguments) {
        if (!QFileInfo(file).isFile())
            usageError(QStringLiteral("no file \"%1\"").arg(file));
        if (file.endsWith(QLatin1String(".json"), Qt::CaseInsensitive))
            checkFile(validator, context, file, descriptors);
        else
            checkBalloonFile(validator, file);
    }
    if (!context.arguments.isEmpty())
        out.field(QStringLiteral("files"), QStringLiteral("files"), int(context.arguments.size()));
    if (context.parser.isSet(QStringLiteral("cpl-db"))) {
        checkCouplingTable(validator, context);
        out.field(QStringLiteral("coupling_table"), QStringLiteral("coupling table"), context.parser.value(QStringLiteral("cpl-db")));
    }
    if (context.arguments.isEmpty() && (!context.parser.isSet(QStringLiteral("cpl-db")) || context.parser.isSet(QStringLiteral("plugins")))) {
        checkFolder(validator, context, descriptors);
        out.field(QStringLiteral("plugin_folder"), QStringLiteral("plugin folder"), PluginProvider::GetInstance().GetPluginDirectory());
        out.field(QStringLiteral("libraries"), QStringLiteral("libraries"), int(context.plugins().size()));
    }

    out.field(QStringLiteral("descriptors"), QStringLiteral("descriptors"), descriptors);
    out.field(QStringLiteral("problem_count"), QStringLiteral("problems"), int(validator.problems().size()));
    out.beginList(QStringLiteral("problems"), QString());
    for (const Validator::Problem &problem : validator.problems()) {
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
    return validator.problems().isEmpty() ? 0 : 1;
}
