#include "Commands.h"

#include "catfs/CatDriver.h"

#include <cstdio>
#include <vector>

std::span<const SubCommand> AllCommands()
{
    static const std::vector<SubCommand> all = [] {
        std::vector<SubCommand> commands;
        for (const std::span<const SubCommand> group :
             {CatalogCommands(), PackageCommands(), ExtractCommands(), ShipTableCommands(), ShipCommands(),
              BalanceCommands()})
            commands.insert(commands.end(), group.begin(), group.end());
        return commands;
    }();
    return all;
}

int Fail(const Invocation& call, const QString& message)
{
    const QByteArray line = QStringLiteral("hwtool: %1: %2\n").arg(call.command, message).toLocal8Bit();
    std::fputs(line.constData(), stderr);
    return ExitFailure;
}

QString DriverReason(const QString& fallback)
{
    const uint32_t code = CatLastError();
    if (code == CatErrNone)
        return fallback;
    return QString::fromLatin1(CatErrorText(code));
}
