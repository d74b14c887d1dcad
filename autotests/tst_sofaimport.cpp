// SPDX-License-Identifier: MIT
#include "DirectivityGrid.h"
#include "SofaDirectivityFile.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <netcdf.h>

#include <algorithm>
#include <cmath>
#include <functional>

using Vector = DirectivityGrid::Vector;
using Value = std::complex<double>;

namespace {

constexpr double Degree = 3.141592653589793 / 180.0;

// What a test file holds. Receivers are listed in the file's own coordinates (ReceiverType).
struct SofaContent {
    QByteArray conventions = "FreeFieldDirectivityTF";
    QByteArray version = "1.1";
    QByteArray receiverType = "spherical";
    QByteArray dataRealDims = "M R N";
    bool withImag = true;
    bool withUp = true;
    int measurements = 1;
    Vector view{1, 0, 0};
    Vector up{0, 0, 1};
    QList<double> frequencies{100.0, 1000.0};
    std::vector<Vector> receivers;
    std::vector<Value> values; // per measurement: receiver-major
};

// A direction given in balloon angles, in the frame of view/up (left = up x view).
Vector direction(double theta, double phi, const Vector &view, const Vector &up)
{
    const Vector left{up[1] * view[2] - up[2] * view[1], up[2] * view[0] - up[0] * view[2], up[0] * view[1] - up[1] * view[0]};
    const double a = std::cos(theta * Degree), b = std::sin(theta * Degree) * std::sin(phi * Degree),
                 c = std::sin(theta * Degree) * std::cos(phi * Degree);
    return {a * view[0] + b * left[0] + c * up[0], a * view[1] + b * left[1] + c * up[1], a * view[2] + b * left[2] + c * up[2]};
}

// A pattern that tells every grid point and frequency apart; on axis it is the same for every phi.
Value pattern(double theta, double phi, double frequency, int measurement)
{
    const double p = theta == 0.0 || theta == 180.0 ? 0.0 : phi;
    return {1.0 + theta / 10.0 + measurement, p / 100.0 + frequency / 1000.0};
}

// The grid of 45 x 90 degrees, each pole once, as (theta, phi) pairs.
QList<std::array<double, 2>> gridDirections()
{
    QList<std::array<double, 2>> directions{{0.0, 0.0}};
    for (double theta : {45.0, 90.0, 135.0})
        for (double phi : {0.0, 90.0, 180.0, 270.0})
            directions.append({theta, phi});
    directions.append({180.0, 0.0});
    return directions;
}

// Fills receivers and values with the pattern at the given directions, scaled to radius 2.
SofaContent patternFile(const QList<std::array<double, 2>> &directions, bool cartesian, const Vector &view = {1, 0, 0},
                        const Vector &up = {0, 0, 1}, int measurements = 1)
{
    SofaContent content;
    content.view = view;
    content.up = up;
    content.measurements = measurements;
    content.receiverType = cartesian ? "cartesian" : "spherical";
    for (const auto &[theta, phi] : directions) {
        const Vector d = direction(theta, phi, view, up);
        if (cartesian)
            content.receivers.push_back({2 * d[0], 2 * d[1], 2 * d[2]});
        else
            content.receivers.push_back({std::atan2(d[1], d[0]) / Degree, std::asin(std::clamp(d[2], -1.0, 1.0)) / Degree, 2.0});
    }
    for (int m = 0; m < measurements; ++m)
        for (const auto &[theta, phi] : directions)
            for (double f : content.frequencies)
                content.values.push_back(pattern(theta, phi, f, m));
    return content;
}

void writeText(int nc, int var, const char *name, const QByteArray &text)
{
    nc_put_att_text(nc, var, name, size_t(text.size()), text.constData());
}

// Writes content as a netCDF-4 file through the same library the reader uses.
void writeSofa(const QString &path, const SofaContent &c)
{
    int nc = -1;
    QCOMPARE(nc_create(QFile::encodeName(path).constData(), NC_NETCDF4 | NC_CLOBBER, &nc), NC_NOERR);
    writeText(nc, NC_GLOBAL, "Conventions", "SOFA");
    writeText(nc, NC_GLOBAL, "SOFAConventions", c.conventions);
    writeText(nc, NC_GLOBAL, "SOFAConventionsVersion", c.version);
    writeText(nc, NC_GLOBAL, "DataType", "TF");
    const size_t r = c.receivers.size(), n = size_t(c.frequencies.size());
    QMap<char, int> dim;
    for (auto [name, length] : {std::pair{'I', size_t(1)}, {'C', size_t(3)}, {'M', size_t(c.measurements)}, {'R', r}, {'N', n}})
        nc_def_dim(nc, QByteArray(1, name).constData(), length, &dim[name]);
    const auto define = [&](const char *name, const QByteArray &dims) {
        int ids[3], var = -1;
        for (int i = 0; i < dims.size(); i += 2)
            ids[i / 2] = dim[dims.at(i)];
        nc_def_var(nc, name, NC_DOUBLE, int(dims.size() + 1) / 2, ids, &var);
        return var;
    };
    const int real = define("Data.Real", c.dataRealDims);
    const int imag = c.withImag ? define("Data.Imag", "M R N") : -1;
    const int frequencies = define("N", "N");
    const int receivers = define("ReceiverPosition", "R C I");
    writeText(nc, receivers, "Type", c.receiverType);
    const int view = define("SourceView", "I C");
    writeText(nc, view, "Type", "cartesian");
    const int up = c.withUp ? define("SourceUp", "I C") : -1;
    nc_enddef(nc);

    std::vector<double> re, im;
    for (const Value &v : c.values) {
        re.push_back(v.real());
        im.push_back(v.imag());
    }
    nc_put_var_double(nc, real, re.data());
    if (c.withImag)
        nc_put_var_double(nc, imag, im.data());
    nc_put_var_double(nc, frequencies, c.frequencies.constData());
    std::vector<double> positions;
    for (const Vector &p : c.receivers)
        positions.insert(positions.end(), p.begin(), p.end());
    nc_put_var_double(nc, receivers, positions.data());
    nc_put_var_double(nc, view, c.view.data());
    if (c.withUp)
        nc_put_var_double(nc, up, c.up.data());
    QCOMPARE(nc_close(nc), NC_NOERR);
}

} // namespace

