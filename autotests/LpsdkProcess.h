// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

/// One run of the lpsdk host: its exit status and what it printed.
struct LpsdkRun
{
    int status = -1;
    QByteArray out;
    QByteArray err;
    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

/// Runs lpsdk (LPSDK_EXECUTABLE) to the end, in the test's environment unless one is given.
inline LpsdkRun lpsdk(const QStringList &arguments, const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LPSDK_EXECUTABLE), arguments);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}
