#include "package/ShipPackage.h"

#include <QtTest>

class TestRecord : public QObject
{
    Q_OBJECT
private slots:
    void commentTravelsOnOneLine();
};

void TestRecord::commentTravelsOnOneLine()
{
    QCOMPARE(CommentToRecord("one\r\ntwo\nthree"), QString("one <newline>two<newline>three"));
    QCOMPARE(CommentFromRecord("one<newline>two"), QString("one\ntwo"));
    QCOMPARE(CommentFromRecord(CommentToRecord("a\nb\n")), QString("a\nb\n"));
}

QTEST_GUILESS_MAIN(TestRecord)
#include "tst_record.moc"
