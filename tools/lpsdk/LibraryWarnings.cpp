// SPDX-License-Identifier: MIT
#include "LibraryWarnings.h"

#include <QStringList>
#include <QtGlobal>

#include <utility>

namespace {
LibraryWarnings::Mode g_mode = LibraryWarnings::Print;
QList<LibraryWarnings::Warning> g_kept;
QtMessageHandler g_previousHandler = nullptr;
QStringList g_silenced;

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type == QtWarningMsg && context.category && g_silenced.contains(QLatin1String(context.category)))
        return;
    if (type == QtDebugMsg || type == QtInfoMsg || type == QtFatalMsg || g_mode == LibraryWarnings::Print) {
        g_previousHandler(type, context, message);
        return;
    }
    if (g_mode == LibraryWarnings::Keep)
        g_kept.append({QLatin1String(context.category ? context.category : ""), message});
}
} // namespace

LibraryWarnings::LibraryWarnings(Mode mode)
{
    g_mode = mode;
    g_previousHandler = qInstallMessageHandler(handleMessage);
}

LibraryWarnings::~LibraryWarnings()
{
    qInstallMessageHandler(g_previousHandler);
}

void LibraryWarnings::setMode(Mode mode)
{
    g_mode = mode;
}

void LibraryWarnings::silence(const QString &category)
{
    g_silenced.append(category);
}

QList<LibraryWarnings::Warning> LibraryWarnings::take()
{
    return std::exchange(g_kept, {});
}
