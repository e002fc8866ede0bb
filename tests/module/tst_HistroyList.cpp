#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayer7ToolboxBar.h"
#include "QuillTestSupport.h"
#include "TestLogFiles.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <csignal>

using Entries = QList<QPair<QString, QByteArray>>;

namespace {

const QString kFile = QStringLiteral("HistroyInfo.json");

QString Video(QuillTest::ScopedWorkDir& _workDir, const QString& _qstrName)
{
    _workDir.WriteFile(_qstrName, "video");
    return _workDir.FilePath(_qstrName);
}

QByteArray FileBytes()
{
    QFile file(kFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The history file as "name:pos", newest first.
QStringList Stored()
{
    QStringList qlstEntries;
    const QJsonArray jsonHistory =
        QJsonDocument::fromJson(FileBytes()).object().value(QStringLiteral("History")).toArray();
    for (const QJsonValue& jsonValue : jsonHistory)
        qlstEntries << QFileInfo(jsonValue[QStringLiteral("path")].toString()).fileName() + ':' +
                           QString::number(jsonValue[QStringLiteral("pos")].toInt(-1));
    return qlstEntries;
}

QByteArray Json(const Entries& _lstEntries)
{
    QByteArrayList lstItems;
    for (const auto& entry : _lstEntries)
        lstItems << "{\"path\": \"" + entry.first.toUtf8() + "\", \"pos\": " + entry.second + '}';
    return "{\"History\": [" + lstItems.join(',') + "]}";
}

QWidget* Row(CLS_WgtHistroyList& _panel, int _iRow)
{
    auto* pList = _panel.findChild<QListWidget*>(QStringLiteral("listWidget"));
    return pList->itemWidget(pList->item(_iRow));
}

QStringList Rows(CLS_WgtHistroyList& _panel)
{
    QStringList qlstNames;
    for (int i = 0; i < _panel.findChild<QListWidget*>()->count(); ++i)
        qlstNames << Row(_panel, i)
                         ->findChild<QTextEdit*>(QStringLiteral("labelFileName"))
                         ->toPlainText();
    return qlstNames;
}

void Activate(QWidget* _pRow, bool _blDoubleClick)
{
    if (_blDoubleClick)
        QTest::mouseDClick(
            _pRow->findChild<QTextEdit*>(QStringLiteral("labelFileName"))->viewport(),
            Qt::LeftButton);
    else
        QTest::mouseClick(_pRow->findChild<QToolButton*>(QStringLiteral("toolButton_play")),
                          Qt::LeftButton);
}

QWidget* ShownMsgBox()
{
    for (QWidget* pWidget : QApplication::allWidgets())
        if (pWidget->objectName() == QLatin1String("CLS_WgtMsgBox") && pWidget->isVisible())
            return pWidget;
    return nullptr;
}

// Root writes through folder permissions; without CAP_DAC_OVERRIDE on this
// thread a read-only folder is read-only for the test too.
struct ScopedReadOnlyDir
{
    explicit ScopedReadOnlyDir(const QString& _qstrPath) : qstrPath(_qstrPath)
    {
        QFile::setPermissions(qstrPath, QFile::ReadOwner | QFile::ExeOwner);
        if (syscall(SYS_capget, &header, caps) == 0) {
            __user_cap_data_struct reduced[2] = {caps[0], caps[1]};
            reduced[0].effective &= ~((1u << CAP_DAC_OVERRIDE) | (1u << CAP_DAC_READ_SEARCH));
            blCapsChanged = syscall(SYS_capset, &header, reduced) == 0;
        }
    }
    ~ScopedReadOnlyDir()
    {
        if (blCapsChanged) syscall(SYS_capset, &header, caps);
        QFile::setPermissions(qstrPath, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString qstrPath;
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct caps[2] = {};
    bool blCapsChanged = false;
};

}  // namespace

class tst_HistroyList : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_logs.IsReady()); }

    void keepsTwentyNewestFirst()
    {
        QuillTest::ScopedWorkDir workDir;
        CLS_WgtHistroyList panel;
        for (int i = 1; i <= 21; ++i)
            panel.AddHistroy(Video(workDir, QStringLiteral("v%1.mp4").arg(i, 2, 10, QChar('0'))),
                             i);
        QStringList qlstStored = Stored();
        QCOMPARE(qlstStored.size(), 20);
        QCOMPARE(qlstStored.first() + qlstStored.last(), QStringLiteral("v21.mp4:21v02.mp4:2"));
        QCOMPARE(Rows(panel).size(), 20);

        // The fifth played again: to the top with its new position.
        panel.AddHistroy(workDir.FilePath(QStringLiteral("v17.mp4")), 300);
        qlstStored = Stored();
        QCOMPARE(qlstStored.mid(3, 3), QStringList({"v19.mp4:19", "v18.mp4:18", "v16.mp4:16"}));
        QCOMPARE(qlstStored.first(), QStringLiteral("v17.mp4:300"));
        QCOMPARE(Rows(panel).mid(0, 2), QStringList({"v17.mp4", "v21.mp4"}));
    }

    // Each file as found, then after "new.mp4" is played to 2 s.
    void readsFileTolerantly_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<int>("rows");
        QTest::addColumn<QStringList>("stored");
        const auto fnPos = [](const QByteArray& _qbaPos) { return Json({{"/v/a.mp4", _qbaPos}}); };
        QTest::newRow("pos 12.9") << fnPos("12.9") << 1 << QStringList{"new.mp4:2", "a.mp4:0"};
        QTest::newRow("pos 12.0") << fnPos("12.0") << 1 << QStringList{"new.mp4:2", "a.mp4:12"};
        QTest::newRow("pos text") << fnPos("\"12\"") << 1 << QStringList{"new.mp4:2", "a.mp4:0"};
        QTest::newRow("repeated path: both rows, the later position")
            << Json({{"/v/a.mp4", "5"}, {"/v/b.mp4", "7"}, {"/v/a.mp4", "9"}}) << 3
            << QStringList{"new.mp4:2", "a.mp4:9", "b.mp4:7", "a.mp4:9"};
        Entries lstLong;
        QStringList qlstTrimmed{"new.mp4:2"};
        for (int i = 0; i < 25; ++i) {
            lstLong << qMakePair(QStringLiteral("/v/old%1.ps").arg(i), QByteArray::number(i));
            if (i < 19) qlstTrimmed << QStringLiteral("old%1.ps:%1").arg(i);
        }
        QTest::newRow("25 entries: all shown, 20 kept") << Json(lstLong) << 25 << qlstTrimmed;
        const QStringList qlstOnlyNew{"new.mp4:2"};
        QTest::newRow("invalid json") << QByteArray("{\"History\": [") << 0 << qlstOnlyNew;
        QTest::newRow("no History") << QByteArray("{\"history\": []}") << 0 << qlstOnlyNew;
        QTest::newRow("History not an array")
            << QByteArray("{\"History\": {\"path\": \"/x\"}}") << 0 << qlstOnlyNew;
        QTest::newRow("elements not objects")
            << QByteArray("{\"History\": [1, \"a\", {\"pos\": 4}]}") << 3
            << QStringList{"new.mp4:2", ":4", ":4", ":4"};
    }

