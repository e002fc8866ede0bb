#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayer7ToolboxBar.h"
#include "CLS_WgtPlayerListItem.h"
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
    for (const QJsonValue& jsonValue : jsonHistory) {
        const QJsonObject jsonEntry = jsonValue.toObject();
        qlstEntries << QFileInfo(jsonEntry.value(QStringLiteral("path")).toString()).fileName() +
                           ':' + QString::number(jsonEntry.value(QStringLiteral("pos")).toInt(-1));
    }
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

void ClickButton(QWidget* _pRow)
{
    QTest::mouseClick(_pRow->findChild<QToolButton*>(QStringLiteral("toolButton_play")),
                      Qt::LeftButton);
}

void DoubleClickName(QWidget* _pRow)
{
    QTest::mouseDClick(_pRow->findChild<QTextEdit*>(QStringLiteral("labelFileName"))->viewport(),
                       Qt::LeftButton);
}

QWidget* ShownMsgBox()
{
    for (QWidget* pWidget : QApplication::allWidgets()) {
        if (pWidget->objectName() == QLatin1String("CLS_WgtMsgBox") && pWidget->isVisible())
            return pWidget;
    }
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
    void initTestCase();
    void keepsTwentyNewestFirst();
    void writesIndentedOrderedJson();
    void loadsLongFileWholeThenTrims();
    void repeatedPathLoadsTwiceAndWritesBoth();
    void readsWholeSecondsOnly_data();
    void readsWholeSecondsOnly();
    void toleratesDamagedFiles_data();
    void toleratesDamagedFiles();
    void failedWriteKeepsOldFile_data();
    void failedWriteKeepsOldFile();
    void interruptedWriteLeavesOldFile();
    void continuesAtStoredPositionOrFromStart();
    void missingFileAsksBeforeForgetting_data();
    void missingFileAsksBeforeForgetting();
    void missingFileIsReportedNotRecorded();
    void titleBarAsksToHide();
    void captionRightToLeftByLanguage_data();
    void captionRightToLeftByLanguage();
    void arrowSitsOverRightEnd();
    void stylesFromSkinFiles();

private:
    QString NewLogLines(const std::function<void()>& _fnAction);
    QuillTest::TestLogFiles m_logs;
};

void tst_HistroyList::initTestCase()
{
    QVERIFY(m_logs.IsReady());
}

QString tst_HistroyList::NewLogLines(const std::function<void()>& _fnAction)
{
    const int iBefore = m_logs.Text(QStringLiteral("ModuleKoPlayer")).size();
    _fnAction();
    return m_logs.Text(QStringLiteral("ModuleKoPlayer")).mid(iBefore);
}

void tst_HistroyList::keepsTwentyNewestFirst()
{
    QuillTest::ScopedWorkDir workDir;
    {
        CLS_WgtHistroyList panel;
        for (int i = 1; i <= 21; ++i)
            panel.AddHistroy(
                Video(workDir, QStringLiteral("v%1.mp4").arg(i, 2, 10, QLatin1Char('0'))), i);
        QStringList qlstStored = Stored();
        QCOMPARE(qlstStored.size(), 20);
        QCOMPARE(qlstStored.first(), QStringLiteral("v21.mp4:21"));
        QCOMPARE(qlstStored.last(), QStringLiteral("v02.mp4:2"));
        QCOMPARE(Rows(panel).size(), 20);

        // The fifth played again: to the top with its new position.
        panel.AddHistroy(workDir.FilePath(QStringLiteral("v17.mp4")), 300);
        qlstStored = Stored();
        QCOMPARE(qlstStored.size(), 20);
        QCOMPARE(qlstStored.mid(0, 6), QStringList({"v17.mp4:300", "v21.mp4:21", "v20.mp4:20",
                                                    "v19.mp4:19", "v18.mp4:18", "v16.mp4:16"}));
        QCOMPARE(Rows(panel).mid(0, 2), QStringList({"v17.mp4", "v21.mp4"}));
    }
    QVERIFY(!QFile::exists(QStringLiteral("LocalPlayHistory.ini")));
}

