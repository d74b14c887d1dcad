// SPDX-License-Identifier: MIT
#include "CouplingFilterProvider.h"

#include "FilterKernel_p.h"
#include "FilterResponse.h"

#include <QHash>
#include <QMutexLocker>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

struct PairFilters
{
    QList<Tolvane::BiquadData> biquads;
    QList<FilterKernel::Section> sections; // the same biquads, ready for evaluation
};

using PositionPair = std::pair<int, int>;

QVariantMap ToFilterEntry(const Tolvane::BiquadData &biquad)
{
    return QVariantMap {
        {QStringLiteral("type"), biquad.type},
        {QStringLiteral("fp"), biquad.frequency},
        {QStringLiteral("Q"), biquad.q},
        {QStringLiteral("G"), biquad.gain},
    };
}

} // namespace

class CouplingFilterProviderPrivate
{
public:
    QHash<PositionPair, PairFilters> filters;
    QList<int> lowPositions;
    QList<int> midPositions;
};

CouplingFilterProvider *CouplingFilterProvider::m_instance = nullptr;
QMutex CouplingFilterProvider::m_instanceAccessSynchronisation;

CouplingFilterProvider::CouplingFilterProvider()
    : d(std::make_unique<CouplingFilterProviderPrivate>())
{
}

CouplingFilterProvider::~CouplingFilterProvider() = default;

CouplingFilterProvider &CouplingFilterProvider::GetInstance()
{
    QMutexLocker locker(&m_instanceAccessSynchronisation);
    if (!m_instance)
        m_instance = new CouplingFilterProvider;
    return *m_instance;
}

bool CouplingFilterProvider::Initialize()
{
    return ReadCplFiltersFromNvRemLib();
}

bool CouplingFilterProvider::ReadCplFiltersFromNvRemLib()
{
    const QSqlDatabase database = QSqlDatabase::database(QStringLiteral("nvRemoteDriverDatabase"), true);
    // Checking first keeps Qt SQL from logging about a connection the host has not set up.
    if (!database.isOpen())
        return false;
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.prepare(QStringLiteral("SELECT LowPos, MidPos, BiquadType, BiquadFX, BiquadQ, BiquadVdB FROM CplFilter")) || !query.exec())
        return false;

    d->filters.clear();
    std::set<int> lowPositions;
    std::set<int> midPositions;
    while (query.next()) {
        const int low = query.value(0).toInt();
        const int mid = query.value(1).toInt();
        m_lowRange = {std::min(m_lowRange.first, low), std::max(m_lowRange.second, low)};
        m_midRange = {std::min(m_midRange.first, mid), std::max(m_midRange.second, mid)};
        lowPositions.insert(low);
        midPositions.insert(mid);

        Tolvane::BiquadData biquad;
        biquad.type = query.value(2).toInt();
        biquad.frequency = query.value(3).toDouble();
        biquad.q = query.value(4).toDouble();
        const QVariant gain = query.value(5);
        bool ok = false;
        biquad.gain = gain.toDouble(&ok);
        if (gain.isNull() || !ok)
            continue;

        PairFilters &pair = d->filters[PositionPair(low, mid)];
        pair.biquads.append(biquad);
        pair.sections.append(FilterKernel::MakeSection(biquad.type, biquad.frequency, biquad.q, biquad.gain));
    }
    d->lowPositions = QList<int>(lowPositions.cbegin(), lowPositions.cend());
    d->midPositions = QList<int>(midPositions.cbegin(), midPositions.cend());
    return true;
}

bool CouplingFilterProvider::EnsureRead()
{
    return !d->filters.isEmpty() || ReadCplFiltersFromNvRemLib();
}

QList<Tolvane::BiquadData> CouplingFilterProvider::GetFilter(int lowPosition, int midPosition)
{
    if (!EnsureRead())
        return {};
    const auto it = d->filters.constFind(PositionPair(lowPosition, midPosition));
    return it == d->filters.cend() ? QList<Tolvane::BiquadData>() : it->biquads;
}

