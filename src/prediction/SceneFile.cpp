// SPDX-License-Identifier: MIT
#include "SceneFile.h"

#include "AirAbsorption.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <stdexcept>

namespace {

[[noreturn]] void fail(const QString &message)
{
    throw std::invalid_argument(message.toStdString());
}

QString shown(const QJsonValue &value)
{
    if (value.isString())
        return QLatin1Char('"') + value.toString() + QLatin1Char('"');
    if (value.isArray())
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    if (value.isObject())
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).mid(1).chopped(1);
}

void onlyKeys(const QJsonObject &object, const QString &where, const QStringList &known)
{
    for (auto it = object.begin(); it != object.end(); ++it) {
        if (!known.contains(it.key()))
            fail(QStringLiteral("%1: unknown key \"%2\" (known: %3)").arg(where, it.key(), known.join(QStringLiteral(", "))));
    }
}

double number(const QJsonObject &object, const QString &where, const QString &key, double fallback, double low = -1e300, double high = 1e300)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return fallback;
    if (!value.isDouble() || !std::isfinite(value.toDouble()) || value.toDouble() < low || value.toDouble() > high)
        fail(QStringLiteral("%1.%2: %3 is not a number in [%4, %5]").arg(where, key, shown(value)).arg(low).arg(high));
    return value.toDouble();
}

std::array<double, 3> vector3(const QJsonObject &object, const QString &where, const QString &key, bool required = true)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() && !required)
        return {};
    const QJsonArray array = value.toArray();
    if (array.size() != 3 || !array.at(0).isDouble() || !array.at(1).isDouble() || !array.at(2).isDouble())
        fail(QStringLiteral("%1.%2: %3 is not [x, y, z] in metres").arg(where, key, shown(value)));
    return {array.at(0).toDouble(), array.at(1).toDouble(), array.at(2).toDouble()};
}

QString text(const QJsonObject &object, const QString &where, const QString &key, const QString &fallback = QString())
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() && !fallback.isNull())
        return fallback;
    if (!value.isString() || value.toString().isEmpty())
        fail(QStringLiteral("%1.%2: %3 is not a name").arg(where, key, shown(value)));
    return value.toString();
}

PredictionSource readSource(const QJsonObject &object, const QString &where)
{
    onlyKeys(object, where, {QStringLiteral("loudspeaker"), QStringLiteral("position"), QStringLiteral("yaw_deg"), QStringLiteral("pitch_deg"),
                             QStringLiteral("roll_deg"), QStringLiteral("mounting"), QStringLiteral("setup"), QStringLiteral("switches"),
                             QStringLiteral("gain_db"), QStringLiteral("delay_ms"), QStringLiteral("polarity")});
    PredictionSource source;
    source.loudspeaker = text(object, where, QStringLiteral("loudspeaker"));
    source.position = vector3(object, where, QStringLiteral("position"));
    source.yawDeg = number(object, where, QStringLiteral("yaw_deg"), 0.0, -360.0, 360.0);
    source.pitchDeg = number(object, where, QStringLiteral("pitch_deg"), 0.0, -90.0, 90.0);
    source.rollDeg = number(object, where, QStringLiteral("roll_deg"), 0.0, -360.0, 360.0);
    source.mounting = text(object, where, QStringLiteral("mounting"), QStringLiteral("flown"));
    const QJsonValue setup = object.value(QStringLiteral("setup"));
    if (!setup.isUndefined()) {
        bool ok = setup.isDouble() && setup.toDouble() == std::floor(setup.toDouble());
        int key = setup.toInt();
        if (setup.isString())
            key = setup.toString().toInt(&ok);
        if (!ok)
            fail(QStringLiteral("%1.setup: %2 is not a setup key").arg(where, shown(setup)));
        source.setup = key;
    }
    const QJsonObject switches = object.value(QStringLiteral("switches")).toObject();
    for (auto it = switches.begin(); it != switches.end(); ++it) {
        bool ok = false;
        const int number = it.key().toInt(&ok);
        if (!ok || !it.value().isDouble() || it.value().toDouble() != std::floor(it.value().toDouble()))
            fail(QStringLiteral("%1.switches: \"%2\": %3 is not a switch number and a whole value").arg(where, it.key(), shown(it.value())));
        source.switches.insert(number, it.value().toInt());
    }
    source.gainDb = number(object, where, QStringLiteral("gain_db"), 0.0, -200.0, 200.0);
    source.delayMs = number(object, where, QStringLiteral("delay_ms"), 0.0, -1e6, 1e6);
    const double polarity = number(object, where, QStringLiteral("polarity"), 1.0);
    if (polarity != 1.0 && polarity != -1.0)
        fail(QStringLiteral("%1.polarity: %2 is neither 1 nor -1").arg(where).arg(polarity));
    source.polarity = int(polarity);
    return source;
}

