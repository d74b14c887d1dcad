// SPDX-License-Identifier: MIT
#include "JsonFileLoader.h"

#include "Warning.h"

#include <QBuffer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QTextStream>

QString StripJsonLineComment(const QString &line)
{
    // Scanning from the end finds the right-most "//" outside quotes; the bound keeps a
    // "//" that forms the last two characters, which existing files rely on breaking.
    bool insideString = false;
    const qsizetype length = line.size();
    for (qsizetype i = length - 1; i >= 0; --i) {
        if (line.at(i) == QLatin1Char('"'))
            insideString = !insideString;
        if (!insideString && i < length - 2 && line.at(i) == QLatin1Char('/') && line.at(i + 1) == QLatin1Char('/'))
            return line.left(i);
    }
    return line;
}

namespace {
// Reads an open text-mode device; `sourceName` only labels the warnings.
QVariantMap parseJson(QIODevice &device, const QString &sourceName)
{
    QByteArray buffer;
    buffer.reserve(device.size());
    QTextStream stream(&device);
    QString line;
    while (stream.readLineInto(&line))
        buffer += StripJsonLineComment(line).toUtf8();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(buffer, &error);
    if (error.error != QJsonParseError::NoError) {
        lpsdkWarning("JSON parse error in file:", sourceName);
        lpsdkWarning("Error:", error.errorString());
        return {};
    }
    return document.toVariant().toMap();
}
} // namespace

QVariantMap LoadJsonFile(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        lpsdkWarning("Json file not found: ", filePath);
        lpsdkWarning("File error code: ", QString::number(file.error()));
        return {};
    }
    return parseJson(file, filePath);
}

QVariantMap LoadJsonData(const QByteArray &data, const QString &sourceName)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return parseJson(buffer, sourceName);
}
