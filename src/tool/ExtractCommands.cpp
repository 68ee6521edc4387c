// hwtool xsp-extract: a ship package taken apart into loose files and table
// files, through the same extraction as the main window, for scripts and a
// mod's CI. No box is shown: the files moved in are listed on standard
// output, one path below the directory a line, and a failure's reason goes
// to standard error.
#include "Commands.h"

#include "deploy/Extraction.h"

#include <cstdio>

namespace {

int XspExtract(const Invocation& call)
{
    const QString& package = call.arguments[0];
    const QString& target = call.arguments[1];
    const ExtractionResult result = ExtractPackage(package, target, call.has("--prefix"));
    for (const QString& file : result.written)
        std::printf("%s\n", file.toLocal8Bit().constData());
    std::fflush(stdout);
    if (result.status != ExtractionStatus::Extracted)
        return Fail(call, ExtractionFailureText(result, package, target));
    return ExitSuccess;
}

const SubCommand kExtractCommands[] = {
    {"xsp-extract",
     "PKG DIR [--prefix]",
     "take a ship package apart into DIR: its files, Scripts/ and the tables under types/ "
     "(--prefix: table names end in _<ship name>)",
     2,
     {"--prefix"},
     XspExtract},
};

} // namespace

std::span<const SubCommand> ExtractCommands()
{
    return kExtractCommands;
}
