// The play history: its file on its own, then the panel and its rows, driven
// through the real message box module.

#include "CLS_HistroyFile.h"
#include "CLS_WgtHistroyList.h"
#include "MsgBoxDriver.h"
#include "ServiceFixture.h"
#include "WriteFaults.h"

#include <QtTest>
#include <QtWidgets>

#include <optional>

namespace {

const QString kFile = QStringLiteral("HistroyInfo.json");

QByteArray Json(const QList<QPair<QString, int>>& _lstEntries)
{
    QByteArrayList lstItems;
    for (const auto& entry : _lstEntries)
        lstItems << "{\"path\": \"" + entry.first.toUtf8() +
                        "\", \"pos\": " + QByteArray::number(entry.second) + '}';
    return "{\"History\": [" + lstItems.join(',') + "]}";
}

// The file as read: the outcome, then "path:pos" in display order.
QString ReadBack()
{
    QMap<QString, int> mapPos;
    QVector<QString> vecPath;
    const auto result = CLS_HistroyFile::Read(kFile, mapPos, vecPath);
    QStringList qlstEntries{QString::number(int(result))};
    for (const QString& qstrPath : vecPath)
        qlstEntries << qstrPath + ':' + QString::number(mapPos.value(qstrPath, -1));
    return qlstEntries.join(' ');
}

// ReadBack() without the outcome and the folders: "name:pos", newest first.
QStringList Stored()
{
    return ReadBack().remove(QRegularExpression("^\\d ?|[^ ]*/")).split(' ', Qt::SkipEmptyParts);
}

QWidget* Row(CLS_WgtHistroyList& _panel, int _iRow)
{
    auto* pList = _panel.findChild<QListWidget*>(QStringLiteral("listWidget"));
    return pList->itemWidget(pList->item(_iRow));
}

QTextEdit* NameOf(QWidget* _pRow)
{
    return _pRow->findChild<QTextEdit*>(QStringLiteral("labelFileName"));
}

QStringList Rows(CLS_WgtHistroyList& _panel)
{
    QStringList qlstNames;
    for (int i = 0; i < _panel.findChild<QListWidget*>()->count(); ++i)
        qlstNames << NameOf(Row(_panel, i))->toPlainText();
    return qlstNames;
}

void Activate(QWidget* _pRow, bool _blDoubleClick)
{
    if (_blDoubleClick)
        QTest::mouseDClick(NameOf(_pRow)->viewport(), Qt::LeftButton);
    else
        QTest::mouseClick(_pRow->findChild<QToolButton*>("toolButton_play"), Qt::LeftButton);
}

using QuillTest::ShownMsgBox;

QString ShownMessage()
{
    return ShownMsgBox()->findChild<QLabel*>(QStringLiteral("lbl_content"))->text();
}

}  // namespace

