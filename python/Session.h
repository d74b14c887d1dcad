// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace nvlps::Session {

/// A QCoreApplication for the library's plugins and SQL driver, created once unless the process has one.
void ensureApplication();

/**
 * Opens the coupling filter table the library reads (the process-wide connection the library
 * expects from its host): `file`, or the table built into the module when `file` is empty and no
 * table is open yet. ValueError when `file` is no SQLite file with a CplFilter table.
 */
void openCouplingTable(const QString &file);

} // namespace nvlps::Session
