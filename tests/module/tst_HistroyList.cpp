#include "CLS_HistroyFile.h"
#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayer7ToolboxBar.h"
#include "MsgBoxDriver.h"
#include "ServiceFixture.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

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

// The history file as "name:pos", newest first.
QStringList Stored()
{
    QMap<QString, int> mapPos;
    QVector<QString> vecPath;
    CLS_HistroyFile::Read(kFile, mapPos, vecPath);
    QStringList qlstEntries;
    for (const QString& qstrPath : vecPath)
        qlstEntries << QFileInfo(qstrPath).fileName() + ':' + QString::number(mapPos[qstrPath]);
    return qlstEntries;
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
        QTest::mouseClick(_pRow->findChild<QToolButton*>(QStringLiteral("toolButton_play")),
                          Qt::LeftButton);
}

using QuillTest::ShownMsgBox;

QString ShownMessage()
{
    return ShownMsgBox()->findChild<QLabel*>(QStringLiteral("lbl_content"))->text();
}

}  // namespace

class tst_HistroyList : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_services.IsReady());
        QVERIFY(m_services.WorkDir().LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    }
    void init() { QFile::remove(kFile); }

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
        QCOMPARE(Rows(panel), QStringList(qlstStored).replaceInStrings(QRegularExpression(":\\d+$"), ""));
    }

    void failedWriteKeepsTheChange()
    {
        // A folder in the file's place: it can be neither read nor replaced.
        QVERIFY(QDir().mkdir(kFile));
        CLS_WgtHistroyList panel;
        QVERIFY(Rows(panel).isEmpty());
        const int iLogBefore = Log().size();
        panel.AddHistroy(Video(QStringLiteral("a.mp4")), 5);
        QVERIFY(Log().mid(iLogBefore).contains("CLS_WgtHistroyList::UpdateResult open File Erroe"));
        QVERIFY(QDir().rmdir(kFile));
        panel.AddHistroy(Video(QStringLiteral("b.mp4")), 8);
        QCOMPARE(Stored(), QStringList({"b.mp4:8", "a.mp4:5"}));
    }

    void continuesAtStoredPositionOrFromStart()
    {
        const QString qstrClip = Video(QStringLiteral("clip.mp4"));
        // The second and third rows have no path: they show and do nothing.
        QVERIFY(m_services.WorkDir().WriteFile(
            kFile, "{\"History\": [{\"path\": \"" + qstrClip.toUtf8() + "\", \"pos\": 75}, {\"pos\": 3}, 7]}"));
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
        QTest::newRow("button, Cancel clicked") << false << "btn_cancel" << qlstKept;
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

    void titleBarAsksToHide()
    {
        CLS_WgtHistroyList panel;
        auto* pBar = panel.findChild<CLS_WgtPlayer7ToolboxBar*>();
        QSignalSpy spyHide(&panel, &CLS_WgtHistroyList::SignHideHistrouListWgt);
        QTest::mouseClick(pBar->findChild<QToolButton*>(QStringLiteral("tlb_arrow")), Qt::LeftButton);
        QTest::mousePress(pBar, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(spyHide.count(), 2);

        // Right-to-left languages, by their exact names, put the caption at the right.
        for (const QString& qstrLanguage : QStringList{"Hebrew", "arabic"}) {
            qApp->setProperty("language", qstrLanguage);
            CLS_WgtPlayer7ToolboxBar barByLanguage;
            qApp->setProperty("language", QVariant());
            QCOMPARE(barByLanguage.findChild<QLabel*>()->alignment() == (Qt::AlignRight | Qt::AlignVCenter),
                     qstrLanguage == QLatin1String("Hebrew"));
        }
    }

private:
    QString Video(const QString& _qstrName)
    {
        m_services.WorkDir().WriteFile(_qstrName, "video");
        return m_services.WorkDir().FilePath(_qstrName);
    }
    QString Log() const { return m_services.LogText(QStringLiteral("ModuleKoPlayer")); }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_MAIN(tst_HistroyList)
#include "tst_HistroyList.moc"
