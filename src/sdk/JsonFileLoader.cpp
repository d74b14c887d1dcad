// SPDX-License-Identifier: MIT
#include "JsonFileLoader.h"

#include "Warning.h"

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

QVariantMap LoadJsonFile(const QString &filePath)
{
    QFile file(filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        lpsdkWarning("Json file not found: ", filePath);
        lpsdkWarning("File error code: ", QString::number(file.error()));
        return {};
    }

    QByteArray buffer;
    buffer.reserve(file.size());
    QTextStream stream(&file);
    QString line;
    while (stream.readLineInto(&line))
        buffer += StripJsonLineComment(line).toUtf8();

    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(buffer, &error);
    if (error.error != QJsonParseError::NoError) {
        lpsdkWarning("JSON parse error in file:", filePath);
        lpsdkWarning("Error:", error.errorString());
        return {};
    }
    return document.toVariant().toMap();
}