class tst_SofaImport : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    std::optional<DirectivityGrid> readGrid(const SofaContent &content, int measurement, QString *error)
    {
        const QString path = m_dir.filePath(QStringLiteral("test.sofa"));
        writeSofa(path, content);
        const std::optional<SofaDirectivityFile> sofa = SofaDirectivityFile::Read(path, measurement, error);
        if (!sofa)
            return std::nullopt;
        return DirectivityGrid::FromReceivers(sofa->receivers, sofa->view, sofa->up, sofa->values, sofa->frequencies, error);
    }

private Q_SLOTS:
    void gridHoldsEveryDirection_data()
    {
        QTest::addColumn<bool>("cartesian");
        QTest::addColumn<Vector>("view");
        QTest::addColumn<Vector>("up");
        QTest::addColumn<bool>("shuffled");
        QTest::addColumn<int>("measurement");
        QTest::newRow("spherical, default orientation") << false << Vector{1, 0, 0} << Vector{0, 0, 1} << false << 0;
        QTest::newRow("cartesian, shuffled") << true << Vector{1, 0, 0} << Vector{0, 0, 1} << true << 0;
        QTest::newRow("looking along y, up along x") << true << Vector{0, 1, 0} << Vector{1, 0, 0} << true << 0;
        QTest::newRow("slanted up, unnormalised view") << false << Vector{0, 0, -3} << Vector{1, 1, 0} << false << 0;
        QTest::newRow("second measurement") << false << Vector{1, 0, 0} << Vector{0, 0, 1} << false << 1;
    }
    void gridHoldsEveryDirection()
    {
        QFETCH(bool, cartesian);
        QFETCH(Vector, view);
        QFETCH(Vector, up);
        QFETCH(bool, shuffled);
        QFETCH(int, measurement);
        QList<std::array<double, 2>> directions = gridDirections();
        if (shuffled)
            std::reverse(directions.begin(), directions.end());
        // The file holds the pattern in the source's own frame; the grid must undo the orientation.
        const double norm = std::sqrt(view[0] * view[0] + view[1] * view[1] + view[2] * view[2]);
        const Vector unitView{view[0] / norm, view[1] / norm, view[2] / norm};
        const double along = up[0] * unitView[0] + up[1] * unitView[1] + up[2] * unitView[2];
        Vector unitUp{up[0] - along * unitView[0], up[1] - along * unitView[1], up[2] - along * unitView[2]};
        const double upNorm = std::sqrt(unitUp[0] * unitUp[0] + unitUp[1] * unitUp[1] + unitUp[2] * unitUp[2]);
        unitUp = {unitUp[0] / upNorm, unitUp[1] / upNorm, unitUp[2] / upNorm};
        SofaContent content = patternFile(directions, cartesian, unitView, unitUp, 2);
        content.view = view;
        content.up = up;

        QString error;
        const std::optional<DirectivityGrid> grid = readGrid(content, measurement, &error);
        QVERIFY2(grid, qPrintable(error));
        QCOMPARE(grid->thetaStep, 45.0);
        QCOMPARE(grid->phiStep, 90.0);
        QCOMPARE(grid->rows, 5);
        QCOMPARE(grid->columns, 4);
        for (int f = 0; f < 2; ++f)
            for (int t = 0; t < grid->rows; ++t)
                for (int p = 0; p < grid->columns; ++p) {
                    const Value expected = pattern(t * 45.0, p * 90.0, grid->frequencies[f], measurement);
                    QVERIFY2(std::abs(grid->Value(f, t, p) - expected) < 1e-12,
                             qPrintable(QStringLiteral("f %1 theta %2 phi %3").arg(f).arg(t * 45).arg(p * 90)));
                }
    }

    void sameFileWhateverTheReceiverLayout()
    {
        // Spherical in grid order, cartesian reversed at another radius, and a source looking along y:
        // the same directions in the source's frame must give the same balloon file, seam column included.
        QList<std::array<double, 2>> reversed = gridDirections();
        std::reverse(reversed.begin(), reversed.end());
        SofaContent cartesian = patternFile(reversed, true);
        for (Vector &receiver : cartesian.receivers)
            receiver = {receiver[0] * 0.25, receiver[1] * 0.25, receiver[2] * 0.25};
        QByteArray first;
        for (const SofaContent &content : {patternFile(gridDirections(), false), cartesian,
                                           patternFile(reversed, true, Vector{0, 1, 0}, Vector{-1, 0, 0})}) {
            QString error;
            const std::optional<DirectivityGrid> grid = readGrid(content, 0, &error);
            QVERIFY2(grid, qPrintable(error));
            const std::optional<BalloonFileWriter::Data> data = grid->ToBalloon(Tolvane::NoSymmetry, true, &error);
            QVERIFY2(data, qPrintable(error));
            QCOMPARE(data->nv, 5);
            for (int t = 0; t < data->nh; ++t)
                QCOMPARE(data->magnitudes[(data->nh + t) * 5 + 4], data->magnitudes[(data->nh + t) * 5]);
            const QByteArray bytes = BalloonFileWriter().toByteArray(*data);
            QVERIFY(!bytes.isEmpty());
            if (first.isEmpty())
                first = bytes;
            QCOMPARE(bytes, first);
        }
    }

    void refusesMalformedFiles_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("message");
        QTest::newRow("impulse responses") << "conventions" << "SOFAConventions is \"SimpleFreeFieldHRIR\", expected FreeFieldDirectivityTF or GeneralTF";
        QTest::newRow("future version") << "version" << "SOFAConventionsVersion \"2.0\" of FreeFieldDirectivityTF is not supported (1.0 or 1.1)";
        QTest::newRow("no imaginary part") << "imag" << "missing variable Data.Imag";
        QTest::newRow("no up") << "up" << "missing variable SourceUp";
        QTest::newRow("dimensions swapped") << "dims" << "variable Data.Real has dimensions [M N R], expected [M R N]";
        QTest::newRow("unknown coordinates") << "type" << "variable ReceiverPosition has coordinate Type \"spherical harmonics\", expected cartesian or spherical";
        QTest::newRow("measurement past the end") << "measurement" << "measurement 2 does not exist: the file holds 1 (M)";
        QTest::newRow("receiver off the grid") << "offgrid" << "receiver 3 at theta 50, phi 90 is off the 45 x 90 degree theta/phi grid";
        QTest::newRow("receiver missing") << "missing" << "no receiver at theta 90, phi 180: the receivers do not fill a regular 45 x 90 degree theta/phi grid";
        QTest::newRow("receiver twice") << "twice" << "receivers 2 and 15 both lie at theta 45, phi 0";
        QTest::newRow("up along the view") << "parallel" << "the up direction (SourceUp) is zero or parallel to the view direction (SourceView)";
    }
    void refusesMalformedFiles()
    {
        QFETCH(QString, fault);
        QFETCH(QString, message);
        QList<std::array<double, 2>> directions = gridDirections();
        if (fault == QLatin1String("offgrid"))
            directions[2][0] = 50.0;
        if (fault == QLatin1String("missing"))
            directions.removeAt(7);
        if (fault == QLatin1String("twice"))
            directions.append(directions[1]);
        SofaContent content = patternFile(directions, false);
        if (fault == QLatin1String("conventions"))
            content.conventions = "SimpleFreeFieldHRIR";
        if (fault == QLatin1String("version"))
            content.version = "2.0";
        content.withImag = fault != QLatin1String("imag");
        content.withUp = fault != QLatin1String("up");
        if (fault == QLatin1String("dims"))
            content.dataRealDims = "M N R";
        if (fault == QLatin1String("type"))
            content.receiverType = "spherical harmonics";
        if (fault == QLatin1String("parallel"))
            content.up = {-2, 0, 0};
        QString error;
        QVERIFY(!readGrid(content, fault == QLatin1String("measurement") ? 1 : 0, &error));
        QCOMPARE(error, message);
    }

    void balloonPackCommand_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<bool>("sofaContent");
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("expected"); // in stderr on failure, else the grid's nv in the JSON report
        QTest::newRow("SOFA by content under another name") << "measured.dat" << true << QStringList{} << 0 << "5";
        QTest::newRow("asymmetric data refused as half") << "a.sofa" << true << QStringList{QStringLiteral("--symmetry"), QStringLiteral("half")} << 1
                                                        << "(1000 Hz, theta 45, phi 270 against phi 90), more than --symmetry-tolerance 1 dB; --force packs it anyway";
        QTest::newRow("forced half") << "a.sofa" << true << QStringList{QStringLiteral("--symmetry"), QStringLiteral("half"), QStringLiteral("--force")} << 0 << "3";
        QTest::newRow("looser tolerance") << "a.sofa" << true << QStringList{QStringLiteral("--symmetry"), QStringLiteral("quarter"), QStringLiteral("--symmetry-tolerance"), QStringLiteral("20")} << 0 << "2";
        QTest::newRow("named .sofa, not netCDF") << "b.sofa" << false << QStringList{} << 1 << "b.sofa as netCDF";
    }
    void balloonPackCommand()
    {
        QFETCH(QString, fileName);
        QFETCH(bool, sofaContent);
        QFETCH(QStringList, options);
        QFETCH(int, status);
        QFETCH(QString, expected);
        const QString input = m_dir.filePath(fileName);
        if (sofaContent) {
            writeSofa(input, patternFile(gridDirections(), true));
        } else {
            QFile csv(input);
            QVERIFY(csv.open(QIODevice::WriteOnly));
            csv.write("frequency_hz,theta_deg,phi_deg,magnitude_db,phase_deg\n");
        }
        QProcess lpsdk;
        lpsdk.start(QStringLiteral(LPSDK_EXECUTABLE),
                    QStringList{QStringLiteral("balloon-pack"), input, QStringLiteral("-o"), m_dir.filePath(QStringLiteral("out.bin")), QStringLiteral("--json")} + options);
        QVERIFY(lpsdk.waitForFinished(60000));
        const QByteArray err = lpsdk.readAllStandardError();
        QVERIFY2(lpsdk.exitCode() == status, err.constData());
        if (status != 0) {
            QVERIFY2(err.contains(expected.toUtf8()), err.constData());
            return;
        }
        const QJsonObject report = QJsonDocument::fromJson(lpsdk.readAllStandardOutput()).object();
        QCOMPARE(report.value(QStringLiteral("input_kind")).toString(), QStringLiteral("sofa"));
        const QJsonObject grid = report.value(QStringLiteral("grid")).toObject();
        QCOMPARE(grid.value(QStringLiteral("conventions")).toString(), QStringLiteral("FreeFieldDirectivityTF 1.1"));
        QCOMPARE(grid.value(QStringLiteral("receivers")).toInt(), 14);
        QCOMPARE(QString::number(grid.value(QStringLiteral("nv")).toInt()), expected);
    }

    void symmetryCheckFindsTheWorstMirror()
    {
        QString error;
        std::optional<DirectivityGrid> grid = readGrid(patternFile(gridDirections(), false), 0, &error);
        QVERIFY2(grid, qPrintable(error));
        // Make the pattern left/right symmetric, then break it by 6.02 dB at one direction.
        for (int f = 0; f < 2; ++f)
            for (int t = 0; t < grid->rows; ++t)
                grid->values[(size_t(f) * grid->rows + t) * grid->columns + 3] = grid->Value(f, t, 1);
        grid->values[(size_t(1) * grid->rows + 2) * grid->columns + 3] *= 2.0;
        const auto half = grid->CheckSymmetry(1);
        QVERIFY(half);
        QCOMPARE(qRound(half->levelDb * 100), 602);
        QCOMPARE(half->frequency, 1000.0);
        QCOMPARE(half->theta, 90.0);
        QCOMPARE(half->phi, 270.0);
        QCOMPARE(half->mirrorPhi, 90.0);
        QCOMPARE(grid->CheckSymmetry(0)->levelDb, 0.0);
    }
};

QTEST_GUILESS_MAIN(tst_SofaImport)
#include "tst_sofaimport.moc"