void tst_HistroyList::writesIndentedOrderedJson()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = Video(workDir, QStringLiteral("a.mp4"));
    const QString qstrB = Video(workDir, QStringLiteral("b.sdv"));
    CLS_WgtHistroyList panel;
    const QString qstrLog = NewLogLines([&] {
        panel.AddHistroy(qstrA, 0);
        panel.AddHistroy(qstrB, 75);
    });
    QCOMPARE(qstrLog.count(QStringLiteral(" Add Histroy Success!")), 2);
    QCOMPARE(FileBytes(),
             "{\n    \"History\": [\n"
             "        {\n            \"path\": \"" +
                 qstrB.toUtf8() +
                 "\",\n            \"pos\": 75\n        },\n"
                 "        {\n            \"path\": \"" +
                 qstrA.toUtf8() + "\",\n            \"pos\": 0\n        }\n    ]\n}\n");
}

void tst_HistroyList::loadsLongFileWholeThenTrims()
{
    QuillTest::ScopedWorkDir workDir;
    Entries lstEntries;
    for (int i = 0; i < 25; ++i)
        lstEntries << qMakePair(Video(workDir, QStringLiteral("old%1.ps").arg(i)),
                                QByteArray::number(i));
    QVERIFY(workDir.WriteFile(kFile, Json(lstEntries)));
    CLS_WgtHistroyList panel;
    QCOMPARE(Rows(panel).size(), 25);

    panel.AddHistroy(Video(workDir, QStringLiteral("new.avi")), 9);
    const QStringList qlstStored = Stored();
    QCOMPARE(qlstStored.size(), 20);
    QCOMPARE(qlstStored.first(), QStringLiteral("new.avi:9"));
    QCOMPARE(qlstStored.at(1), QStringLiteral("old0.ps:0"));
    QCOMPARE(qlstStored.last(), QStringLiteral("old18.ps:18"));
    QCOMPARE(Rows(panel).size(), 20);
}

void tst_HistroyList::repeatedPathLoadsTwiceAndWritesBoth()
{
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = Video(workDir, QStringLiteral("a.mp4"));
    QVERIFY(workDir.WriteFile(
        kFile, Json({{qstrA, "5"}, {Video(workDir, QStringLiteral("b.mp4")), "7"}, {qstrA, "9"}})));
    CLS_WgtHistroyList panel;
    QCOMPARE(Rows(panel), QStringList({"a.mp4", "b.mp4", "a.mp4"}));

    panel.AddHistroy(Video(workDir, QStringLiteral("c.mp4")), 1);
    QCOMPARE(Stored(), QStringList({"c.mp4:1", "a.mp4:9", "b.mp4:7", "a.mp4:9"}));
    panel.AddHistroy(qstrA, 3);
    QCOMPARE(Stored(), QStringList({"a.mp4:3", "c.mp4:1", "b.mp4:7"}));
    QCOMPARE(Rows(panel).size(), 3);
}

void tst_HistroyList::readsWholeSecondsOnly_data()
{
    QTest::addColumn<QByteArray>("pos");
    QTest::addColumn<int>("expected");
    QTest::newRow("fraction") << QByteArray("12.9") << 0;
    QTest::newRow("whole in decimal form") << QByteArray("12.0") << 12;
    QTest::newRow("text") << QByteArray("\"12\"") << 0;
    QTest::newRow("exponent") << QByteArray("1e3") << 1000;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("too large") << QByteArray("2147483648") << 0;
    QTest::newRow("null") << QByteArray("null") << 0;
}

void tst_HistroyList::readsWholeSecondsOnly()
{
    QFETCH(QByteArray, pos);
    QFETCH(int, expected);
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(kFile, Json({{Video(workDir, QStringLiteral("a.mp4")), pos}})));
    CLS_WgtHistroyList panel;
    panel.AddHistroy(Video(workDir, QStringLiteral("b.mp4")), 1);
    QCOMPARE(Stored(), QStringList({"b.mp4:1", "a.mp4:" + QString::number(expected)}));
}