    void readsFileTolerantly()
    {
        QFETCH(QByteArray, content);
        QFETCH(int, rows);
        QFETCH(QStringList, stored);
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(workDir.WriteFile(kFile, content));
        CLS_WgtHistroyList panel;
        QCOMPARE(Rows(panel).size(), rows);
        // A damaged file is replaced by a sound one.
        panel.AddHistroy(Video(workDir, QStringLiteral("new.mp4")), 2);
        QCOMPARE(Stored(), stored);
        QCOMPARE(Rows(panel).size(), stored.size());
    }

    void failedWriteKeepsOldFile_data()
    {
        QTest::addColumn<bool>("diskFull");
        QTest::newRow("read-only folder") << false;
        QTest::newRow("disk full mid-write") << true;
    }

    void failedWriteKeepsOldFile()
    {
        QFETCH(bool, diskFull);
        QuillTest::ScopedWorkDir workDir;
        const QString qstrA = Video(workDir, QStringLiteral("a.mp4"));
        const QString qstrB = Video(workDir, QStringLiteral("b.mp4"));
        const QByteArray qbaOld = Json({{qstrA, "5"}});
        QVERIFY(workDir.WriteFile(kFile, qbaOld));
        CLS_WgtHistroyList panel;
        if (diskFull) {
            // A file size limit stops every write part-way, as a full disk does.
            rlimit limitOld{};
            getrlimit(RLIMIT_FSIZE, &limitOld);
            const rlimit limitSmall{32, limitOld.rlim_max};
            auto pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
            QVERIFY(setrlimit(RLIMIT_FSIZE, &limitSmall) == 0);
            panel.AddHistroy(qstrB, 8);
            setrlimit(RLIMIT_FSIZE, &limitOld);
            std::signal(SIGXFSZ, pfnOldHandler);
        } else {
            ScopedReadOnlyDir readOnly(workDir.Path());
            if (QFile(workDir.FilePath(QStringLiteral("probe"))).open(QIODevice::WriteOnly))
                QSKIP("this file system lets the test write into a read-only folder");
            QVERIFY(
                NewLogLines([&] {
                    panel.AddHistroy(qstrB, 8);
                }).contains(QStringLiteral("CLS_WgtHistroyList::UpdateResult open File Erroe")));
        }
        QCOMPARE(FileBytes(), qbaOld);
        QCOMPARE(QDir().entryList({kFile + '*'}, QDir::Files), QStringList{kFile});
        // The running program keeps the change and writes it out next time.
        panel.AddHistroy(qstrA, 6);
        QCOMPARE(Stored(), QStringList({"a.mp4:6", "b.mp4:8"}));
    }

