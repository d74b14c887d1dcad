// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QStringList>

#include <memory>

/**
 * The one place that formats what a command found. A command describes its result as nested
 * objects, lists and fields; in text mode they print as an indented listing (lists with columns
 * as a table, or CSV), in JSON mode they build one document that finish() writes to stdout.
 * Each field carries both its JSON key and its human label, so no command formats twice.
 */
class Output
{
public:
    enum Mode { Text, Json, Csv };
    struct Column
    {
        QString key;
        QString header;
    };

    Output(Mode mode, bool quiet);
    ~Output();

    Mode mode() const { return m_mode; }
    bool isQuiet() const { return m_quiet; }

    /// A nested object; inside a list, key is ignored and the object becomes the next item.
    void beginObject(const QString &key, const QString &title = QString());
    void endObject();
    /// A list of objects or of values; with columns, row() adds its items as table rows.
    void beginList(const QString &key, const QString &title, const QList<Column> &columns = {});
    void endList();
    void row(const QList<QJsonValue> &cells);
    /// One field; one without a label is for JSON only. A null value prints as why in text and goes with a "<key>_null_reason" field in JSON.
    void field(const QString &key, const QString &label, const QJsonValue &value, const QString &unit = QString(), const QString &why = QString());
    /// A plain line of text in text mode (a heading or a remark); nothing in JSON.
    void line(const QString &text);
    /// Writes the text or the JSON document to stdout. Nothing is written before, so a command
    /// that fails half-way leaves stdout empty.
    void finish();

    /// A finite number, or null when it is -inf or NaN.
    static QJsonValue number(double value);
    static QString text(const QJsonValue &value);

private:
    struct Frame;
    void print(const QString &text);
    void store(const QString &key, const QJsonValue &value);

    Mode m_mode;
    bool m_quiet;
    QList<std::shared_ptr<Frame>> m_stack;
    QByteArray m_text;
};
