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

QString Numbers(std::initializer_list<int32_t> values)
{
    QStringList pieces;
    for (const int32_t value : values)
        pieces.append(QString::number(value));
    return pieces.join(u';');
}

// Piece `index` of a ";"-separated value, as a number; 0 when it is missing
// or no number.
int32_t Piece(const QString& value, int index)
{
    return ReadInt(value.section(u';', index, index));
}

void ReadPair(const QString& value, int32_t& first, int32_t& second)
{
    first = Piece(value, 0);
    second = Piece(value, 1);
}

void ReadFour(const QString& value, int32_t& a, int32_t& b, int32_t& c, int32_t& d)
{
    a = Piece(value, 0);
    b = Piece(value, 1);
    c = Piece(value, 2);
    d = Piece(value, 3);
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
    else if (key == u"accel:")
        ReadPair(value, profile.AccelMin, profile.AccelMax);
    else if (key == u"speed:")
        ReadPair(value, profile.SpeedMin, profile.SpeedMax);
    else if (key == u"turning:")
        ReadPair(value, profile.TurnMin, profile.TurnMax);
    else if (key == u"tuning:")
        ReadPair(value, profile.TuningMin, profile.TuningMax);
    else if (key == u"reactor:")
        ReadPair(value, profile.ReactorMin, profile.ReactorMax);
    else if (key == u"weapon:")
        ReadPair(value, profile.WeaponMin, profile.WeaponMax);
    else if (key == u"weaponrecharge:")
        ReadPair(value, profile.RechargeMin, profile.RechargeMax);
    else if (key == u"cargo:")
        ReadFour(value, profile.CargoMin, profile.CargoMax, profile.CargoAvg, profile.CargoDiff);
    else if (key == u"shield:")
        ReadFour(value, profile.ShieldMinType, profile.ShieldMinCount, profile.ShieldMaxType,
                 profile.ShieldMaxCount);
    else if (key == u"hull:")
        ReadPair(value, profile.HullMin, profile.HullMax);
}

} // namespace

QString ProfileText(const BalanceProfile& p)
{
    QString name = p.Profile;
    name.replace(u'\r', u' ').replace(u'\n', u' ');
    QString text;
    QTextStream out(&text);
    out << "Profile: " << name << '\n'
        << "Class: " << p.Class << '\n'
        << "Variant: " << p.Variant << '\n'
        << "Accel: " << Numbers({p.AccelMin, p.AccelMax}) << '\n'
        << "Speed: " << Numbers({p.SpeedMin, p.SpeedMax}) << '\n'
        << "Turning: " << Numbers({p.TurnMin, p.TurnMax}) << '\n'
        << "Tuning: " << Numbers({p.TuningMin, p.TuningMax}) << '\n'
        << "Reactor: " << Numbers({p.ReactorMin, p.ReactorMax}) << '\n'
        << "Weapon: " << Numbers({p.WeaponMin, p.WeaponMax}) << '\n'
        << "WeaponRecharge: " << Numbers({p.RechargeMin, p.RechargeMax}) << '\n'
        << "Cargo: " << Numbers({p.CargoMin, p.CargoMax, p.CargoAvg, p.CargoDiff}) << '\n'
        << "Shield: " << Numbers({p.ShieldMinType, p.ShieldMinCount, p.ShieldMaxType, p.ShieldMaxCount})
        << '\n'
        << "Hull: " << Numbers({p.HullMin, p.HullMax}) << '\n';
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
