// SPDX-License-Identifier: MIT
#include "Output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <cstdio>

struct Output::Frame
{
    QString key;
    bool isList = false;
    QJsonObject object;
    QJsonArray array;
    QList<Column> columns;
    QList<QStringList> rows; // text tables are printed whole, with aligned columns
    bool titled = false;     // only titled levels indent the text
};

Output::Output(Mode mode, bool quiet)
    : m_mode(mode)
    , m_quiet(quiet)
{
    m_stack.append(std::make_shared<Frame>());
}

Output::~Output() = default;

QJsonValue Output::number(double value)
{
    return std::isfinite(value) ? QJsonValue(value) : QJsonValue(QJsonValue::Null);
}

QString Output::text(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("yes") : QStringLiteral("no");
    case QJsonValue::Double:
        return QString::number(value.toDouble());
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Array: {
        QStringList parts;
        for (const QJsonValue &item : value.toArray())
            parts.append(text(item));
        return parts.join(QStringLiteral(", "));
    }
    default:
        return QStringLiteral("-");
    }
}

void Output::print(const QString &text)
{
    int depth = 0;
    for (const std::shared_ptr<Frame> &frame : m_stack)
        depth += frame->titled ? 1 : 0;
    m_text += QByteArray(depth * 2, ' ') + text.toUtf8() + '\n';
}

void Output::store(const QString &key, const QJsonValue &value)
{
    Frame &top = *m_stack.last();
    if (top.isList)
        top.array.append(value);
    else
        top.object.insert(key, value);
}

void Output::beginObject(const QString &key, const QString &title)
{
    if (m_mode == Text && !title.isEmpty())
        print(title);
    auto frame = std::make_shared<Frame>();
    frame->key = key;
    frame->titled = !title.isEmpty();
    m_stack.append(frame);
}

void Output::endObject()
{
    const std::shared_ptr<Frame> frame = m_stack.takeLast();
    store(frame->key, frame->object);
}

void Output::beginList(const QString &key, const QString &title, const QList<Column> &columns)
{
    if (m_mode == Text && !title.isEmpty())
        print(title);
    auto frame = std::make_shared<Frame>();
    frame->key = key;
    frame->isList = true;
    frame->titled = !title.isEmpty();
    frame->columns = columns;
    m_stack.append(frame);
}

void Output::endList()
{
    const Frame &top = *m_stack.last();
    if (m_mode != Json && !top.rows.isEmpty()) {
        QList<QStringList> lines = top.rows;
        QStringList headers;
        for (const Column &column : top.columns)
            headers.append(column.header);
        lines.prepend(headers);
        if (m_mode == Csv) {
            for (const QStringList &line : std::as_const(lines))
                print(line.join(QLatin1Char(',')));
        } else {
            lines.first().first().prepend(QStringLiteral("# "));
            QList<qsizetype> widths(headers.size(), 0);
            for (const QStringList &line : std::as_const(lines)) {
                for (qsizetype c = 0; c < line.size() && c < widths.size(); ++c)
                    widths[c] = std::max(widths.at(c), line.at(c).size());
            }
            for (const QStringList &line : std::as_const(lines)) {
                QString text;
                for (qsizetype c = 0; c < line.size(); ++c)
                    text += c + 1 < line.size() ? line.at(c).leftJustified(widths.value(c) + 2) : line.at(c);
                print(text);
            }
        }
    }
    const std::shared_ptr<Frame> frame = m_stack.takeLast();
    store(frame->key, frame->array);
}

void Output::row(const QList<QJsonValue> &cells)
{
    Frame &top = *m_stack.last();
    if (m_mode == Json) {
        QJsonObject item;
        for (int i = 0; i < cells.size() && i < top.columns.size(); ++i)
            item.insert(top.columns.at(i).key, cells.at(i));
        top.array.append(item);
        return;
    }
    QStringList texts;
    for (const QJsonValue &cell : cells)
        texts.append(text(cell));
    top.rows.append(texts);
}

void Output::field(const QString &key, const QString &label, const QJsonValue &value, const QString &unit, const QString &why)
{
    if (m_mode == Json) {
        store(key, value);
        if (value.isNull() && !why.isEmpty() && !m_stack.last()->isList)
            store(key + QStringLiteral("_null_reason"), why);
        return;
    }
    if (label.isEmpty())
        return; // a field for programs only
    QString shown = value.isNull() && !why.isEmpty() ? why : text(value);
    if (!unit.isEmpty() && !value.isNull())
        shown += QLatin1Char(' ') + unit;
    print(label + QStringLiteral(": ") + shown);
}

void Output::line(const QString &text)
{
    if (m_mode != Json)
        print(text);
}

void Output::finish()
{
    if (m_mode == Json) {
        const QByteArray document = QJsonDocument(m_stack.first()->object).toJson(QJsonDocument::Indented);
        std::fwrite(document.constData(), 1, size_t(document.size()), stdout);
    } else {
        std::fwrite(m_text.constData(), 1, size_t(m_text.size()), stdout);
    }
    std::fflush(stdout);
}
