#include "CLS_ViewBasic.h"
#include "CLS_WgtHistroyList.h"
#include "CLS_WgtPlayer7ToolboxBar.h"
#include "CLS_WgtPlayerListItem.h"
#include "QuillTestSupport.h"
#include "TestLogFiles.h"

#include <QApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

namespace {

const QString kHistroyFile = QStringLiteral("HistroyInfo.json");

QByteArray ReadHistroyBytes()
{
    QFile file(kHistroyFile);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray Entry(const QString& _qstrPath, int _iPos)
{
    return "{\"path\": \"" + _qstrPath.toUtf8() + "\", \"pos\": " + QByteArray::number(_iPos) + '}';
}

QListWidget* ListOf(CLS_WgtHistroyList& _panel)
{
    return _panel.findChild<QListWidget*>(QStringLiteral("listWidget"));
}

QWidget* RowAt(CLS_WgtHistroyList& _panel, int _iRow)
{
    QListWidget* pList = ListOf(_panel);
    return pList && _iRow < pList->count() ? pList->itemWidget(pList->item(_iRow)) : nullptr;
}

QWidget* FileNameViewport(QWidget* _pRow)
{
    auto* pText = _pRow ? _pRow->findChild<QTextEdit*>(QStringLiteral("labelFileName")) : nullptr;
    return pText ? pText->viewport() : nullptr;
}

QToolButton* ContinueButton(QWidget* _pRow)
{
    return _pRow ? _pRow->findChild<QToolButton*>(QStringLiteral("toolButton_play")) : nullptr;
}

// The message box on screen, whichever window it was attached to.
QWidget* ShownMsgBox()
{
    const QWidgetList lstWidgets = QApplication::allWidgets();
    for (QWidget* pWidget : lstWidgets) {
        if (pWidget->objectName() == QLatin1String("CLS_WgtMsgBox") && pWidget->isVisible())
            return pWidget;
    }
    return nullptr;
}

QString MsgBoxText(QWidget* _pBox, const char* _pLabel)
{
    auto* pLabel = _pBox->findChild<QLabel*>(QLatin1String(_pLabel));
    return pLabel ? pLabel->text() : QString();
}

}  // namespace

class tst_HistroyPanel : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void continuesAtStoredPositionOrFromStart();
    void missingFileAsksBeforeForgetting_data();
    void missingFileAsksBeforeForgetting();
    void emptyPathRowsDoNothing();
    void missingFileIsReportedNotRecorded();
    void titleBarAsksToHide();
    void captionRightToLeftByLanguage_data();
    void captionRightToLeftByLanguage();
    void arrowSitsOverRightEnd();
    void stylesFromSkinFiles_data();
    void stylesFromSkinFiles();

private:
    QuillTest::TestLogFiles* m_pLogs = nullptr;
};

void tst_HistroyPanel::initTestCase()
{
    m_pLogs = new QuillTest::TestLogFiles();
    QVERIFY(m_pLogs->IsReady());
}

void tst_HistroyPanel::continuesAtStoredPositionOrFromStart()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.WriteFile(QStringLiteral("clip.mp4"), "video"));
    const QString qstrClip = workDir.FilePath(QStringLiteral("clip.mp4"));
    QVERIFY(workDir.WriteFile(kHistroyFile, "{\"History\": [" + Entry(qstrClip, 75) + "]}"));

    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QSignalSpy spy(&panel, &CLS_WgtHistroyList::SignContinuePlay);
    QWidget* pRow = RowAt(panel, 0);
    QVERIFY(ContinueButton(pRow) && FileNameViewport(pRow));
    QCOMPARE(ContinueButton(pRow)->toolTip(), QStringLiteral("btn_continuation"));

    QTest::mouseClick(ContinueButton(pRow), Qt::LeftButton);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toString(), qstrClip);
    QCOMPARE(spy.at(0).at(1).toLongLong(), 75LL);

    QTest::mouseDClick(FileNameViewport(pRow), Qt::LeftButton);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).toString(), qstrClip);
    QCOMPARE(spy.at(1).at(1).toLongLong(), 0LL);
}

