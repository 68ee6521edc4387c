#include "balance/ShipTableFile.h"

#include "catfs/transfer/GameFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// Removes the work file when the read is over, whatever happened.
class WorkFileGuard
{
public:
    explicit WorkFileGuard(QString path) : m_path(std::move(path)) {}
    ~WorkFileGuard() { QFile::remove(m_path); }
    WorkFileGuard(const WorkFileGuard&) = delete;
    WorkFileGuard& operator=(const WorkFileGuard&) = delete;

private:
    QString m_path;
};

ShipTableRead ReadPlain(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return {ShipTableStatus::Read, ReadTypesFile(path)};
}

} // namespace

ShipTableRead ReadShipTable(const QString& path, const QString& workFile)
{
    const QString extension = QFileInfo(path).suffix().toLower();
    if (extension != u"cat" && extension != u"pck")
        return ReadPlain(path);

    QDir().mkpath(QFileInfo(workFile).absolutePath());
    const WorkFileGuard guard(workFile);
    if (extension == u"cat") {
        if (!QFileInfo(path).isFile() ||
            !GameFileExtract(path + QStringLiteral("::") + QLatin1String(ShipTableEntry), workFile, false,
                             false))
            return {ShipTableStatus::NotInCatalog, {}};
    } else {
        QFile::remove(workFile);
        PckFileToPlain(path, workFile);
    }
    return ReadPlain(workFile);
}
