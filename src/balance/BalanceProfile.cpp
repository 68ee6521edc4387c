#include "balance/BalanceProfile.h"

#include "gamedata/ShipLine.h"

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>
#include <QTextStream>

namespace {

// The keys whose value is a ";"-separated list of numbers, in the order they
// are written, with the fields they fill.
struct NumberKey
{
    const char* name;
    int count;
    int32_t BalanceProfile::*fields[4];
};
const NumberKey NumberKeys[] = {
    {"Accel", 2, {&BalanceProfile::AccelMin, &BalanceProfile::AccelMax}},
    {"Speed", 2, {&BalanceProfile::SpeedMin, &BalanceProfile::SpeedMax}},
    {"Turning", 2, {&BalanceProfile::TurnMin, &BalanceProfile::TurnMax}},
    {"Tuning", 2, {&BalanceProfile::TuningMin, &BalanceProfile::TuningMax}},
    {"Reactor", 2, {&BalanceProfile::ReactorMin, &BalanceProfile::ReactorMax}},
    {"Weapon", 2, {&BalanceProfile::WeaponMin, &BalanceProfile::WeaponMax}},
    {"WeaponRecharge", 2, {&BalanceProfile::RechargeMin, &BalanceProfile::RechargeMax}},
    {"Cargo",
     4,
     {&BalanceProfile::CargoMin, &BalanceProfile::CargoMax, &BalanceProfile::CargoAvg,
      &BalanceProfile::CargoDiff}},
    {"Shield",
     4,
     {&BalanceProfile::ShieldMinType, &BalanceProfile::ShieldMinCount, &BalanceProfile::ShieldMaxType,
      &BalanceProfile::ShieldMaxCount}},
    {"Hull", 2, {&BalanceProfile::HullMin, &BalanceProfile::HullMax}},
};

QString KeyOf(const NumberKey& key)
{
    return QLatin1String(key.name) + u':';
}

void ReadLine(const QString& line, BalanceProfile& profile)
{
    const qsizetype blank = line.indexOf(u' ');
    const QString key = (blank < 0 ? line : line.left(blank)).toLower();
    const QString value = blank < 0 ? QString() : line.mid(blank + 1);
    if (key == u"profile:")
        profile.Profile = value;
    else if (key == u"class:")
        profile.Class = ReadInt(value);
    else if (key == u"variant:")
        profile.Variant = ReadInt(value);
    for (const NumberKey& numbers : NumberKeys) {
        if (key != KeyOf(numbers).toLower())
            continue;
        // A piece that is missing or no number reads as 0.
        for (int i = 0; i < numbers.count; ++i)
            profile.*numbers.fields[i] = ReadInt(value.section(u';', i, i));
    }
}

} // namespace

QString ProfileText(const BalanceProfile& p)
{
    QString name = p.Profile;
    name.replace(u'\r', u' ').replace(u'\n', u' ');
    QString text;
    QTextStream out(&text);
    out << "Profile: " << name << '\n' << "Class: " << p.Class << '\n' << "Variant: " << p.Variant << '\n';
    for (const NumberKey& numbers : NumberKeys) {
        QStringList pieces;
        for (int i = 0; i < numbers.count; ++i)
            pieces.append(QString::number(p.*numbers.fields[i]));
        out << KeyOf(numbers) << ' ' << pieces.join(u';') << '\n';
    }
    out.flush();
    return text;
}

std::optional<BalanceProfile> ParseProfile(const QByteArray& bytes, const QString& fileName)
{
    QByteArray copy = bytes;
    QBuffer buffer(&copy);
    if (!buffer.open(QIODevice::ReadOnly | QIODevice::Text))
        return std::nullopt;
    QTextStream in(&buffer);
    BalanceProfile profile;
    QString line;
    while (in.readLineInto(&line))
        ReadLine(line, profile);
    if (profile.Profile.isEmpty() || profile.Class == -1)
        return std::nullopt;
    profile.FileName = fileName;
    return profile;
}

std::optional<BalanceProfile> LoadProfile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    return ParseProfile(file.readAll(), QFileInfo(path).completeBaseName());
}

bool IsValidProfileFileName(const QString& fileName)
{
    return !fileName.isEmpty() && !fileName.contains(u'/') && !fileName.contains(u'\\') && fileName != u"." &&
           fileName != u"..";
}

bool SaveProfile(const BalanceProfile& profile, const QString& profilesDir)
{
    if (!IsValidProfileFileName(profile.FileName) || !QDir().mkpath(profilesDir))
        return false;
    QSaveFile file(profilesDir + u'/' + profile.FileName + u'.' + QLatin1String(ProfileExtension));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // A short write (a full disk) must not be committed over the old file.
    const QByteArray bytes = ProfileText(profile).toUtf8();
    return file.write(bytes) == bytes.size() && file.commit();
}

QList<BalanceProfile> LoadProfiles(const QString& profilesDir)
{
    QList<BalanceProfile> profiles;
    const QDir dir(profilesDir);
    const QStringList names =
        dir.entryList({QStringLiteral("*.") + QLatin1String(ProfileExtension)}, QDir::Files, QDir::Name);
    for (const QString& name : names)
        if (std::optional<BalanceProfile> profile = LoadProfile(dir.filePath(name)))
            profiles.append(std::move(*profile));
    return profiles;
}

QList<BalanceProfile> ProfilesForShip(const QList<BalanceProfile>& profiles, const QString& shipLine)
{
    const int shipClass = ShipFieldInt(shipLine, ShipLineField::ShipClass);
    const int variation = ShipFieldInt(shipLine, ShipLineField::Variation);
    QList<BalanceProfile> exact;
    QList<BalanceProfile> general;
    for (const BalanceProfile& profile : profiles) {
        if (profile.Class != shipClass)
            continue;
        if (profile.Variant == -1)
            general.append(profile);
        else if (profile.Variant == variation)
            exact.append(profile);
    }
    return exact.isEmpty() ? general : exact;
}
