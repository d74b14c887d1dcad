// SPDX-License-Identifier: MIT
#include "SofaDirectivityFile.h"

#include <QFile>

#include <algorithm>
#include <climits>
#include <cmath>

bool SofaDirectivityFile::LooksLikeSofa(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.read(8);
    // netCDF-4 files are HDF5 files; the classic formats start with "CDF" and a version byte.
    return head == QByteArray("\x89HDF\r\n\x1a\n", 8) || (head.startsWith("CDF") && head.size() > 3 && head.at(3) >= 1 && head.at(3) <= 5);
}

#ifndef LPSDK_HAVE_NETCDF

std::optional<SofaDirectivityFile> SofaDirectivityFile::Read(const QString &, int, QString *error)
{
    *error = QStringLiteral("this lpsdk was built without netCDF and cannot read SOFA files: "
                            "install libnetcdf-dev (Debian) and rebuild");
    return std::nullopt;
}

#else

#include <netcdf.h>

namespace {

// Upper bound on the values of one measurement, so that a file claiming absurd dimensions is
// refused instead of exhausting memory.
constexpr size_t MaxValues = size_t(1) << 26;

struct NcFile {
    int id = -1;
    ~NcFile()
    {
        if (id >= 0)
            nc_close(id);
    }
};

struct Failure {
    QString message;
};

QString dimensionName(int ncid, int dimid)
{
    char name[NC_MAX_NAME + 1] = {};
    nc_inq_dimname(ncid, dimid, name);
    return QString::fromUtf8(name);
}

size_t dimensionLength(int ncid, const char *name, bool required)
{
    int dimid = -1;
    size_t length = 0;
    if (nc_inq_dimid(ncid, name, &dimid) != NC_NOERR) {
        if (required)
            throw Failure{QStringLiteral("missing dimension %1").arg(QLatin1String(name))};
        return 0;
    }
    nc_inq_dimlen(ncid, dimid, &length);
    return length;
}

// Text of an attribute (NC_CHAR or NC_STRING); nullopt when it is absent.
std::optional<QString> textAttribute(int ncid, int varid, const char *name)
{
    nc_type type = NC_NAT;
    size_t length = 0;
    if (nc_inq_att(ncid, varid, name, &type, &length) != NC_NOERR)
        return std::nullopt;
    if (type == NC_CHAR) {
        QByteArray text(qsizetype(length), '\0');
        if (nc_get_att_text(ncid, varid, name, text.data()) != NC_NOERR)
            return std::nullopt;
        return QString::fromUtf8(text.constData(), qstrnlen(text.constData(), text.size())).trimmed();
    }
    if (type == NC_STRING && length == 1) {
        char *text = nullptr;
        if (nc_get_att_string(ncid, varid, name, &text) != NC_NOERR)
            return std::nullopt;
        const QString result = QString::fromUtf8(text ? text : "").trimmed();
        nc_free_string(1, &text);
        return result;
    }
    throw Failure{QStringLiteral("attribute %1 is not text").arg(QLatin1String(name))};
}

struct Variable {
    int id = -1;
    QStringList dimensions;
    std::vector<size_t> lengths;
};

Variable variable(int ncid, const char *name)
{
    Variable v;
    if (nc_inq_varid(ncid, name, &v.id) != NC_NOERR)
        throw Failure{QStringLiteral("missing variable %1").arg(QLatin1String(name))};
    nc_type type = NC_NAT;
    nc_inq_vartype(ncid, v.id, &type);
    if (type < NC_BYTE || type > NC_UINT64 || type == NC_CHAR || type == NC_STRING)
        throw Failure{QStringLiteral("variable %1 is not numeric").arg(QLatin1String(name))};
    int count = 0;
    nc_inq_varndims(ncid, v.id, &count);
    std::vector<int> ids(size_t(std::max(count, 0)));
    if (count > 0)
        nc_inq_vardimid(ncid, v.id, ids.data());
    for (int dimid : ids) {
        size_t length = 0;
        nc_inq_dimlen(ncid, dimid, &length);
        v.dimensions << dimensionName(ncid, dimid);
        v.lengths.push_back(length);
    }
    return v;
}

// The variable's dimension names must be one of `shapes` (each like "R C I"); returns its index.
int requireShape(const char *name, const Variable &v, const QStringList &shapes)
{
    const QString actual = v.dimensions.join(QLatin1Char(' '));
    const int index = int(shapes.indexOf(actual));
    if (index < 0)
        throw Failure{QStringLiteral("variable %1 has dimensions [%2], expected [%3]")
                          .arg(QLatin1String(name), actual, shapes.join(QStringLiteral("] or [")))};
    return index;
}

void readDoubles(int ncid, const char *name, const Variable &v, const std::vector<size_t> &start,
                 const std::vector<size_t> &count, double *out)
{
    const int status = nc_get_vara_double(ncid, v.id, start.data(), count.data(), out);
    if (status != NC_NOERR)
        throw Failure{QStringLiteral("cannot read variable %1: %2").arg(QLatin1String(name), QString::fromUtf8(nc_strerror(status)))};
}

SofaDirectivityFile::Vector toCartesian(const SofaDirectivityFile::Vector &v, bool spherical)
{
    if (!spherical)
        return v;
    constexpr double degree = 3.141592653589793 / 180.0;
    const double azimuth = v[0] * degree, elevation = v[1] * degree, radius = v[2];
    return {radius * std::cos(elevation) * std::cos(azimuth), radius * std::cos(elevation) * std::sin(azimuth),
            radius * std::sin(elevation)};
}

// Whether a position variable is spherical ("Type"); SourceUp takes the type of SourceView.
bool isSpherical(int ncid, const char *name, int varid)
{
    const std::optional<QString> type = textAttribute(ncid, varid, "Type");
    if (!type)
        throw Failure{QStringLiteral("variable %1 has no attribute Type").arg(QLatin1String(name))};
    if (type->compare(QLatin1String("cartesian"), Qt::CaseInsensitive) == 0)
        return false;
    if (type->compare(QLatin1String("spherical"), Qt::CaseInsensitive) == 0)
        return true;
    throw Failure{QStringLiteral("variable %1 has coordinate Type \"%2\", expected cartesian or spherical")
                      .arg(QLatin1String(name), *type)};
}

// A [I C] or [M C] vector of the chosen measurement.
SofaDirectivityFile::Vector orientation(int ncid, const char *name, size_t measurement, bool spherical)
{
    const Variable v = variable(ncid, name);
    const bool perMeasurement = requireShape(name, v, {QStringLiteral("I C"), QStringLiteral("M C")}) == 1;
    if (v.lengths[1] != 3)
        throw Failure{QStringLiteral("variable %1 has %2 coordinates, expected 3").arg(QLatin1String(name)).arg(v.lengths[1])};
    SofaDirectivityFile::Vector value{};
    readDoubles(ncid, name, v, {perMeasurement ? measurement : 0, 0}, {1, 3}, value.data());
    return toCartesian(value, spherical);
}

void readFile(const QString &path, int measurement, SofaDirectivityFile &sofa)
{
    NcFile file;
    const int status = nc_open(QFile::encodeName(path).constData(), NC_NOWRITE, &file.id);
    if (status != NC_NOERR) {
        file.id = -1;
        throw Failure{QStringLiteral("cannot open %1 as netCDF: %2").arg(path, QString::fromUtf8(nc_strerror(status)))};
    }
    const int nc = file.id;

    const std::optional<QString> conventions = textAttribute(nc, NC_GLOBAL, "SOFAConventions");
    if (!conventions)
        throw Failure{QStringLiteral("missing global attribute SOFAConventions: not a SOFA file")};
    sofa.conventions = *conventions;
    sofa.conventionsVersion = textAttribute(nc, NC_GLOBAL, "SOFAConventionsVersion").value_or(QString());
    if (sofa.conventions == QLatin1String("FreeFieldDirectivityTF")) {
        if (sofa.conventionsVersion != QLatin1String("1.0") && sofa.conventionsVersion != QLatin1String("1.1"))
            throw Failure{QStringLiteral("SOFAConventionsVersion \"%1\" of FreeFieldDirectivityTF is not supported (1.0 or 1.1)")
                              .arg(sofa.conventionsVersion)};
    } else if (sofa.conventions != QLatin1String("GeneralTF")) {
        throw Failure{QStringLiteral("SOFAConventions is \"%1\", expected FreeFieldDirectivityTF or GeneralTF").arg(sofa.conventions)};
    }
    const std::optional<QString> dataType = textAttribute(nc, NC_GLOBAL, "DataType");
    if (dataType && *dataType != QLatin1String("TF"))
        throw Failure{QStringLiteral("DataType is \"%1\", expected TF").arg(*dataType)};

    const size_t m = dimensionLength(nc, "M", true);
    const size_t r = dimensionLength(nc, "R", true);
    const size_t n = dimensionLength(nc, "N", true);
    sofa.measurementCount = int(std::min<size_t>(m, INT_MAX));
    if (measurement < 0 || size_t(measurement) >= m)
        throw Failure{QStringLiteral("measurement %1 does not exist: the file holds %2 (M)").arg(measurement + 1).arg(m)};
    if (r == 0 || n == 0)
        throw Failure{QStringLiteral("the file holds no receivers (R) or no frequencies (N)")};
    if (r > MaxValues / n)
        throw Failure{QStringLiteral("the file holds %1 receivers x %2 frequencies, too many to convert").arg(r).arg(n)};

    const Variable real = variable(nc, "Data.Real");
    const Variable imag = variable(nc, "Data.Imag");
    requireShape("Data.Real", real, {QStringLiteral("M R N")});
    requireShape("Data.Imag", imag, {QStringLiteral("M R N")});
    const Variable frequencies = variable(nc, "N");
    requireShape("N", frequencies, {QStringLiteral("N")});
    const Variable receivers = variable(nc, "ReceiverPosition");
    const bool receiversPerMeasurement =
        requireShape("ReceiverPosition", receivers, {QStringLiteral("R C I"), QStringLiteral("R C M")}) == 1;
    if (receivers.lengths[1] != 3)
        throw Failure{QStringLiteral("variable ReceiverPosition has %1 coordinates, expected 3").arg(receivers.lengths[1])};

    std::vector<double> buffer(r * n);
    std::vector<double> imagBuffer(r * n);
    readDoubles(nc, "Data.Real", real, {size_t(measurement), 0, 0}, {1, r, n}, buffer.data());
    readDoubles(nc, "Data.Imag", imag, {size_t(measurement), 0, 0}, {1, r, n}, imagBuffer.data());
    sofa.values.resize(r * n);
    for (size_t i = 0; i < r * n; ++i) {
        if (!std::isfinite(buffer[i]) || !std::isfinite(imagBuffer[i]))
            throw Failure{QStringLiteral("Data.Real or Data.Imag holds a value that is not finite (receiver %1, frequency index %2)")
                              .arg(i / n + 1).arg(i % n + 1)};
        sofa.values[i] = {buffer[i], imagBuffer[i]};
    }

    std::vector<double> hz(n);
    readDoubles(nc, "N", frequencies, {0}, {n}, hz.data());
    sofa.frequencies = QList<double>(hz.begin(), hz.end());

    const bool spherical = isSpherical(nc, "ReceiverPosition", receivers.id);
    std::vector<double> positions(r * 3);
    readDoubles(nc, "ReceiverPosition", receivers, {0, 0, receiversPerMeasurement ? size_t(measurement) : 0}, {r, 3, 1},
                positions.data());
    sofa.receivers.resize(r);
    for (size_t i = 0; i < r; ++i)
        sofa.receivers[i] = toCartesian({positions[3 * i], positions[3 * i + 1], positions[3 * i + 2]}, spherical);

    int viewId = -1;
    if (nc_inq_varid(nc, "SourceView", &viewId) != NC_NOERR)
        throw Failure{QStringLiteral("missing variable SourceView")};
    const bool viewSpherical = isSpherical(nc, "SourceView", viewId);
    sofa.view = orientation(nc, "SourceView", size_t(measurement), viewSpherical);
    sofa.up = orientation(nc, "SourceUp", size_t(measurement), viewSpherical);
}

} // namespace

std::optional<SofaDirectivityFile> SofaDirectivityFile::Read(const QString &path, int measurement, QString *error)
{
    SofaDirectivityFile sofa;
    try {
        readFile(path, measurement, sofa);
    } catch (const Failure &failure) {
        *error = failure.message;
        return std::nullopt;
    }
    return sofa;
}

#endif