void tst_HistroyList::toleratesDamagedFiles_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("rows");
    QTest::addColumn<bool>("logsNoHistroy");
    QTest::newRow("empty file") << QByteArray() << 0 << false;
    QTest::newRow("invalid json") << QByteArray("{\"History\": [") << 0 << false;
    QTest::newRow("no History") << QByteArray("{\"history\": []}") << 0 << true;
    QTest::newRow("top level array") << QByteArray("[{\"History\": []}]") << 0 << true;
    QTest::newRow("History not an array")
        << QByteArray("{\"History\": {\"path\": \"/x\"}}") << 0 << false;
    QTest::newRow("elements not objects")
        << QByteArray("{\"History\": [1, \"a\", {\"pos\": 4}]}") << 3 << false;
}

void tst_HistroyList::toleratesDamagedFiles()
{
    QFETCH(QByteArray, content);
    QFETCH(int, rows);
    QFETCH(bool, logsNoHistroy);
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(kFile, content));
    std::unique_ptr<CLS_WgtHistroyList> pPanel;
    const QString qstrLog = NewLogLines([&] { pPanel.reset(new CLS_WgtHistroyList()); });
    QCOMPARE(Rows(*pPanel).size(), rows);
    QCOMPARE(qstrLog.contains(QStringLiteral("CLS_WgtHistroyList::InitHistroyLog  not Histroy")),
             logsNoHistroy);

    // The next entry replaces the damaged file with a sound one.
    pPanel->AddHistroy(Video(workDir, QStringLiteral("new.mp4")), 2);
    QCOMPARE(Stored().size(), rows + 1);
    QCOMPARE(Stored().first(), QStringLiteral("new.mp4:2"));
}

void tst_HistroyList::failedWriteKeepsOldFile_data()
{
    QTest::addColumn<bool>("diskFull");
    QTest::newRow("read-only folder") << false;
    QTest::newRow("disk full mid-write") << true;
}

void tst_HistroyList::failedWriteKeepsOldFile()
{
    QFETCH(bool, diskFull);
    QuillTest::ScopedWorkDir workDir;
    const QString qstrA = Video(workDir, QStringLiteral("a.mp4"));
    const QString qstrB = Video(workDir, QStringLiteral("b.mp4"));
    const QByteArray qbaOld = Json({{qstrA, "5"}});
    QVERIFY(workDir.WriteFile(kFile, qbaOld));
    CLS_WgtHistroyList panel;

    QString qstrLog;
    if (diskFull) {
        // A file size limit stops every write part-way, as a full disk does.
        rlimit limitOld{};
        getrlimit(RLIMIT_FSIZE, &limitOld);
        rlimit limitSmall = limitOld;
        limitSmall.rlim_cur = 32;
        auto pfnOldHandler = std::signal(SIGXFSZ, SIG_IGN);
        QVERIFY(setrlimit(RLIMIT_FSIZE, &limitSmall) == 0);
        panel.AddHistroy(qstrB, 8);
        setrlimit(RLIMIT_FSIZE, &limitOld);
        std::signal(SIGXFSZ, pfnOldHandler);
    } else {
        ScopedReadOnlyDir readOnly(workDir.Path());
        if (QFile(workDir.FilePath(QStringLiteral("probe"))).open(QIODevice::WriteOnly))
            QSKIP("this file system lets the test write into a read-only folder");
        qstrLog = NewLogLines([&] { panel.AddHistroy(qstrB, 8); });
        QVERIFY(
            qstrLog.contains(QStringLiteral("CLS_WgtHistroyList::UpdateResult open File Erroe")));
    }
    QCOMPARE(FileBytes(), qbaOld);
    QCOMPARE(QDir().entryList({kFile + '*'}, QDir::Files), QStringList{kFile});
    // The running program keeps the change and writes it out next time.
    QCOMPARE(Rows(panel), QStringList({"b.mp4", "a.mp4"}));
    panel.AddHistroy(qstrA, 6);
    QCOMPARE(Stored(), QStringList({"a.mp4:6", "b.mp4:8"}));
}

void tst_HistroyList::interruptedWriteLeavesOldFile()
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
    QCOMPARE(FileBytes(), qbaOld);
    CLS_WgtHistroyList panel;
    QCOMPARE(Rows(panel), QStringList{"a.mp4"});
}