PredictionArray readArray(const QJsonObject &object, const QString &where)
{
    onlyKeys(object, where, {QStringLiteral("rigging"), QStringLiteral("loudspeaker"), QStringLiteral("count"), QStringLiteral("position"),
                             QStringLiteral("yaw_deg"), QStringLiteral("top_pitch_deg"), QStringLiteral("splay_deg"), QStringLiteral("gain_db"),
                             QStringLiteral("delay_ms")});
    PredictionArray array;
    array.rigging = text(object, where, QStringLiteral("rigging"));
    array.loudspeaker = text(object, where, QStringLiteral("loudspeaker"));
    array.count = int(number(object, where, QStringLiteral("count"), -1.0, 1.0, 256.0));
    if (array.count < 1 || array.count != number(object, where, QStringLiteral("count"), -1.0))
        fail(QStringLiteral("%1.count: %2 is not a whole number from 1 to 256").arg(where, shown(object.value(QStringLiteral("count")))));
    array.position = vector3(object, where, QStringLiteral("position"));
    array.yawDeg = number(object, where, QStringLiteral("yaw_deg"), 0.0, -360.0, 360.0);
    array.topPitchDeg = number(object, where, QStringLiteral("top_pitch_deg"), 0.0, -90.0, 90.0);
    const QJsonValue splays = object.value(QStringLiteral("splay_deg"));
    for (const QJsonValue &splay : splays.toArray()) {
        if (!splay.isDouble())
            fail(QStringLiteral("%1.splay_deg: %2 is not a number").arg(where, shown(splay)));
        array.splayDeg.append(splay.toDouble());
    }
    if (array.splayDeg.size() != array.count - 1)
        fail(QStringLiteral("%1.splay_deg: %2 holds %3 angles; %4 cabinets need %5").arg(where, shown(splays)).arg(array.splayDeg.size()).arg(array.count).arg(array.count - 1));
    array.gainDb = number(object, where, QStringLiteral("gain_db"), 0.0, -200.0, 200.0);
    array.delayMs = number(object, where, QStringLiteral("delay_ms"), 0.0, -1e6, 1e6);
    return array;
}

void readReceivers(const QJsonObject &object, PredictionScene &scene)
{
    const QString where = QStringLiteral("receivers");
    onlyKeys(object, where, {QStringLiteral("plane"), QStringLiteral("points")});
    if (object.contains(QStringLiteral("plane")) == object.contains(QStringLiteral("points")))
        fail(QStringLiteral("receivers: give either \"plane\" or \"points\""));
    if (object.contains(QStringLiteral("points"))) {
        const QJsonArray points = object.value(QStringLiteral("points")).toArray();
        for (qsizetype i = 0; i < points.size(); ++i)
            scene.receivers.push_back(vector3(QJsonObject{{QStringLiteral("point"), points.at(i)}}, QStringLiteral("receivers.points[%1]").arg(i), QStringLiteral("point")));
        if (scene.receivers.empty())
            fail(QStringLiteral("receivers.points: no points"));
        return;
    }
    const QJsonObject plane = object.value(QStringLiteral("plane")).toObject();
    const QString at = QStringLiteral("receivers.plane");
    onlyKeys(plane, at, {QStringLiteral("origin"), QStringLiteral("u"), QStringLiteral("v"), QStringLiteral("nu"), QStringLiteral("nv")});
    const auto origin = vector3(plane, at, QStringLiteral("origin"));
    const auto u = vector3(plane, at, QStringLiteral("u"));
    const auto v = vector3(plane, at, QStringLiteral("v"));
    const int nu = int(number(plane, at, QStringLiteral("nu"), 0.0, 1.0, 10000.0));
    const int nv = int(number(plane, at, QStringLiteral("nv"), 0.0, 1.0, 10000.0));
    if (nu < 1 || nv < 1)
        fail(QStringLiteral("receivers.plane: nu and nv must be given, from 1 to 10000"));
    scene.planeColumns = nu;
    scene.receivers.reserve(size_t(nu) * size_t(nv));
    for (int j = 0; j < nv; ++j) {
        for (int i = 0; i < nu; ++i)
            scene.receivers.push_back({origin[0] + i * u[0] + j * v[0], origin[1] + i * u[1] + j * v[1], origin[2] + i * u[2] + j * v[2]});
    }
}

