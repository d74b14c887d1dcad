// SPDX-License-Identifier: MIT
// nvlps.Library and nvlps.Loudspeaker: the plugin folder and what its plugins registered.
#include "Bindings.h"
#include "Session.h"

#include "LoudspeakerDescriptor.h"
#include "LoudspeakerDescriptorProvider.h"
#include "PluginLoadResult.h"
#include "PluginProvider.h"
#include "RiggingHardwareDescriptor.h"
#include "RiggingHardwareDescriptorProvider.h"
#include "SourcePointDescriptor.h"

#include <QDir>

namespace nvlps {

namespace {

class Library
{
public:
    Library(const std::optional<QString> &plugins, const QString &couplingDb)
    {
        Session::ensureApplication();
        Session::openCouplingTable(couplingDb);
        PluginProvider &provider = PluginProvider::GetInstance();
        const QString folder = plugins.value_or(qEnvironmentVariable("LPSDK_PLUGIN_PATH"));
        if (!folder.isEmpty() && !QFileInfo(folder).isDir())
            throw py::value_error(QStringLiteral("plugins: no folder \"%1\"").arg(folder).toStdString());
        provider.LoadPlugins(folder.isEmpty() ? QString() : QDir(folder).absolutePath()); // empty: the library's default folder
        m_directory = provider.GetPluginDirectory();
        for (const PluginLoadResult &result : provider.GetPluginLoadResults()) {
            py::dict entry;
            entry["file"] = result.fileName;
            entry["loaded"] = result.loaded;
            entry["error"] = result.errorString;
            entry["series"] = result.series;
            entry["loudspeakers"] = result.loudspeakers;
            entry["riggings"] = result.riggings;
            m_loadResults.append(entry);
        }
    }

    QString directory() const { return m_directory; }
    py::list loadResults() const { return m_loadResults; }

    QStringList loudspeakers() const
    {
        QStringList result;
        for (LoudspeakerDescriptor *descriptor : registry()->GetLoudspeakerDescriptors())
            result.append(descriptor->GetName());
        return result;
    }

    Loudspeaker loudspeaker(const QString &name) const
    {
        LoudspeakerDescriptor *descriptor = registry()->GetLoudspeakerDescriptor(name);
        if (!descriptor) {
            const QStringList known = loudspeakers();
            throw py::key_error(QStringLiteral("no loudspeaker named \"%1\" (registered: %2)")
                                    .arg(name, known.isEmpty() ? QStringLiteral("none") : known.join(QStringLiteral(", ")))
                                    .toStdString());
        }
        return Loudspeaker{descriptor, nullptr};
    }

    Loudspeaker readLoudspeaker(const QString &json, const QString &name) const
    {
        auto descriptor = std::make_shared<LoudspeakerDescriptor>(QString());
        descriptor->ReadDescriptorData(json.toUtf8(), name);
        return Loudspeaker{descriptor.get(), descriptor};
    }

    QStringList riggings() const
    {
        QStringList result;
        for (RiggingHardwareDescriptor *descriptor :
             PluginProvider::GetInstance().GetRiggingHardwareDescriptorProvider()->GetRiggingHardwareDescriptors())
            result.append(descriptor->GetName());
        return result;
    }

private:
    static LoudspeakerDescriptorProvider *registry() { return PluginProvider::GetInstance().GetLoudspeakerDescriptorProvider(); }

    QString m_directory;
    py::list m_loadResults;
};

} // namespace

void bindLibrary(py::module_ &m)
{
    py::class_<Library>(m, "Library", R"(The loudspeakers and rigging that the plugins of one folder register.

The library keeps one process-wide plugin provider: every Library sees all plugins loaded so
far, and creating another one (same folder or not) loads only the libraries not loaded yet.)")
        .def(py::init<const std::optional<QString> &, const QString &>(), py::arg("plugins") = py::none(),
             py::arg("coupling_db") = QString(),
             R"(Loads the plugin libraries of the folder `plugins` (else $LPSDK_PLUGIN_PATH, else
"Plugins" beside the Python executable). `coupling_db` names a SQLite file with a CplFilter
table; by default the table built into the module. Raises ValueError for a folder or table
that does not exist.)")
        .def_property_readonly("plugin_directory", &Library::directory, "The absolute path of the folder loaded.")
        .def_property_readonly("load_results", &Library::loadResults,
                               R"(One dict per library file of the folder: "file" (absolute path), "loaded",
"error" (why it did not load, else ""), and the "series", "loudspeakers" and "riggings" it registered.)")
        .def("loudspeakers", &Library::loudspeakers, "The names of all registered loudspeakers, sorted.")
        .def("loudspeaker", &Library::loudspeaker, py::arg("name"),
             "The loudspeaker registered under exactly `name`; KeyError naming the known ones otherwise.")
        .def("read_loudspeaker", &Library::readLoudspeaker, py::arg("json"), py::arg("name") = QString(),
             R"(A loudspeaker descriptor read from JSON text, as a plugin reads its files: controller setups
and balloon files are found among the resources of the plugins loaded, so a plugin author can try
a descriptor before building it into a plugin. `name` stands for the file in warnings.)")
        .def("riggings", &Library::riggings, "The names of all registered rigging descriptors, sorted.");

    py::class_<Loudspeaker>(m, "Loudspeaker", "One loudspeaker model as its plugin describes it.")
        .def_property_readonly("name", [](const Loudspeaker &l) { return alive(l.descriptor)->GetName(); }, "The registered name.")
        .def_property_readonly("display_name", [](const Loudspeaker &l) { return alive(l.descriptor)->GetDisplayName(); },
                               "The name shown to users.")
        .def_property_readonly("weight", [](const Loudspeaker &l) { return alive(l.descriptor)->GetWeight(); }, "Kilograms.")
        .def_property_readonly(
            "size",
            [](const Loudspeaker &l) {
                const Size size = alive(l.descriptor)->GetSize();
                return py::make_tuple(size.width(), size.height(), size.depth());
            },
            "(width, height, depth) in metres.")
        .def_property_readonly(
            "source_points",
            [](const Loudspeaker &l) {
                LoudspeakerDescriptor *descriptor = alive(l.descriptor);
                std::vector<SourcePoint> points;
                for (SourcePointDescriptor *point : descriptor->GetSourcePointDescriptors())
                    points.push_back(SourcePoint{point, l.owned, descriptor->GetName()});
                return points;
            },
            "The acoustic source points, in file order.")
        .def("__repr__", [](const Loudspeaker &l) {
            return QStringLiteral("<nvlps.Loudspeaker %1>").arg(l.descriptor ? l.descriptor->GetName() : QStringLiteral("(unloaded)"));
        });
}

} // namespace nvlps