void tst_HistroyPanel::missingFileAsksBeforeForgetting_data()
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

void tst_HistroyPanel::missingFileAsksBeforeForgetting()
{
    QFETCH(bool, byDoubleClick);
    QFETCH(QString, answer);
    QFETCH(bool, forgotten);

    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    QVERIFY(workDir.WriteFile(QStringLiteral("kept.mp4"), "video"));
    const QString qstrKept = workDir.FilePath(QStringLiteral("kept.mp4"));
    const QString qstrGone = workDir.FilePath(QStringLiteral("gone.mp4"));
    // Hand-edited: the missing file is listed twice.
    const QByteArray qbaOld = "{\"History\": [" + Entry(qstrGone, 10) + ',' + Entry(qstrKept, 5) +
                              ',' + Entry(qstrGone, 10) + "]}";
    QVERIFY(workDir.WriteFile(kHistroyFile, qbaOld));

    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(ListOf(panel)->count(), 3);
    QSignalSpy spyPlay(&panel, &CLS_WgtHistroyList::SignContinuePlay);

    QWidget* pRow = RowAt(panel, 0);
    if (byDoubleClick)
        QTest::mouseDClick(FileNameViewport(pRow), Qt::LeftButton);
    else
        QTest::mouseClick(ContinueButton(pRow), Qt::LeftButton);

    QTRY_VERIFY(ShownMsgBox());
    QWidget* pBox = ShownMsgBox();
    QCOMPARE(MsgBoxText(pBox, "lbl_title"), QStringLiteral("lab_notice"));
    QCOMPARE(MsgBoxText(pBox, "lbl_content"), QStringLiteral("msg_videopath_notexist"));
    QCOMPARE(pBox->findChildren<QPushButton*>().size(), 2);
    QVERIFY(pBox->findChild<QPushButton*>(QStringLiteral("btn_ok"))->isDefault());

    if (answer == QLatin1String("enter"))
        QTest::keyClick(pBox, Qt::Key_Return);
    else if (answer == QLatin1String("escape"))
        QTest::keyClick(pBox, Qt::Key_Escape);
    else
        QTest::mouseClick(pBox->findChild<QPushButton*>(answer), Qt::LeftButton);
    QTRY_VERIFY(!ShownMsgBox());

    QCOMPARE(spyPlay.count(), 0);
    if (forgotten) {
        QCOMPARE(ListOf(panel)->count(), 1);
        const QJsonArray jsonHistory = QJsonDocument::fromJson(ReadHistroyBytes())
                                           .object()
                                           .value(QStringLiteral("History"))
                                           .toArray();
        QCOMPARE(jsonHistory.size(), 1);
        QCOMPARE(jsonHistory.at(0).toObject().value(QStringLiteral("path")).toString(), qstrKept);
        QCOMPARE(jsonHistory.at(0).toObject().value(QStringLiteral("pos")).toInt(), 5);
    } else {
        QCOMPARE(ListOf(panel)->count(), 3);
        QCOMPARE(ReadHistroyBytes(), qbaOld);
    }
}

void tst_HistroyPanel::emptyPathRowsDoNothing()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    const QByteArray qbaOld = "{\"History\": [{\"pos\": 3}, 7]}";
    QVERIFY(workDir.WriteFile(kHistroyFile, qbaOld));

    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    QCOMPARE(ListOf(panel)->count(), 2);
    QSignalSpy spyPlay(&panel, &CLS_WgtHistroyList::SignContinuePlay);
    auto* pRow = qobject_cast<CLS_WgtPlayerListItem*>(RowAt(panel, 0));
    QVERIFY(pRow);
    QSignalSpy spyRowButton(pRow, &CLS_WgtPlayerListItem::SignItemBtnClicked);
    QSignalSpy spyRowText(pRow, &CLS_WgtPlayerListItem::SignTextDoubleCliced);

    QTest::mouseClick(ContinueButton(pRow), Qt::LeftButton);
    QTest::mouseDClick(FileNameViewport(pRow), Qt::LeftButton);
    // The row reports its button even without a path; the panel ignores it.
    QCOMPARE(spyRowButton.count(), 1);
    QCOMPARE(spyRowText.count(), 0);
    QCOMPARE(spyPlay.count(), 0);
    QVERIFY(!ShownMsgBox());
    QCOMPARE(ListOf(panel)->count(), 2);
    QCOMPARE(ReadHistroyBytes(), qbaOld);
}

