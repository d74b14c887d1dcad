// SPDX-License-Identifier: MIT
#include "CommandContext.h"

QString CommandContext::name() const
{
    if (arguments.isEmpty())
        usageError(QStringLiteral("this command needs the name of a loudspeaker or rigging item (see lpsdk list)"));
    if (arguments.size() > 1)
        usageError(QStringLiteral("one name only, not \"%1\" (quote names with spaces)").arg(arguments.join(QLatin1Char(' '))));
    return arguments.first();
}
