#include "deploy/ModelTextures.h"

#include "catfs/transfer/GameFile.h"
#include "deploy/ModelCompiler.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

bool IsSkippedModelLine(const QString& line)
{
    return line.startsWith(u'/') || QString(line).remove(u' ').trimmed().isEmpty();
}

QString FileNameOf(const QString& path)
{
    const qsizetype slash = std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\'));
    return path.mid(slash + 1);
}

bool HasExtension(const QString& name)
{
    const QString file = FileNameOf(name);
    const qsizetype dot = file.lastIndexOf(u'.');
    return dot >= 0 && dot < file.size() - 1;
}

QString ReadText(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll());
}

} // namespace

QStringList MaterialTextureNames(const QString& modelText)
{
    static const QRegularExpression blanks(QStringLiteral("[ \t]+"));
    QStringList names;
    for (QString line : modelText.split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        if (IsSkippedModelLine(line))
            continue;
        const QStringList words = line.trimmed().split(blanks, Qt::SkipEmptyParts);
        if (words.isEmpty() || words.first().toUpper() != QLatin1String("MATERIAL6:"))
            break;
        const QString items = words.mid(2).join(u' ');
        for (const QString& item : items.split(u';')) {
            const QString piece = item.trimmed();
            if (!HasExtension(piece))
                continue;
            const QString name = FileNameOf(piece).toLower();
            if (!names.contains(name))
                names.append(name);
        }
    }
    return names;
}

QStringList ScanModelTextures(const TextureScanSetup& setup, const QStringList& models)
{
    QStringList names;
    for (const QString& model : models) {
        const QString extension = QFileInfo(FileNameOf(model)).suffix();
        QString extracted = setup.WorkDir + "/Extracted." + extension;
        if (!GameFileExtract(setup.Catalog + "::" + model, extracted, false, false)) {
            QFile::remove(extracted);
            continue;
        }
        if (extension == QLatin1String("bob") || extension == QLatin1String("pbb")) {
            const QString text = WithExtension(extracted, "bod");
            const bool decompiled =
                !setup.X2bcPath.isEmpty() && DecompileModel(setup.X2bcPath, extracted, text, setup.TimeoutMs);
            QFile::remove(extracted);
            if (!decompiled) {
                QFile::remove(text);
                continue;
            }
            extracted = text;
        }
        for (const QString& name : MaterialTextureNames(ReadText(extracted)))
            if (!names.contains(name))
                names.append(name);
        QFile::remove(extracted);
    }
    return names;
}
