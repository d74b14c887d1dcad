// SPDX-License-Identifier: MIT
#include "SourcePointBalloons_p.h"

#include "Balloon.h"

#include <climits>
#include <cmath>

namespace {

// Truncation toward zero that saturates instead of overflowing (hostile step widths).
int truncateToInt(double value)
{
    if (value >= 2147483648.0)
        return INT_MAX;
    if (value <= -2147483649.0)
        return INT_MIN;
    return std::isnan(value) ? 0 : int(value);
}

// The balloon object reads the table's values in place, so it holds the table.
struct HeldBalloon {
    HeldBalloon(std::shared_ptr<const BalloonTable> t, const BalloonTable::FlushMountParameters &flushMount)
        : table(std::move(t))
        , balloon(truncateToInt(table->GetThetaStepWidth()), truncateToInt(table->GetPhiStepWidth()),
                  table->GetSymmetryCode(), table->GetNH(), table->GetNV(),
                  table->GetFrequencies().isEmpty() ? 0.0 : table->GetFrequencies().first(),
                  table->GetFrequencies().isEmpty() ? 0.0 : table->GetFrequencies().last(), table->GetValues(),
                  flushMount[5], flushMount[3])
    {
    }
    std::shared_ptr<const BalloonTable> table;
    nvScientificComputing::Balloon balloon;
};

template<typename Entries>
const BalloonTable *chooseFlushMount(const Entries &withFlushMount, const QString &key)
{
    if (withFlushMount.empty())
        return nullptr;
    if (withFlushMount.size() > 1) {
        for (const auto &entry : withFlushMount) {
            if (entry.key == key)
                return entry.table.get();
        }
    }
    return withFlushMount.front().table.get();
}

} // namespace

SourcePointBalloons SourcePointBalloons::With(const QString &key, std::shared_ptr<const BalloonTable> table,
                                              const QString &fileName) const
{
    SourcePointBalloons next = *this;
    if (table->HasFlushMount()) {
        next.m_hasFlushMount = true;
        next.m_flushMount = table->GetFlushMountParameters();
    }
    const auto held = std::make_shared<const HeldBalloon>(table, next.m_flushMount);
    next.m_balloons.insert(key, std::shared_ptr<const nvScientificComputing::IBalloon>(held, &held->balloon));
    next.m_fileNames.insert(key, fileName);
    next.m_files.push_back({key, std::move(table)});

    std::vector<Entry> withFlushMount;
    for (const Entry &file : next.m_files) {
        if (file.table->HasFlushMount())
            withFlushMount.push_back(file);
    }
    next.m_lookups.clear();
    const BalloonTable &grid = *next.m_files.back().table;
    for (const Entry &file : next.m_files) {
        const bool seen = std::any_of(next.m_lookups.cbegin(), next.m_lookups.cend(),
                                      [&](const Entry &entry) { return entry.key == file.key; });
        if (!seen)
            next.m_lookups.push_back({file.key, BalloonTable::WithGridOf(grid, *file.table, chooseFlushMount(withFlushMount, file.key))});
    }
    return next;
}

std::shared_ptr<const BalloonTable> SourcePointBalloons::Table(const QString &key) const
{
    for (const Entry &entry : m_lookups) {
        if (entry.key == key)
            return entry.table;
    }
    return nullptr;
}

QStringList SourcePointBalloons::Keys() const
{
    QStringList keys;
    for (const Entry &entry : m_lookups)
        keys.append(entry.key);
    return keys;
}