    void interruptedWriteLeavesOldFile()
    {
        QuillTest::ScopedWorkDir workDir;
        const QByteArray qbaOld = Json({{Video(workDir, QStringLiteral("a.mp4")), "5"}});
        QVERIFY(workDir.WriteFile(kFile, qbaOld));
        // What a crash leaves: a write never renamed into place, and the torn
        // temporary file of an earlier one.
        {
            QSaveFile unfinished(kFile);
            QVERIFY(unfinished.open(QIODevice::WriteOnly));
            unfinished.write("{\"History\": [{\"pa");
        }
        QVERIFY(workDir.WriteFile(kFile + QStringLiteral(".Xa12bC"), "{\"History\": [{\"pa"));
        CLS_WgtHistroyList panel;
        QCOMPARE(Rows(panel), QStringList{"a.mp4"});
    }

    void continuesAtStoredPositionOrFromStart()
    {
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
        const QString qstrClip = Video(workDir, QStringLiteral("clip.mp4"));
        // The second and third rows have no path: they show and do nothing.
        const QByteArray qbaOld = "{\"History\": [{\"path\": \"" + qstrClip.toUtf8() +
                                  "\", \"pos\": 75}, {\"pos\": 3}, 7]}";
        QVERIFY(workDir.WriteFile(kFile, qbaOld));
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
        QCOMPARE(FileBytes(), qbaOld);
    }

    void missingFileAsksBeforeForgetting_data()
    {
        QTest::addColumn<bool>("byDoubleClick");
        QTest::addColumn<QString>("answer");
        QTest::addColumn<bool>("forgotten");
        QTest::newRow("button, OK clicked") << false << "btn_ok" << true;
        QTest::newRow("button, Cancel clicked") << false << "btn_cancel" << false;
        QTest::newRow("double-click, Escape") << true << "escape" << false;
    }

