// SPDX-License-Identifier: MIT
#include "JsonFileLoader.h"

#include "Warning.h"

#include <QBuffer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonParseError>
#include <QTextStream>

#include <algorithm>

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
// Reads an open text-mode device. The parser sees the lines joined without separators, so
// the start of each line in that buffer is kept to turn an error offset into line and column.
JsonReadResult parseJson(QIODevice &device)
{
    QByteArray buffer;
    buffer.reserve(device.size());
    QList<qsizetype> lineStarts;
    QTextStream stream(&device);
    QString line;
    while (stream.readLineInto(&line)) {
        lineStarts.append(buffer.size());
        buffer += StripJsonLineComment(line).toUtf8();
    }

    JsonReadResult result;
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(buffer, &error);
    if (error.error != QJsonParseError::NoError) {
        result.error = error.errorString();
        // The parser stops one past the character it refused, except for trailing garbage.
        const int past = error.error == QJsonParseError::GarbageAtEnd ? 0 : 1;
        const qsizetype offset = qBound(qsizetype(0), qsizetype(error.offset) - past, buffer.size());
        const auto next = std::upper_bound(lineStarts.cbegin(), lineStarts.cend(), offset);
        const qsizetype index = qMax(qsizetype(0), qsizetype(next - lineStarts.cbegin()) - 1);
        const qsizetype start = lineStarts.value(index);
        result.line = int(index + 1);
        result.column = int(QString::fromUtf8(buffer.constData() + start, offset - start).size() + 1);
        return result;
    }
    result.map = document.toVariant().toMap();
    return result;
}

QVariantMap warnAbout(const JsonReadResult &result, const QString &sourceName)
{
    if (!result.ok()) {
        lpsdkWarning(lcJson, "JSON parse error in file:", sourceName);
        lpsdkWarning(lcJson, "Error:", result.error);
    }
    return result.map;
}
} // namespace

JsonReadResult ReadJsonFile(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {{}, file.errorString(), 0, 0};
    return parseJson(file);
}

JsonReadResult ReadJsonData(const QByteArray &data)
{
    QBuffer buffer;
    buffer.setData(data);
    buffer.open(QIODevice::ReadOnly | QIODevice::Text);
    return parseJson(buffer);
}

QVariantMap LoadJsonFile(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        lpsdkWarning(lcJson, "Json file not found: ", filePath);
        lpsdkWarning(lcJson, "File error code: ", QString::number(file.error()));
        return {};
    }
    return warnAbout(parseJson(file), filePath);
}

QVariantMap LoadJsonData(const QByteArray &data, const QString &sourceName)
{
    return warnAbout(ReadJsonData(data), sourceName);
}
