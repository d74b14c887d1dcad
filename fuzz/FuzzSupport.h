// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <cstdint>
#include <cstdlib>

// Readers warn about most broken inputs; printing every warning would cost most of the run.
inline void quietWarnings()
{
    qInstallMessageHandler([](QtMsgType type, const QMessageLogContext &, const QString &) {
        if (type == QtFatalMsg)
            std::abort();
    });
}

// The fuzzer's bytes, not copied; valid for one LLVMFuzzerTestOneInput call.
inline QByteArray fuzzBytes(const uint8_t *data, size_t size)
{
    return QByteArray::fromRawData(reinterpret_cast<const char *>(data), qsizetype(size));
}
