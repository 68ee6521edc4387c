#include "forms/Prompter.h"

#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

QString QtPrompter::openFile(QWidget* parent, const QString& caption, const QString& dir,
                             const QString& filter)
{
    return QFileDialog::getOpenFileName(parent, caption, dir, filter);
}

QStringList QtPrompter::openFiles(QWidget* parent, const QString& caption, const QString& dir,
                                  const QString& filter)
{
    return QFileDialog::getOpenFileNames(parent, caption, dir, filter);
}

QString QtPrompter::saveFile(QWidget* parent, const QString& caption, const QString& dir,
                             const QString& filter)
{
    return QFileDialog::getSaveFileName(parent, caption, dir, filter);
}

QString QtPrompter::directory(QWidget* parent, const QString& caption, const QString& dir)
{
    return QFileDialog::getExistingDirectory(parent, caption, dir);
}

std::optional<QString> QtPrompter::text(QWidget* parent, const QString& caption, const QString& label,
                                        const QString& value)
{
    bool ok = false;
    QString answer = QInputDialog::getText(parent, caption, label, QLineEdit::Normal, value, &ok);
    if (!ok)
        return std::nullopt;
    return answer;
}

std::optional<QString> QtPrompter::item(QWidget* parent, const QString& caption, const QString& label,
                                        const QStringList& items, int current, bool editable)
{
    bool ok = false;
    QString answer = QInputDialog::getItem(parent, caption, label, items, current, editable, &ok);
    if (!ok)
        return std::nullopt;
    return answer;
}

int QtPrompter::message(MessageKind kind, QWidget* parent, const QString& caption, const QString& text,
                        const QStringList& buttons)
{
    QMessageBox box(parent);
    switch (kind) {
    case MessageKind::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MessageKind::Warning:
        box.setIcon(QMessageBox::Warning);
        break;
    case MessageKind::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case MessageKind::Information:
        box.setIcon(QMessageBox::Information);
        break;
    }
    box.setWindowTitle(caption);
    box.setText(text);
    QList<QAbstractButton*> made;
    for (const QString& label : buttons)
        made.append(box.addButton(label, made.isEmpty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole));
    if (made.isEmpty())
        made.append(box.addButton(QMessageBox::Ok));
    box.setDefaultButton(qobject_cast<QPushButton*>(made.first()));
    box.setEscapeButton(made.last());
    box.exec();
    return static_cast<int>(made.indexOf(box.clickedButton()));
}