QList<int> CouplingFilterProvider::GetLowPositions()
{
    return EnsureRead() ? d->lowPositions : QList<int>();
}

QList<int> CouplingFilterProvider::GetMidPositions()
{
    return EnsureRead() ? d->midPositions : QList<int>();
}

std::pair<int, int> CouplingFilterProvider::GetLowRange()
{
    return EnsureRead() ? m_lowRange : std::pair<int, int>(0, 0);
}

std::pair<int, int> CouplingFilterProvider::GetMidRange()
{
    return EnsureRead() ? m_midRange : std::pair<int, int>(0, 0);
}

double CouplingFilterProvider::ConvertFromLowIndex(int index)
{
    return (index - 11.0) * 0.5;
}

double CouplingFilterProvider::ConvertFromMidIndex(int index)
{
    return -((index - 1.0) * 0.5);
}

int CouplingFilterProvider::ConvertToLowIndex(double value)
{
    return static_cast<int>(value + value + 11.0);
}

int CouplingFilterProvider::ConvertToMidIndex(double value)
{
    return static_cast<int>(1.0 - (value + value));
}

int CouplingFilterProvider::ConvertToLowIndexFromOldCpl(int value)
{
    // The old low scale had steps of 0.7 dB starting 2 dB below ours.
    const double w = std::round((value + 2.0) * 1.4285714285714286) * 0.5;
    return static_cast<int>(2.0 * w + 11.0);
}

int CouplingFilterProvider::ConvertToMidIndexFromOldCpl(int value)
{
    // The old mid scale had steps of 0.875 dB centred on 5.
    const double w = std::round((value - 5.0) * 1.1428571428571428) * 0.5;
    return static_cast<int>(1.0 - 2.0 * w);
}

QList<std::pair<double, Complex>> CouplingFilterProvider::CalculateFIRFilters(int lowPosition, int midPosition, double sampleRate, int fftLength)
{
    QList<std::pair<double, Complex>> result;
    if (!(sampleRate > 0.0))
        return result;
    const int count = static_cast<int>(fftLength * 0.5 + 1.0);
    if (count < 1)
        return result;

    QList<double> frequencies;
    frequencies.reserve(count);
    for (int k = 0; k < count; ++k) {
        // A one-bin grid has only its 0 Hz bin; the general formula would divide by zero.
        frequencies.append(count == 1 ? 0.0 : k * (sampleRate / 2.0 - 0.0) / (count - 1) + 0.0);
    }

    QList<Complex> product(count, Complex(1.0, 0.0));
    const QList<Tolvane::BiquadData> biquads = GetFilter(lowPosition, midPosition);
    for (const Tolvane::BiquadData &biquad : biquads) {
        const QList<Complex> response = CalculateFilterResponse(frequencies, ToFilterEntry(biquad));
        for (int k = 0; k < count; ++k)
            product[k] *= response.at(k);
    }

    result.reserve(count);
    for (int k = 0; k < count; ++k)
        result.append({frequencies.at(k), product.at(k)});
    // A real impulse response has a real Nyquist bin.
    result.last().second = Complex(result.last().second.real(), 0.0);
    return result;
}

Complex CouplingFilterProvider::CalculateCouplingResponse(int lowPosition, int midPosition, double frequency)
{
    ClearUpperState();
    Complex product(1.0, 0.0);
    if (!EnsureRead())
        return product;
    const auto it = d->filters.constFind(PositionPair(lowPosition, midPosition));
    if (it == d->filters.cend())
        return product;
    for (const FilterKernel::Section &section : it->sections) {
        if (!FilterKernel::IsKnownType(section.type))
            FilterKernel::WarnUnknownType(section.type);
        product *= FilterKernel::Evaluate(section, frequency);
    }
    return product;
}