    void missingFileAsksBeforeForgetting()
    {
        QFETCH(bool, byDoubleClick);
        QFETCH(QString, answer);
        QFETCH(bool, forgotten);
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
        const QString qstrGone = workDir.FilePath(QStringLiteral("gone.mp4"));
        // Hand-edited: the missing file is listed twice.
        const QByteArray qbaOld = Json({{qstrGone, "10"},
                                        {Video(workDir, QStringLiteral("kept.mp4")), "5"},
                                        {qstrGone, "10"}});
        QVERIFY(workDir.WriteFile(kFile, qbaOld));
        CLS_WgtHistroyList panel;
        panel.show();
        QVERIFY(QTest::qWaitForWindowExposed(&panel));
        QSignalSpy spyPlay(&panel, &CLS_WgtHistroyList::SignContinuePlay);

        Activate(Row(panel, 0), byDoubleClick);
        QTRY_VERIFY(ShownMsgBox());
        QWidget* pBox = ShownMsgBox();
        QCOMPARE(pBox->findChild<QLabel*>(QStringLiteral("lbl_content"))->text(),
                 QStringLiteral("msg_videopath_notexist"));
        if (answer.startsWith(QLatin1String("btn_")))
            QTest::mouseClick(pBox->findChild<QPushButton*>(answer), Qt::LeftButton);
        else
            QTest::keyClick(pBox, Qt::Key_Escape);
        QTRY_VERIFY(!ShownMsgBox());

        QCOMPARE(spyPlay.count(), 0);
        QCOMPARE(Rows(panel), forgotten ? QStringList{"kept.mp4"}
                                        : QStringList({"gone.mp4", "kept.mp4", "gone.mp4"}));
        if (forgotten)
            QCOMPARE(Stored(), QStringList{"kept.mp4:5"});
        else
            QCOMPARE(FileBytes(), qbaOld);
    }

    void missingFileIsReportedNotRecorded()
    {
        QuillTest::ScopedWorkDir workDir;
        QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
        CLS_WgtHistroyList panel;
        panel.AddHistroy(workDir.FilePath(QStringLiteral("vanished.sdv")), 40);
        QTRY_VERIFY(ShownMsgBox());
        QTest::keyClick(ShownMsgBox(), Qt::Key_Return);
        QTRY_VERIFY(!ShownMsgBox());
        QVERIFY(!QFile::exists(kFile) && Rows(panel).isEmpty());
    }

    void titleBarAsksToHide()
    {
        QuillTest::ScopedWorkDir workDir;
        CLS_WgtHistroyList panel;
        auto* pBar = panel.findChild<CLS_WgtPlayer7ToolboxBar*>();
        QSignalSpy spyHide(&panel, &CLS_WgtHistroyList::SignHideHistrouListWgt);
        QSignalSpy spyBar(pBar, &CLS_WgtPlayer7ToolboxBar::SignClicked);

        QTest::mouseClick(pBar->findChild<QToolButton*>(QStringLiteral("tlb_arrow")),
                          Qt::LeftButton);
        QTest::mousePress(pBar, Qt::LeftButton, {}, QPoint(10, 10));
        QCOMPARE(spyHide.count(), 2);
        // The arrow toggles itself, yet the bar always reports "not checked".
        QCOMPARE(spyBar, QList<QVariantList>({{false}, {false}}));
    }

    void barCaptionAndArrow()
    {
        for (const QString& qstrLanguage : QStringList{"Arabic", "Hebrew", "arabic"}) {
            qApp->setProperty("language", qstrLanguage);
            CLS_WgtPlayer7ToolboxBar bar;
            qApp->setProperty("language", QVariant());
            QCOMPARE(bar.findChild<QLabel*>()->alignment() == (Qt::AlignRight | Qt::AlignVCenter),
                     qstrLanguage != QLatin1String("arabic"));
        }
        CLS_WgtPlayer7ToolboxBar bar;
        bar.resize(200, 40);
        bar.show();
        QVERIFY(QTest::qWaitForWindowExposed(&bar));
        QCOMPARE(bar.findChild<QToolButton*>()->geometry(), QRect(170, 0, 30, 40));
        bar.resize(260, 40);
        QTRY_COMPARE(bar.findChild<QToolButton*>()->geometry(), QRect(230, 0, 30, 40));
    }

private:
    QString NewLogLines(const std::function<void()>& _fnAction)
    {
        const int iBefore = m_logs.Text(QStringLiteral("ModuleKoPlayer")).size();
        _fnAction();
        return m_logs.Text(QStringLiteral("ModuleKoPlayer")).mid(iBefore);
    }
    QuillTest::TestLogFiles m_logs;
};

QTEST_MAIN(tst_HistroyList)
#include "tst_HistroyList.moc"
