// The package document of the main window: the form, read and written
// through the form binding and the list controllers, and SavedPackage, the
// image of the last save or open against which the form counts as modified.
//
// There is no model behind the widgets: the form is the working copy. A
// record exists only when Build reads the form for a save, and as the saved
// image afterwards.
#pragma once

#include "app/ContentListSupport.h"
#include "package/ShipPackage.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>

class FormBinding;
class FileListController;
class ScriptListController;
class TextListController;
class DummyListController;
class ComponentListController;
class CockpitListController;

// The parts of the form the document reads and writes; all owned by the window.
struct DocumentParts
{
    FormBinding& form;
    FileListController& models;
    FileListController& others;
    ScriptListController& scripts;
    TextListController& texts;
    DummyListController& dummies;
    ComponentListController& components;
    CockpitListController& cockpits;
};

// What a save reports to the window while it runs.
struct SaveFeedback
{
    std::function<void(const QString& text)> status;
    std::function<void(int64_t done, int64_t total)> progress;
    // Prepares one entry for storage; see PackageWriteHooks::prepare.
    std::function<QString(FileEntry& entry, bool compile)> prepare;
};

class PackageDocument
{
public:
    PackageDocument(DocumentParts parts, WindowContext context);
    ~PackageDocument();

    // Path of the open package; empty for a new ship.
    const QString& CurrentFile() const { return m_currentFile; }
    // The image of the last save or open; null before either.
    const ShipPackage* Saved() const { return m_saved.get(); }

    bool IsModified() const;
    bool HasContent() const;
    // Empties the form and forgets the saved image and the file. Files an
    // earlier open unpacked stay in WorkDir.
    void Clear();
    // `record` becomes the saved image of the package at `path`.
    void Adopt(std::unique_ptr<ShipPackage> record, const QString& path);

    // Reads the form into a new record for a save. The ship line is settled
    // on the way (scene names, turret cockpits by name, the id as its last
    // field) and the form's ship line takes it.
    std::unique_ptr<ShipPackage> Build();
    // Fills the form from a record whose files lie in WorkDir.
    void Show(const ShipPackage& record);

    // Reads the package at `path` into the form. A package that cannot be
    // read gets its box and leaves the form as it was, with the scene names
    // taken from its line. True when the package is open.
    bool Open(const QString& path);

    enum class SaveOutcome
    {
        Saved,
        CannotWriteStream, // the work file for the stream could not be made; a box said so
        Failed             // writing or compressing failed; the package at the path is untouched
    };
    // Builds the record and writes it to `path`, with the update note beside
    // it when `saveWeb` is set and the ship has a web address; on success the
    // record becomes the saved image. The success box is the caller's.
    SaveOutcome Save(const QString& path, bool compileModels, bool saveWeb, const SaveFeedback& feedback);

private:
    const QString& Text(int index) const { return m_context.uiText[index]; }

    DocumentParts m_parts;
    WindowContext m_context;
    std::unique_ptr<ShipPackage> m_saved;
    QString m_currentFile;
};
