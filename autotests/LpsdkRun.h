// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

// One run of the lpsdk host (LPSDK_EXECUTABLE, with the demo series beside it): its exit status,
// stdout and stderr.
struct Run
{
    int status = -1;
    QByteArray out;
    QByteArray err;
    QJsonObject json() const { return QJsonDocument::fromJson(out).object(); }
};

/// In the test's environment unless one is given.
inline Run lpsdk(const QStringList &arguments, const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment())
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LPSDK_EXECUTABLE), arguments);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, process.readAllStandardOutput(), process.readAllStandardError()};
}

// The problems a `validate --json` run reported.
inline QJsonArray problems(const Run &run)
{
    return run.json().value(QStringLiteral("problems")).toArray();
}