void tst_HistroyPanel::missingFileIsReportedNotRecorded()
{
    QuillTest::ScopedWorkDir workDir;
    QVERIFY(workDir.LinkFromBin(QStringLiteral("libWgtMsgBox.so")));
    CLS_WgtHistroyList panel;
    panel.AddHistroy(workDir.FilePath(QStringLiteral("vanished.sdv")), 40);

    QTRY_VERIFY(ShownMsgBox());
    QWidget* pBox = ShownMsgBox();
    QCOMPARE(MsgBoxText(pBox, "lbl_content"), QStringLiteral("msg_path_error"));
    QCOMPARE(pBox->findChildren<QPushButton*>().size(), 1);
    QVERIFY(pBox->findChild<QPushButton*>(QStringLiteral("btn_ok")));
    QVERIFY(!QFile::exists(kHistroyFile));
    QCOMPARE(ListOf(panel)->count(), 0);

    QTest::keyClick(pBox, Qt::Key_Return);
    QTRY_VERIFY(!ShownMsgBox());
    QVERIFY(!QFile::exists(kHistroyFile));
}

void tst_HistroyPanel::titleBarAsksToHide()
{
    QuillTest::ScopedWorkDir workDir;
    CLS_WgtHistroyList panel;
    panel.show();
    QVERIFY(QTest::qWaitForWindowExposed(&panel));
    auto* pBar = panel.findChild<CLS_WgtPlayer7ToolboxBar*>();
    QVERIFY(pBar);
    QCOMPARE(pBar->parentWidget(), panel.findChild<QWidget*>(QStringLiteral("widget_title")));
    QCOMPARE(pBar->findChild<QLabel*>(QStringLiteral("lbl_text"))->text(),
             QStringLiteral("lab_history_playback"));

    QSignalSpy spyHide(&panel, &CLS_WgtHistroyList::SignHideHistrouListWgt);
    QSignalSpy spyBar(pBar, &CLS_WgtPlayer7ToolboxBar::SignClicked);
    QTest::mouseClick(pBar->findChild<QToolButton*>(QStringLiteral("tlb_arrow")), Qt::LeftButton);
    QTest::mousePress(pBar, Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(spyHide.count(), 2);
    QCOMPARE(spyBar.count(), 2);
    // The arrow toggles itself, but the bar always reports "not checked".
    QCOMPARE(spyBar.at(0).at(0).toBool(), false);
    QCOMPARE(spyBar.at(1).at(0).toBool(), false);
}

void tst_HistroyPanel::captionRightToLeftByLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<bool>("rightAligned");
    QTest::newRow("Arabic") << "Arabic" << true;
    QTest::newRow("Hebrew") << "Hebrew" << true;
    QTest::newRow("Farsi") << "Farsi" << true;
    QTest::newRow("arabic") << "arabic" << false;
    QTest::newRow("English") << "English" << false;
}

void tst_HistroyPanel::captionRightToLeftByLanguage()
{
    QFETCH(QString, language);
    QFETCH(bool, rightAligned);
    qApp->setProperty("language", language);
    CLS_WgtPlayer7ToolboxBar bar;
    qApp->setProperty("language", QVariant());
    const Qt::Alignment alignment = bar.findChild<QLabel*>(QStringLiteral("lbl_text"))->alignment();
    QCOMPARE(bool(alignment & Qt::AlignRight), rightAligned);
    if (rightAligned) QVERIFY(alignment & Qt::AlignVCenter);
}

