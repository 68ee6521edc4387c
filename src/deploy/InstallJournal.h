// A change of the ships installed in a game directory, made so that a crash
// cannot cut it in half.
//
// Saving an installed ship touches several things: entries of the mod catalog
// mods/Hullwright.cat, loose files and pictures below ShipInstall/, and the
// registry ShipInstall/ships.dat. Each alone is safe (the catalog has its own
// journal; files are written beside and renamed), but a crash between them
// could leave a registry that names a file the catalog no longer holds. So a
// change goes in three steps:
//
//   1. Stage. Every new byte is copied into ShipInstall/pending-save/: the new
//      files, numbered, and the new registry. Nothing of the game is touched.
//   2. Decide. The list of steps is written to pending-save/journal.json,
//      beside and renamed, so that it is there whole or not at all.
//   3. Apply, in this order: put the new files in place (catalog entries,
//      loose files), install the new registry, take out the old files. Then
//      the journal goes, then the staging directory.
//
// Each step of 3 sets one file or entry to a staged content or to absence, so
// the whole list can be applied again from any point with the same result.
// FinishPendingInstall, run at the next start before anything reads the
// registry, does that for a decided change, and for an undecided one (a
// staging directory without a journal) it removes the staged copies: the old
// state had not been touched. Old files go only after the new registry is in
// place, so a registry never names a file that was removed for good.
//
// The journal, JSON:
//   {"format": "hullwright-install", "version": 1,
//    "steps": [{"do": "put-entry", "staged": "file-0", "target": "objects/a.bod", "packed": true},
//              {"do": "put-file", "staged": "file-1", "target": "ShipInstall/ShipPics/a.png"},
//              {"do": "registry", "staged": "ships.dat"},
//              {"do": "remove-entry", "target": "objects/old.bod"},
//              {"do": "remove-file", "target": "ShipInstall/objects/old.bod"}]}
// Entry targets are names in the mod catalog; file targets are relative to
// the game directory.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

// Where the staged copies and the journal of a change lie, below the game directory.
inline constexpr const char* PendingInstallDir = "ShipInstall/pending-save";

// The mod catalog of a game directory, in which enabled ships' files lie.
QString ModCatalogPath(const QString& gameDir);

enum class InstallOutcome
{
    Done,           // the change is complete
    NothingPending, // (FinishPendingInstall) there was nothing to finish
    Discarded,      // (FinishPendingInstall) an undecided change was dropped; the old state stands
    NotStarted,     // (commit) failed before the decision: nothing of the game changed
    Unfinished,     // failed after the decision: the next start completes the change
};

struct InstallStep
{
    enum class Kind
    {
        PutEntry,
        PutFile,
        Registry,
        RemoveEntry,
        RemoveFile
    };
    Kind kind = Kind::PutFile;
    QString staged; // file name inside the staging directory
    QString target; // catalog entry name, or path relative to the game directory
    bool packed = false;
};

class InstallTransaction
{
public:
    explicit InstallTransaction(const QString& gameDir);
    // An undecided change is discarded: its staged copies go.
    ~InstallTransaction();
    InstallTransaction(const InstallTransaction&) = delete;
    InstallTransaction& operator=(const InstallTransaction&) = delete;

    // Staging. Each copies its source into the staging directory now. False
    // when the source cannot be read or the copy cannot be written; the
    // transaction then cannot be committed. `bytes`, when given, receives
    // the number of bytes staged.
    bool putEntry(const QString& source, const QString& entryName, bool packed, qint64* bytes = nullptr);
    bool putFile(const QString& source, const QString& relativePath, qint64* bytes = nullptr);
    bool putRegistry(const QByteArray& registry);
    void removeEntry(const QString& entryName);
    void removeFile(const QString& relativePath);

    // Decides and applies the change: Done, NotStarted or Unfinished, with
    // error() saying why.
    InstallOutcome commit();
    const QString& error() const { return m_error; }

private:
    bool begin();
    bool stage(const QString& source, const QString& name, qint64* bytes);
    bool fail(const QString& error);

    QString m_gameDir;
    QString m_dir;
    QList<InstallStep> m_steps;
    int m_staged = 0;
    bool m_begun = false;
    bool m_broken = false;
    bool m_decided = false;
    QString m_error;
};

// Completes or discards a change that a crash interrupted. `error`, when
// given, says why a decided change could not be completed (Unfinished).
InstallOutcome FinishPendingInstall(const QString& gameDir, QString* error = nullptr);