QList<int> readBands(const QJsonValue &value)
{
    QList<int> bands;
    if (value.isUndefined() || value == QJsonValue(QStringLiteral("third-octave"))) {
        for (int k = -104; k <= 96; k += 8) // 50 Hz ... 16 kHz, 1 kHz at k = 0
            bands.append(k + 140);
    } else if (value == QJsonValue(QStringLiteral("octave"))) {
        for (int k = -96; k <= 96; k += 24) // 63 Hz ... 16 kHz
            bands.append(k + 140);
    } else if (value.isArray() && !value.toArray().isEmpty()) {
        for (const QJsonValue &frequency : value.toArray()) {
            if (!frequency.isDouble() || !(frequency.toDouble() > 0.0))
                fail(QStringLiteral("bands: %1 is not a frequency in Hz").arg(shown(frequency)));
            bands.append(SceneFile::NearestGridIndex(frequency.toDouble()));
        }
    } else {
        fail(QStringLiteral("bands: %1 is not \"third-octave\", \"octave\" or a list of frequencies in Hz").arg(shown(value)));
    }
    return bands;
}

} // namespace

int SceneFile::NearestGridIndex(double frequency)
{
    return int(std::clamp(std::lround(24.0 * std::log2(frequency / 1000.0)), -140L, 108L)) + 140;
}

PredictionScene SceneFile::Read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        fail(QStringLiteral("cannot read %1: %2").arg(fileName, file.errorString()));
    return Parse(file.readAll());
}

PredictionScene SceneFile::Parse(const QByteArray &json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        const QByteArray before = json.left(error.offset);
        const qsizetype line = before.count('\n') + 1;
        const qsizetype column = error.offset - (before.lastIndexOf('\n') + 1) + 1;
        fail(QStringLiteral("line %1, column %2: %3").arg(line).arg(column).arg(error.errorString()));
    }
    if (!document.isObject())
        fail(QStringLiteral("the scene is not a JSON object"));
    const QJsonObject root = document.object();
    const QString where = QStringLiteral("scene");
    onlyKeys(root, where, {QStringLiteral("speed_of_sound_m_s"), QStringLiteral("air"), QStringLiteral("bands"), QStringLiteral("sources"),
                           QStringLiteral("arrays"), QStringLiteral("receivers")});
    PredictionScene scene;
    if (root.contains(QStringLiteral("air"))) {
        const QJsonObject air = root.value(QStringLiteral("air")).toObject();
        onlyKeys(air, QStringLiteral("air"), {QStringLiteral("temperature_c"), QStringLiteral("relative_humidity_percent"), QStringLiteral("pressure_kpa")});
        scene.hasAir = true;
        scene.temperatureC = number(air, QStringLiteral("air"), QStringLiteral("temperature_c"), 20.0, -20.0, 50.0);
        scene.relativeHumidityPercent = number(air, QStringLiteral("air"), QStringLiteral("relative_humidity_percent"), 50.0, 0.0, 100.0);
        scene.pressureKpa = number(air, QStringLiteral("air"), QStringLiteral("pressure_kpa"), 101.325, 50.0, 120.0);
    }
    scene.speedOfSound = number(root, where, QStringLiteral("speed_of_sound_m_s"), scene.hasAir ? AirAbsorption::SpeedOfSound(scene.temperatureC) : 343.0, 100.0, 2000.0);
    scene.bandIndexes = readBands(root.value(QStringLiteral("bands")));
    const QJsonArray sources = root.value(QStringLiteral("sources")).toArray();
    for (qsizetype i = 0; i < sources.size(); ++i)
        scene.sources.append(readSource(sources.at(i).toObject(), QStringLiteral("sources[%1]").arg(i)));
    const QJsonArray arrays = root.value(QStringLiteral("arrays")).toArray();
    for (qsizetype i = 0; i < arrays.size(); ++i)
        scene.arrays.append(readArray(arrays.at(i).toObject(), QStringLiteral("arrays[%1]").arg(i)));
    if (scene.sources.isEmpty() && scene.arrays.isEmpty())
        fail(QStringLiteral("scene: no \"sources\" and no \"arrays\""));
    if (!root.value(QStringLiteral("receivers")).isObject())
        fail(QStringLiteral("scene: \"receivers\" is missing or not an object"));
    readReceivers(root.value(QStringLiteral("receivers")).toObject(), scene);
    return scene;
}
