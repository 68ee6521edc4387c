// File names of a package that name no file that can be made: the package is
// refused, and nothing is written under another name.

#include "TestSupport.h"
#include "package/PackageReader.h"

#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

class TestPackageNames : public QObject
{
    Q_OBJECT
private slots:
    void controlCharactersRefuseThePackage();
};

void TestPackageNames::controlCharactersRefuseThePackage()
{
    QCOMPARE(SafeRelativeName(QString("dir\\s.xml")), std::optional<QString>("dir/s.xml"));
    for (const QString& name : {QString("s.xml") + QChar(0) + "x", QString("a\rb"), QString("t/\x1f")})
        QVERIFY(!SafeRelativeName(name));

    QTemporaryDir dir;
    const QString path = dir.filePath("p.xsp");
    QVERIFY(WriteFile(path, QByteArray("Packager: 1\nName: N\nAuthor: A\nScript: 1 4 dir/s.xml\r\x01") +
                                QByteArray(3, '\0') + "\n1234\n"));
    ShipPackage record;
    QFile file(path);
    const PackageReadResult result = ReadPackage(file, dir.filePath("base"), record, "Scripts", false);
    QVERIFY(!result.ok);
    QCOMPARE(result.failure, ReadFailure::UnsafeName);
    QDirIterator files(dir.filePath("base"), QDir::Files, QDirIterator::Subdirectories);
    QVERIFY(!files.hasNext());
}

QTEST_GUILESS_MAIN(TestPackageNames)
#include "tst_package_names.moc"