void tst_HistroyList::continuesAtStoredPositionOrFromStart()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    const QString qstrClip = Video(workDir, QStringLiteral("clip.mp4"));
    // The second and third rows have no path: they show and do nothing.
    const QByteArray qbaOld =
        "{\"History\": [{\"path\": \"" + qstrClip.toUtf8() + "\", \"pos\": 75}, {\"pos\": 3}, 7]}";
    QVERIFY(workDir.WriteFile(kFile, qbaOld));
    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(Rows(panel).size(), 3);
    QSignalSpy spy(&panel, &CLS_WgtHistroyList::SignContinuePlay);

    ClickButton(Row(panel, 0));
    DoubleClickName(Row(panel, 0));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0), QVariantList({qstrClip, QVariant::fromValue(75L)}));
    QCOMPARE(spy.at(1), QVariantList({qstrClip, QVariant::fromValue(0L)}));

    ClickButton(Row(panel, 1));
    DoubleClickName(Row(panel, 1));
    QCOMPARE(spy.count(), 2);
    QVERIFY(!ShownMsgBox());
    QCOMPARE(FileBytes(), qbaOld);
}

void tst_HistroyList::missingFileAsksBeforeForgetting_data()
{
    QTest::addColumn<bool>("byDoubleClick");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("forgotten");
    QTest::newRow("button, OK clicked") << false << "btn_ok" << true;
    QTest::newRow("button, Enter") << false << "enter" << true;
    QTest::newRow("button, Cancel clicked") << false << "btn_cancel" << false;
    QTest::newRow("double-click, OK clicked") << true << "btn_ok" << true;
    QTest::newRow("double-click, Escape") << true << "escape" << false;
}

void tst_HistroyList::missingFileAsksBeforeForgetting()
{
    QFETCH(bool, byDoubleClick);
    QFETCH(QString, answer);
    QFETCH(bool, forgotten);
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    const QString qstrGone = workDir.FilePath(QStringLiteral("gone.mp4"));
    // Hand-edited: the missing file is listed twice.
    const QByteArray qbaOld = Json(
        {{qstrGone, "10"}, {Video(workDir, QStringLiteral("kept.mp4")), "5"}, {qstrGone, "10"}});
    QVERIFY(workDir.WriteFile(kFile, qbaOld));
    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QSignalSpy spyPlay(&panel, &CLS_WgtHistroyList::SignContinuePlay);

    byDoubleClick ? DoubleClickName(Row(panel, 0)) : ClickButton(Row(panel, 0));
    QTRY_VERIFY(ShownMsgBox());
    QWidget* pBox = ShownMsgBox();
    QCOMPARE(pBox->findChild<QLabel*>(QStringLiteral("lbl_title"))->text(),
             QStringLiteral("lab_notice"));
    QCOMPARE(pBox->findChild<QLabel*>(QStringLiteral("lbl_content"))->text(),
             QStringLiteral("msg_videopath_notexist"));
    QCOMPARE(pBox->findChildren<QPushButton*>().size(), 2);
    if (answer == QLatin1String("enter") || answer == QLatin1String("escape"))
        QTest::keyClick(pBox, answer == QLatin1String("enter") ? Qt::Key_Return : Qt::Key_Escape);
    else
        QTest::mouseClick(pBox->findChild<QPushButton*>(answer), Qt::LeftButton);
    QTRY_VERIFY(!ShownMsgBox());

    QCOMPARE(spyPlay.count(), 0);
    QCOMPARE(Rows(panel), forgotten ? QStringList{"kept.mp4"}
                                    : QStringList({"gone.mp4", "kept.mp4", "gone.mp4"}));
    if (forgotten)
        QCOMPARE(Stored(), QStringList{"kept.mp4:5"});
    else
        QCOMPARE(FileBytes(), qbaOld);
}

void tst_HistroyList::missingFileIsReportedNotRecorded()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    CLS_WgtHistroyList panel;
    panel.AddHistroy(workDir.FilePath(QStringLiteral("vanished.sdv")), 40);
    QTRY_VERIFY(ShownMsgBox());
    QCOMPARE(ShownMsgBox()->findChild<QLabel*>(QStringLiteral("lbl_content"))->text(),
             QStringLiteral("msg_path_error"));
    QCOMPARE(ShownMsgBox()->findChildren<QPushButton*>().size(), 1);
    QTest::keyClick(ShownMsgBox(), Qt::Key_Return);
    QTRY_VERIFY(!ShownMsgBox());
    QVERIFY(!QFile::exists(kFile));
    QVERIFY(Rows(panel).isEmpty());
}

