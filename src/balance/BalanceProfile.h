// Balance profiles: for one class of ship, and optionally one variant, the
// limits between which each property of such a ship should lie. One profile a
// file, "<FileName>.xbp", in the program directory's Profiles folder.
//
// The .xbp format: text, one key a line, each line "Key: value" ended by a
// line feed. Numbers of one key are decimal, divided by ";" without blanks.
// The writer puts the keys in this order:
//
//     Profile: <name, may hold blanks>
//     Class: <class index>
//     Variant: <-1 any, 0 the plain ship, n that variant>
//     Accel: min;max
//     Speed: min;max
//     Turning: min;max
//     Tuning: min;max
//     Reactor: min;max
//     Weapon: min;max
//     WeaponRecharge: min;max
//     Cargo: min;max;avg;diff
//     Shield: minType;minCount;maxType;maxCount
//     Hull: min;max
//
// The reader takes the keys in any order and in any case (it lowers the
// line's first blank-separated word), takes the rest of the line after the
// first blank as the value, reads a missing piece or one that is no number
// (or does not fit 32 bits) as 0, passes over other keys, and lets a later
// line of a key win. A file without a Profile name or without a Class line
// is no profile.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <optional>

struct BalanceProfile
{
    int32_t TuningMin = 0, TuningMax = 0;
    int32_t AccelMin = 0, AccelMax = 0;
    int32_t TurnMin = 0, TurnMax = 0;
    int32_t SpeedMin = 0, SpeedMax = 0;
    int32_t ReactorMin = 0, ReactorMax = 0;
    int32_t WeaponMin = 0, WeaponMax = 0;
    int32_t RechargeMin = 0, RechargeMax = 0;
    int32_t CargoMin = 0, CargoMax = 0, CargoAvg = 0, CargoDiff = 0;
    int32_t ShieldMinType = 0, ShieldMinCount = 0, ShieldMaxType = 0, ShieldMaxCount = 0;
    int32_t HullMin = 0, HullMax = 0;
    int32_t Class = -1;
    int32_t Variant = -1; // -1 any variant, 0 the plain ship, n the variant n
    QString Profile;      // the name shown to the user
    QString FileName;     // the file's base name, up to the last dot; not stored in the file

    bool operator==(const BalanceProfile&) const = default;
};

// The extension of profile files, without the dot.
inline constexpr const char* ProfileExtension = "xbp";

// The file content of a profile. Line breaks in the name become blanks, so
// that the name stays one line.
QString ProfileText(const BalanceProfile& profile);

// Reads a profile from the bytes of a file (decoded as the toolkit's text
// stream decodes a file); `fileName` becomes its FileName. Nothing when the
// content names no profile or no class.
std::optional<BalanceProfile> ParseProfile(const QByteArray& bytes, const QString& fileName);

// Reads the file at `path`. Nothing when it cannot be read or is no profile.
// FileName is the file's name up to its last dot.
std::optional<BalanceProfile> LoadProfile(const QString& path);

// True when `fileName` can name a profile file inside the profiles directory:
// not empty, no slash or backslash, not "." or "..".
bool IsValidProfileFileName(const QString& fileName);

// Writes "<profilesDir>/<FileName>.xbp", replacing a file of that name as a
// whole or not at all (written beside and renamed). Makes the directory when
// it is missing. False when the name is not valid or the file could not be
// written; an old file of that name is then as it was.
bool SaveProfile(const BalanceProfile& profile, const QString& profilesDir);

// Every *.xbp of the directory that loads, in the order of the file names.
QList<BalanceProfile> LoadProfiles(const QString& profilesDir);

// The profiles that fit a ship: those whose Class is the line's field 5 and
// whose Variant is the line's field 50, or, when there is none of those,
// those of the class for any variant (Variant -1). In the order given.
QList<BalanceProfile> ProfilesForShip(const QList<BalanceProfile>& profiles, const QString& shipLine);
