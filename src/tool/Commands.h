// The sub-commands of hwtool. Each is one function behind one row of a table;
// a new group of commands adds its own table and is listed in AllCommands().
#pragma once

#include <QString>
#include <QStringList>

#include <span>

// One call of a sub-command: its positional arguments and the options given.
struct Invocation
{
    QString command;
    QStringList arguments;
    QStringList options; // as written, e.g. "--raw"

    bool has(const char* option) const { return options.contains(QLatin1String(option)); }
};

struct SubCommand
{
    const char* name;
    const char* synopsis; // the arguments, as shown in the usage text
    const char* summary;  // one line of what it does
    int argumentCount;    // exact number of positional arguments
    QStringList options;  // the options it accepts
    int (*run)(const Invocation&);
};

// Exit statuses of the tool.
enum : int
{
    ExitSuccess = 0,
    ExitFailure = 1,
    ExitUsage = 2
};

// The commands on catalogs and packed files.
std::span<const SubCommand> CatalogCommands();

// The commands on ship packages.
std::span<const SubCommand> PackageCommands();

// The commands on ship tables.
std::span<const SubCommand> ShipTableCommands();

// The commands on ships installed in a game directory.
std::span<const SubCommand> ShipCommands();

// The command that values a ship against a balance profile.
std::span<const SubCommand> BalanceCommands();

// The extraction of a ship package into loose files.
std::span<const SubCommand> ExtractCommands();

// Every command of the tool, in the order of the usage text.
std::span<const SubCommand> AllCommands();

// Prints "hwtool: <command>: <message>" on standard error and gives ExitFailure.
int Fail(const Invocation& call, const QString& message);

// The driver's message for its last error, or `fallback` when it holds none.
QString DriverReason(const QString& fallback);
