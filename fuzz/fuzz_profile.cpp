// Fuzz harness of the balance profile reader and of the balance model fed by
// it: any bytes as a profile file; what loads must write and read back equal,
// and a model of it must load ship lines (a fixed one, and the input's first
// line as one), balance in every mode without reaching its step bound, and
// write lines of the right field count with no NaN or infinity.
#include "balance/BalanceModel.h"
#include "balance/BalanceProfile.h"
#include "gamedata/ShipLine.h"

#include <QByteArray>
#include <QRegularExpression>
#include <QString>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "fuzz_profile: %s\n", what);
        std::abort();
    }
}

const QString kShipLine = QStringLiteral(
    "ships\\a;12;0.0625;0.0625;0.075;2;9001;60000;16000;106;1;5;37;600;112;202;ships\\s;cockpits\\c;15;3;"
    "1800;"
    "0.025;2;2;7;12;5;5;25;60;0;0;0;0;0;0;0;0;0;0;0;0;0;0;1;1;5200;35;36;1;0;0;2023;1;0;0;1;96000;25;1;0;"
    "112000;0;301;0;SS_SH_FUZZ;");

int FieldCount(const QString& line)
{
    return int(line.count(u';')) + 1;
}

void Balance(const BalanceProfile& profile, const QString& line)
{
    static const QRegularExpression nonFinite(QStringLiteral("nan|inf"),
                                              QRegularExpression::CaseInsensitiveOption);
    for (const BalanceMode mode : {BalanceMode::Equal, BalanceMode::Lowest, BalanceMode::Highest}) {
        BalanceModel model(profile);
        model.LoadFromShipLine(line);
        const BalanceRun run = model.AutoBalance(-1, mode);
        Require(run.stop != BalanceStop::StepLimit, "AutoBalance reached its step bound");
        Require(run.steps <= model.StepBound(), "AutoBalance took more steps than its bound");
        const QString written = model.ApplyToShipLine(line);
        Require(FieldCount(written) == std::max(FieldCount(line), ShipLineField::Hull + 2),
                "the written line lost or gained fields");
        // A scale without positions keeps the line's own shield fields, whatever they hold.
        for (const int field : {2, 3, 4, 7, 8, 13, 20, 21, 22, 23, 26, 27, 28, 29, 46})
            if (model.ShieldSteps() > 0 ||
                (field != ShipLineField::ShieldType && field != ShipLineField::ShieldCount))
                Require(!nonFinite.match(ShipField(written, field)).hasMatch(),
                        "NaN or infinity in the line");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* bytes, size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(bytes), qsizetype(size));
    const std::optional<BalanceProfile> profile = ParseProfile(input, QStringLiteral("fuzz"));
    if (!profile)
        return 0;
    Require(!profile->Profile.isEmpty() && profile->Class != -1, "a profile without name or class loaded");
    const std::optional<BalanceProfile> again =
        ParseProfile(ProfileText(*profile).toUtf8(), QStringLiteral("fuzz"));
    Require(again && *again == *profile, "a loaded profile does not survive a write and a read");

    Balance(*profile, kShipLine);
    Balance(*profile, QString::fromUtf8(input).section(u'\n', 0, 0));
    return 0;
}
