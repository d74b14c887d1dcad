// SPDX-License-Identifier: MIT
#include "FilterResponse.h"

#include "FilterKernel_p.h"
#include "Warning.h"

void FilterKernel::WarnUnknownType(int type)
{
    lpsdkWarning(lcFilter, "unknown filter type", QString::number(type));
}

QList<Complex> CalculateFilterResponse(const QList<double> &frequencies, const QVariantMap &filter)
{
    QList<Complex> response(frequencies.size(), Complex(1.0, 0.0));
    const int type = filter.value(QStringLiteral("type")).toInt();
    if (!FilterKernel::IsKnownType(type)) {
        FilterKernel::WarnUnknownType(type);
        return response;
    }
    const FilterKernel::Section section = FilterKernel::MakeSection(type,
                                                                    filter.value(QStringLiteral("fp")).toDouble(),
                                                                    filter.value(QStringLiteral("Q")).toDouble(),
                                                                    filter.value(QStringLiteral("G")).toDouble());
    // Multiplying into ones keeps this bit-identical to the in-place products of the setups.
    FilterKernel::MultiplyInto(section, frequencies.constData(), response.data(), response.size());
    return response;
}

QList<Complex> CalculateFilterListResponse(const QList<double> &frequencies, const QList<QVariant> &filters)
{
    QList<Complex> result(frequencies.size(), Complex(1.0, 0.0));
    for (const QVariant &filter : filters) {
        const QVariantMap entry = filter.toMap();
        const int type = entry.value(QStringLiteral("type")).toInt();
        if (!FilterKernel::IsKnownType(type)) {
            FilterKernel::WarnUnknownType(type);
            continue;
        }
        const FilterKernel::Section section = FilterKernel::MakeSection(type,
                                                                        entry.value(QStringLiteral("fp")).toDouble(),
                                                                        entry.value(QStringLiteral("Q")).toDouble(),
                                                                        entry.value(QStringLiteral("G")).toDouble());
        FilterKernel::MultiplyInto(section, frequencies.constData(), result.data(), result.size());
    }
    return result;
}
