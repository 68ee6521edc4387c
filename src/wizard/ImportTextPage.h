// The last page of the import wizard: the ship's name and description in
// each language, with buttons that import them from files or a directory and
// a context menu on the list. The page shows the session's text rows.
#pragma once

#include "wizard/ImportResult.h"

#include <QWizardPage>

class QPushButton;
class QTreeWidget;
class QTreeWidgetItem;
class WizardText;

class ImportTextPage : public QWizardPage
{
    Q_OBJECT
public:
    explicit ImportTextPage(const QString& programDir, QWidget* parent = nullptr);

    WizardText* Form() const { return m_form; }
    QTreeWidget* List() const;
    void Show(const QList<ImportedText>& texts);
    // The index into the shown texts of `item`, or -1.
    static int TextIndex(const QTreeWidgetItem* item);
    // The index of the selected row's text, or -1.
    int SelectedIndex() const;

private:
    WizardText* m_form; // child of the page
    QString m_programDir;
};
