// hwtool: lists, extracts, adds and removes entries of the game's catalogs and
// packs and unpacks packed files, from the command line.
//
//     hwtool <command> <arguments> [options]
//
// Exit status: 0 on success, 1 when the operation failed (the reason on
// standard error), 2 on wrong usage (the usage text on standard error).
#include "Commands.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

QString UsageLine(const SubCommand& command)
{
    return QStringLiteral("  hwtool %1 %2\n      %3\n")
        .arg(QLatin1String(command.name), QLatin1String(command.synopsis), QLatin1String(command.summary));
}

QString UsageText()
{
    QString text = QStringLiteral("usage: hwtool <command> <arguments>\n\ncommands:\n");
    for (const SubCommand& command : AllCommands())
        text += UsageLine(command);
    return text;
}

void Print(FILE* stream, const QString& text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
}

int UsageError(const QString& problem, const QString& usage)
{
    Print(stderr, QStringLiteral("hwtool: %1\n%2").arg(problem, usage));
    return ExitUsage;
}

const SubCommand* FindCommand(const QString& name)
{
    for (const SubCommand& command : AllCommands())
        if (name == QLatin1String(command.name))
            return &command;
    return nullptr;
}

int Run(const QStringList& words)
{
    if (words.isEmpty())
        return UsageError(QStringLiteral("no command given"), UsageText());
    const QString& name = words.first();
    if (name == QLatin1String("help") || name == QLatin1String("--help") || name == QLatin1String("-h")) {
        Print(stdout, UsageText());
        return ExitSuccess;
    }
    const SubCommand* command = FindCommand(name);
    if (!command)
        return UsageError(QStringLiteral("unknown command '%1'").arg(name), UsageText());

    const QString usage = QStringLiteral("usage:\n") + UsageLine(*command);
    Invocation call{name, {}, {}};
    for (const QString& word : words.mid(1)) {
        if (word.startsWith(QLatin1String("--"))) {
            if (!command->options.contains(word))
                return UsageError(QStringLiteral("%1: unknown option '%2'").arg(name, word), usage);
            call.options.append(word);
        } else {
            call.arguments.append(word);
        }
    }
    if (call.arguments.size() != command->argumentCount)
        return UsageError(QStringLiteral("%1: expected %2 arguments, got %3")
                              .arg(name)
                              .arg(command->argumentCount)
                              .arg(call.arguments.size()),
                          usage);
    return command->run(call);
}

} // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    return Run(QCoreApplication::arguments().mid(1));
}