void tst_HistroyPanel::arrowSitsOverRightEnd()
{
    CLS_WgtPlayer7ToolboxBar bar;
    bar.resize(200, 40);
    bar.show();
    QVERIFY(QTest::qWaitForWindowExposed(&bar));
    auto* pArrow = bar.findChild<QToolButton*>(QStringLiteral("tlb_arrow"));
    auto* pLabel = bar.findChild<QLabel*>(QStringLiteral("lbl_text"));
    QCOMPARE(pArrow->geometry(), QRect(170, 0, 30, 40));
    QCOMPARE(pLabel->geometry(), QRect(0, 0, 200, 40));

    bar.resize(260, 40);
    QTRY_COMPARE(pArrow->geometry(), QRect(230, 0, 30, 40));
    QCOMPARE(pLabel->geometry(), QRect(0, 0, 260, 40));
}

void tst_HistroyPanel::stylesFromSkinFiles_data()
{
    QTest::addColumn<int>("skin");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<bool>("present");
    QTest::newRow("light") << 1 << "light" << true;
    QTest::newRow("dark") << 0 << "dark" << true;
    QTest::newRow("unknown skin reads dark") << 7 << "dark" << true;
    QTest::newRow("missing files") << 0 << "dark" << false;
}

void tst_HistroyPanel::stylesFromSkinFiles()
{
    QFETCH(int, skin);
    QFETCH(QString, folder);
    QFETCH(bool, present);
    QuillTest::ScopedWorkDir workDir;
    const QString qstrPanelQss =
        QStringLiteral("resource/skin/%1/ModuleKoPlayer/qss/ModuleKoPlayer.qss").arg(folder);
    const QString qstrBarQss =
        QStringLiteral("resource/skin/%1/ModuleKoPlayer/qss/ToolBar.qss").arg(folder);
    const QByteArray qbaPanelStyle = "#listWidget { color: #" + folder.toUtf8() + "01; }";
    const QByteArray qbaBarStyle = "#lbl_text { color: #" + folder.toUtf8() + "02; }";
    if (present) {
        QVERIFY(workDir.WriteFile(qstrPanelQss, qbaPanelStyle));
        QVERIFY(workDir.WriteFile(qstrBarQss, qbaBarStyle));
    }

    const QString qstrLogBefore = m_pLogs->Text(QStringLiteral("ModuleKoPlayer"));
    qApp->setProperty("Skin", skin);
    CLS_WgtHistroyList panel;
    qApp->setProperty("Skin", QVariant());
    const QString qstrNewLog =
        m_pLogs->Text(QStringLiteral("ModuleKoPlayer")).mid(qstrLogBefore.size());
    auto* pBar = panel.findChild<CLS_WgtPlayer7ToolboxBar*>();

    if (present) {
        QCOMPARE(panel.styleSheet(), QString::fromUtf8(qbaPanelStyle));
        QCOMPARE(pBar->styleSheet(), QString::fromUtf8(qbaBarStyle));
        QVERIFY(qstrNewLog.contains(
            QStringLiteral("COMMON_PLATFORM_WIN SetStyleSheetByFile Loading finished")));
        QVERIFY(
            qstrNewLog.contains(QStringLiteral(" CLS_WgtPlayer7ToolboxBar COMMON_PLATFORM_WIN "
                                               "SetStyleSheetByFile Loading finished")));
    } else {
        QVERIFY(panel.styleSheet().isEmpty());
        QVERIFY(pBar->styleSheet().isEmpty());
        QVERIFY(qstrNewLog.contains(QStringLiteral("SetStyleSheetByFile Loading Failed,Path = ./") +
                                    qstrPanelQss));
        QVERIFY(qstrNewLog.contains(
            QStringLiteral(
                "CLS_WgtPlayer7ToolboxBar COMMON_PLATFORM_WIN SetStyleSheetByFile Loading "
                "Failed,Path = ./") +
            qstrBarQss));
        QVERIFY(qstrNewLog.contains(
            QStringLiteral("CLS_WgtPlayer7ToolboxBar::CLS_WgtPlayer7ToolboxBar")));
    }
}

QTEST_MAIN(tst_HistroyPanel)
#include "tst_HistroyPanel.moc"
