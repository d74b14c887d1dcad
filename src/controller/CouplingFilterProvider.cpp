// SPDX-License-Identifier: MIT
#include "CouplingFilterProvider.h"

#include "FilterKernel_p.h"
#include "FilterResponse.h"
#include "Warning.h"

#include <QHash>
#include <QMutexLocker>
#include <QPointer>
#include <QThread>
#include <QSqlDatabase>
#include <QSqlDriver>
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

const char *const ColumnNames[] = {"LowPos", "MidPos", "BiquadType", "BiquadFX", "BiquadQ", "BiquadVdB"};

// One column of the current row as a number, the way QVariant converts it; `ok` is false for
// NULL and for text that is no number, which then reads as 0.
double ReadNumber(const QSqlQuery &query, int column, bool &ok)
{
    const QVariant value = query.value(column);
    const double number = column <= 2 ? value.toInt(&ok) : value.toDouble(&ok);
    ok = ok && !value.isNull();
    return number;
}

QString ValueText(const QVariant &value)
{
    return value.isNull() ? QStringLiteral("NULL") : QLatin1Char('"') + value.toString() + QLatin1Char('"');
}

} // namespace

class CouplingFilterProviderPrivate
{
public:
    QHash<PositionPair, PairFilters> filters;
    QList<int> lowPositions;
    QList<int> midPositions;
    QList<CouplingTableProblem> problems;
    // The connection whose table yielded no filter: it is not read again on every query. A
    // guarded pointer, so that a new connection's driver at a freed one's address is not taken for it.
    QPointer<QSqlDriver> emptyTableDriver;

    void CheckStoredRow(const CouplingTableProblem &where, const Tolvane::BiquadData &biquad);
};

void CouplingFilterProviderPrivate::CheckStoredRow(const CouplingTableProblem &where, const Tolvane::BiquadData &biquad)
{
    const auto add = [&](const char *column, const QString &message) {
        CouplingTableProblem problem = where;
        problem.column = QLatin1String(column);
        problem.message = message;
        problems.append(problem);
    };
    if (!FilterKernel::IsKnownType(biquad.type)) {
        add("BiquadType", QStringLiteral("%1 is no filter type (0 ... 15); the filter passes everything").arg(biquad.type));
        return;
    }
    if (FilterKernel::UsesFrequency(biquad.type) && !(biquad.frequency > 0.0 && std::isfinite(biquad.frequency)))
        add("BiquadFX", QStringLiteral("frequency %1 Hz leaves filter type %2 undefined").arg(biquad.frequency).arg(biquad.type));
    if (FilterKernel::UsesQ(biquad.type) && !(biquad.q > 0.0 && std::isfinite(biquad.q)))
        add("BiquadQ", QStringLiteral("Q %1 leaves filter type %2 undefined").arg(biquad.q).arg(biquad.type));
}

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
    d->problems.clear();
    std::set<int> lowPositions;
    std::set<int> midPositions;
    int row = 0;
    while (query.next()) {
        ++row;
        bool ok[6];
        double values[6];
        for (int column = 0; column < 6; ++column)
            values[column] = ReadNumber(query, column, ok[column]);
        const int low = int(values[0]);
        const int mid = int(values[1]);
        m_lowRange = {std::min(m_lowRange.first, low), std::max(m_lowRange.second, low)};
        m_midRange = {std::min(m_midRange.first, mid), std::max(m_midRange.second, mid)};
        lowPositions.insert(low);
        midPositions.insert(mid);

        const CouplingTableProblem where{row, low, mid, QString(), QString()};
        QStringList unreadable;
        for (int column = 0; column < 6; ++column) {
            if (ok[column])
                continue;
            CouplingTableProblem problem = where;
            problem.column = QLatin1String(ColumnNames[column]);
            problem.message = column == 5 ? QStringLiteral("gain %1 is no number: the row is skipped").arg(ValueText(query.value(column)))
                                          : QStringLiteral("%1 does not read as a number (read as 0)").arg(ValueText(query.value(column)));
            d->problems.append(problem);
            if (column < 5)
                unreadable.append(problem.column + QLatin1Char(' ') + problem.message);
        }
        if (!ok[5])
            continue; // skipped without a word, as it always was

        Tolvane::BiquadData biquad;
        biquad.type = int(values[2]);
        biquad.frequency = values[3];
        biquad.q = values[4];
        biquad.gain = values[5];
        if (!unreadable.isEmpty())
            qCWarning(lcCoupling).noquote() << QStringLiteral("CplFilter row %1 (LowPos %2, MidPos %3): %4").arg(row).arg(low).arg(mid).arg(unreadable.join(QStringLiteral("; ")));
        else
            d->CheckStoredRow(where, biquad);

        PairFilters &pair = d->filters[PositionPair(low, mid)];
        pair.biquads.append(biquad);
        pair.sections.append(FilterKernel::MakeSection(biquad.type, biquad.frequency, biquad.q, biquad.gain));
    }
    d->lowPositions = QList<int>(lowPositions.cbegin(), lowPositions.cend());
    d->midPositions = QList<int>(midPositions.cbegin(), midPositions.cend());
    for (int low : std::as_const(d->lowPositions)) {
        for (int mid : std::as_const(d->midPositions)) {
            if (!d->filters.contains(PositionPair(low, mid)))
                d->problems.append({0, low, mid, QString(), QStringLiteral("the pair has no filters")});
        }
    }
    d->emptyTableDriver = d->filters.isEmpty() ? database.driver() : nullptr;
    return true;
}

bool CouplingFilterProvider::EnsureRead()
{
    if (!d->filters.isEmpty())
        return true;
    // A table without usable rows stays so until the host points the connection elsewhere
    // (or calls Initialize()); reading it again on every query would cost a query each time.
    // Other threads may not use the connection at all; for them the table stays as read.
    const QSqlDriver *driver = d->emptyTableDriver.data();
    if (driver && (driver->thread() != QThread::currentThread() || QSqlDatabase::database(QStringLiteral("nvRemoteDriverDatabase"), false).driver() == driver))
        return true;
    return ReadCplFiltersFromNvRemLib();
}

QList<CouplingTableProblem> CouplingFilterProvider::GetTableProblems()
{
    return EnsureRead() ? d->problems : QList<CouplingTableProblem>();
}

QList<CouplingTableProblem> CouplingFilterProvider::GetPairProblems(int lowPosition, int midPosition)
{
    if (!EnsureRead())
        return {};
    QList<CouplingTableProblem> problems;
    for (const CouplingTableProblem &problem : std::as_const(d->problems)) {
        if (problem.lowPosition == lowPosition && problem.midPosition == midPosition)
            problems.append(problem);
    }
    if (problems.isEmpty() && !d->filters.contains(PositionPair(lowPosition, midPosition)))
        problems.append({0, lowPosition, midPosition, QString(), QStringLiteral("the table has no row for the pair")});
    return problems;
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