void tst_HistroyList::titleBarAsksToHide()
{
    QuillTest::ScopedWorkDir workDir;
    CLS_WgtHistroyList panel;
    auto* pBar = panel.findChild<CLS_WgtPlayer7ToolboxBar*>();
    QCOMPARE(pBar->parentWidget()->objectName(), QStringLiteral("widget_title"));
    QCOMPARE(pBar->findChild<QLabel*>()->text(), QStringLiteral("lab_history_playback"));
    QSignalSpy spyHide(&panel, &CLS_WgtHistroyList::SignHideHistrouListWgt);
    QSignalSpy spyBar(pBar, &CLS_WgtPlayer7ToolboxBar::SignClicked);

    QTest::mouseClick(pBar->findChild<QToolButton*>(QStringLiteral("tlb_arrow")), Qt::LeftButton);
    QTest::mousePress(pBar, Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(spyHide.count(), 2);
    // The arrow toggles itself, yet the bar always reports "not checked".
    QCOMPARE(spyBar, QList<QVariantList>({{false}, {false}}));
}

void tst_HistroyList::captionRightToLeftByLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("rightAligned");
    QTest::newRow("Arabic") << "Arabic" << true;
    QTest::newRow("Hebrew") << "Hebrew" << true;
    QTest::newRow("Farsi") << "Farsi" << true;
    QTest::newRow("arabic") << "arabic" << false;
}

void tst_HistroyList::captionRightToLeftByLanguage()
{
    QFETCH(QString, language);
    QFETCH(bool, rightAligned);
    qApp->setProperty("language", language);
    CLS_WgtPlayer7ToolboxBar bar;
    qApp->setProperty("language", QVariant());
    const Qt::Alignment alignment = bar.findChild<QLabel*>()->alignment();
    QCOMPARE(alignment == (Qt::AlignRight | Qt::AlignVCenter), rightAligned);
}

void tst_HistroyList::arrowSitsOverRightEnd()
{
    CLS_WgtPlayer7ToolboxBar bar;
    bar.resize(200, 40);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    QCOMPARE(bar.findChild<QToolButton*>()->geometry(), QRect(170, 0, 30, 40));
    QCOMPARE(bar.findChild<QLabel*>()->geometry(), QRect(0, 0, 200, 40));
    bar.resize(260, 40);
    QTRY_COMPARE(bar.findChild<QToolButton*>()->geometry(), QRect(230, 0, 30, 40));
}

void tst_HistroyList::stylesFromSkinFiles()
{
    // Skin 1 is light; the bar's file is missing and the bar stays unstyled.
    QuillTest::ScopedWorkDir workDir;
    const QString qstrFolder = QStringLiteral("resource/skin/light/ModuleKoPlayer/qss/");
    QVERIFY(workDir.WriteFile(qstrFolder + QStringLiteral("ModuleKoPlayer.qss"), "#listWidget {}"));
    std::unique_ptr<CLS_WgtHistroyList> pPanel;
    qApp->setProperty("Skin", 1);
    const QString qstrLog = NewLogLines([&] { pPanel.reset(new CLS_WgtHistroyList()); });
    qApp->setProperty("Skin", QVariant());

    QCOMPARE(pPanel->styleSheet(), QStringLiteral("#listWidget {}"));
    QVERIFY(pPanel->findChild<CLS_WgtPlayer7ToolboxBar*>()->styleSheet().isEmpty());
    QVERIFY(qstrLog.contains(
        QStringLiteral("COMMON_PLATFORM_WIN SetStyleSheetByFile Loading finished")));
    QVERIFY(qstrLog.contains(
        "[CLS_WgtPlayer7ToolboxBar::CLS_WgtPlayer7ToolboxBar] CLS_WgtPlayer7ToolboxBar "
        "COMMON_PLATFORM_WIN SetStyleSheetByFile Loading Failed,Path = ./" +
        qstrFolder + "ToolBar.qss"));
}

QTEST_MAIN(tst_HistroyList)
#include "tst_HistroyList.moc"