class tst_Histroy : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_services.IsReady());
        QVERIFY(m_services.WorkDir().LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    }
    void init() { QFile::remove(kFile); }

    void readsTolerantly_data()
    {
        QTest::addColumn<QByteArray>("content");  // empty: no file
        QTest::addColumn<QString>("read");        // 0 loaded, 1 unreadable, 2 no "History"
        QTest::newRow("positions: whole numbers only")
            << QByteArray(R"({"History": [{"path": "a", "pos": 12.9}, {"path": "b", "pos": 12.0},
                {"path": "c", "pos": "12"}, {"path": "d", "pos": 3e10}, {"path": "e", "x": 1}],
                "Other": 1})")
            << "0 a:0 b:12 c:0 d:0 e:0";
        QTest::newRow("repeated path: both kept, the later position")
            << QByteArray(R"({"History": [{"path": "a", "pos": 5}, {"path": "b", "pos": 7},
                {"path": "a", "pos": 9}]})")
            << "0 a:9 b:7 a:9";
        QTest::newRow("History not an array")
            << QByteArray(R"({"History": {"path": "/x"}})") << "0";
        QTest::newRow("no History") << QByteArray(R"({"history": []})") << "2";
        QTest::newRow("invalid json") << QByteArray(R"({"History": [)") << "1";
        QTest::newRow("no file") << QByteArray() << "1";
    }

    void readsTolerantly()
    {
        QFETCH(QByteArray, content);
        QFETCH(QString, read);
        if (!content.isEmpty()) QVERIFY(m_services.WorkDir().WriteFile(kFile, content));
        QCOMPARE(ReadBack(), read);
    }

    void rewritesOrKeepsTheOldFile_data()
    {
        QTest::addColumn<bool>("folderReadOnly");
        QTest::addColumn<bool>("fileReadOnly");
        QTest::addColumn<bool>("diskFull");
        QTest::addColumn<bool>("written");
        QTest::newRow("read-only folder, writable file: rewritten in place")
            << true << false << false << true;
        QTest::newRow("read-only folder and file") << true << true << false << false;
        QTest::newRow("disk full mid-write") << false << false << true << false;
    }

    void rewritesOrKeepsTheOldFile()
    {
        QFETCH(bool, folderReadOnly);
        QFETCH(bool, fileReadOnly);
        QFETCH(bool, diskFull);
        QFETCH(bool, written);
        QuillTest::ScopedWorkDir workDir;
        // Longer than the new file, so a rewrite in place that leaves a tail shows.
        QVERIFY(workDir.WriteFile(kFile, Json({{"/v/a-longer-name.mp4", 5}})));
        if (fileReadOnly) QFile::setPermissions(kFile, QFile::ReadOwner);
        {
            std::optional<QuillTest::ScopedReadOnlyDir> readOnly;
            if (folderReadOnly) readOnly.emplace(workDir.Path());
            if (readOnly && !readOnly->IsReadOnly())
                QSKIP("this file system lets the test write into a read-only folder");
            std::optional<QuillTest::ScopedDiskFull> full;
            if (diskFull) full.emplace();
            QString qstrError;
            const bool blWritten =
                CLS_HistroyFile::Write(kFile, {{"/v/b.mp4", 8}}, {"/v/b.mp4"}, &qstrError);
            full.reset();
            QCOMPARE(blWritten, written);
            QCOMPARE(qstrError.isEmpty(), written);
        }
        QCOMPARE(ReadBack(), written ? "0 /v/b.mp4:8" : "0 /v/a-longer-name.mp4:5");
        // No temporary file left beside it.
        QCOMPARE(QDir().entryList(QDir::Files), QStringList{kFile});
    }

    void killedWriterLeavesAWholeFile()
    {
        QuillTest::ScopedWorkDir workDir;
        // Version i: i % 7 + 1 entries "/v/<i>/<k>" at position i, so a torn
        // file, a mix of two versions or an empty one all show.
        const auto version = [](int i) {
            QList<QPair<QString, int>> lstEntries;
            for (int k = 0; k <= i % 7; ++k)
                lstEntries << qMakePair(QStringLiteral("/v/%1/%2").arg(i).arg(k), i);
            return lstEntries;
        };
        const auto write = [&](int i) {
            QMap<QString, int> mapPos;
            QVector<QString> vecPath;
            for (const auto& entry : version(i)) {
                vecPath << entry.first;
                mapPos.insert(entry.first, entry.second);
            }
            CLS_HistroyFile::Write(kFile, mapPos, vecPath);
        };
        const auto check = [&]() -> QString {
            const QString qstrRead = ReadBack();
            QStringList qlstExpected{"0"};
            for (const auto& entry :
                 version(qstrRead.section(':', 1, 1).section(' ', 0, 0).toInt()))
                qlstExpected << entry.first + ':' + QString::number(entry.second);
            return qstrRead == qlstExpected.join(' ') ? QString() : qstrRead;
        };
        write(0);
        QCOMPARE(QuillTest::KillDuringWrites(write, check), QString());
    }

    void keepsTwentyNewestFirst()
    {
        // A hand-made file of 25 entries, one path twice: every row is shown.
        const QString qstrDup = Video(QStringLiteral("dup.mp4"));
        QList<QPair<QString, int>> lstEntries;
        for (int i = 0; i < 25; ++i)
            lstEntries << qMakePair(i == 0 || i == 2 ? qstrDup : QString("/v/old%1.ps").arg(i), i);
        QVERIFY(m_services.WorkDir().WriteFile(kFile, Json(lstEntries)));
        CLS_WgtHistroyList panel;
        QCOMPARE(Rows(panel).size(), 25);

        // Played again: both rows go, one comes back on top with the new position.
        panel.AddHistroy(qstrDup, 300);
        QCOMPARE(Stored().size(), 24);
        QCOMPARE(Stored().mid(0, 3), QStringList({"dup.mp4:300", "old1.ps:1", "old3.ps:3"}));
        // A new file: the least recently played go, twenty stay.
        panel.AddHistroy(Video(QStringLiteral("new.mp4")), 2);
        const QStringList qlstStored = Stored();
        QCOMPARE(qlstStored.size(), 20);
        QCOMPARE(qlstStored.mid(0, 2) + qlstStored.mid(19),
                 QStringList({"new.mp4:2", "dup.mp4:300", "old19.ps:19"}));
        QCOMPARE(Rows(panel),
                 QStringList(qlstStored).replaceInStrings(QRegularExpression(":\\d+$"), ""));
    }

    void failedWriteKeepsTheChange()
    {
        // A folder in the file's place: it can be neither read nor replaced.
        QVERIFY(QDir().mkdir(kFile));
        CLS_WgtHistroyList panel;
        QVERIFY(Rows(panel).isEmpty());
        panel.AddHistroy(Video(QStringLiteral("a.mp4")), 5);
        QVERIFY(QDir().rmdir(kFile));
        panel.AddHistroy(Video(QStringLiteral("b.mp4")), 8);
        QCOMPARE(Stored(), QStringList({"b.mp4:8", "a.mp4:5"}));
    }

    void continuesAtStoredPositionOrFromStart()
    {
        const QString qstrClip = Video(QStringLiteral("clip.mp4"));
        // The second and third rows have no path: they show and do nothing.
        QVERIFY(m_services.WorkDir().WriteFile(kFile, "{\"History\": [{\"path\": \"" +
                                                          qstrClip.toUtf8() +
                                                          "\", \"pos\": 75}, {\"pos\": 3}, 7]}"));
        CLS_WgtHistroyList panel;
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QSignalSpy spy(&panel, &CLS_WgtHistroyList::SignContinuePlay);
        for (int iRow = 0; iRow < 3; ++iRow) {
            Activate(Row(panel, iRow), false);
            Activate(Row(panel, iRow), true);
        }
        QCOMPARE(spy, QList<QVariantList>({{qstrClip, QVariant::fromValue(75L)},
                                           {qstrClip, QVariant::fromValue(0L)}}));
        QVERIFY(!ShownMsgBox());
        QCOMPARE(Stored(), QStringList({"clip.mp4:75", ":0", ":0"}));
    }

    void missingFileAsksBeforeForgetting_data()
    {
        QTest::addColumn<bool>("byDoubleClick");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QStringList>("stored");
        const QStringList qlstKept{"gone.mp4:10", "kept.mp4:5", "gone.mp4:10"};
        QTest::newRow("button, OK clicked") << false << "btn_ok" << QStringList{"kept.mp4:5"};
        QTest::newRow("double-click, Escape") << true << "escape" << qlstKept;
    }

    void missingFileAsksBeforeForgetting()
    {
        QFETCH(bool, byDoubleClick);
        QFETCH(QString, answer);
        QFETCH(QStringList, stored);
        const QString qstrGone = m_services.WorkDir().FilePath(QStringLiteral("gone.mp4"));
        // Hand-edited: the missing file is listed twice.
        QVERIFY(m_services.WorkDir().WriteFile(
            kFile, Json({{qstrGone, 10}, {Video(QStringLiteral("kept.mp4")), 5}, {qstrGone, 10}})));
        CLS_WgtHistroyList panel;
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QSignalSpy spyPlay(&panel, &CLS_WgtHistroyList::SignContinuePlay);

        Activate(Row(panel, 0), byDoubleClick);
        QTRY_VERIFY(ShownMsgBox());
        QCOMPARE(ShownMessage(), QStringLiteral("msg_videopath_notexist"));
        if (answer.startsWith(QLatin1String("btn_")))
            QTest::mouseClick(ShownMsgBox()->findChild<QPushButton*>(answer), Qt::LeftButton);
        else
            QTest::keyClick(ShownMsgBox(), Qt::Key_Escape);
        QTRY_VERIFY(!ShownMsgBox());
        QCOMPARE(spyPlay.count(), 0);
        QCOMPARE(Stored(), stored);
        QCOMPARE(Rows(panel), stored.replaceInStrings(QRegularExpression(":\\d+$"), ""));
    }

    void missingFileIsReportedNotRecorded()
    {
        CLS_WgtHistroyList panel;
        panel.AddHistroy(m_services.WorkDir().FilePath(QStringLiteral("vanished.sdv")), 40);
        QTRY_VERIFY(ShownMsgBox());
        QCOMPARE(ShownMessage(), QStringLiteral("msg_path_error"));
        QTest::keyClick(ShownMsgBox(), Qt::Key_Return);
        QTRY_VERIFY(!ShownMsgBox());
        QVERIFY(!QFile::exists(kFile) && Rows(panel).isEmpty());
    }

private:
    QString Video(const QString& _qstrName)
    {
        m_services.WorkDir().WriteFile(_qstrName, "video");
        return m_services.WorkDir().FilePath(_qstrName);
    }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_MAIN(tst_Histroy)
#include "tst_Histroy.moc"
