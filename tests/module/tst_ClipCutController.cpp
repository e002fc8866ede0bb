#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include "CLS_ClipCutController.h"
#include "CLS_WgtPlayerSlider.h"

// The marks follow the picture on screen and belong to one file; the slider
// shows what the clip will hold.
class TestClipCutController : public QObject
{
    Q_OBJECT

private slots:
    void marksShowTheStretchTheClipHolds_data();
    void marksShowTheStretchTheClipHolds();
    void marksBelongToOneFile();
};

void TestClipCutController::marksShowTheStretchTheClipHolds_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<int>("low");
    QTest::addColumn<int>("high");

    // 200 s on a 0..100 slider: the later mark covers its whole second.
    QTest::newRow("in order") << 20 << 60 << 10 << 30;
    QTest::newRow("second before first") << 60 << 20 << 10 << 30;
    QTest::newRow("same second") << 40 << 40 << 20 << 20;
    QTest::newRow("last second") << 0 << 199 << 0 << 100;
}

void TestClipCutController::marksShowTheStretchTheClipHolds()
{
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(int, low);
    QFETCH(int, high);

    QWidget qWindow;
    auto* pSlider = new CLS_WgtPlayerSlider(&qWindow);
    pSlider->setRange(0, 100);
    int iPlayed = 0;
    CLS_ClipCutController controller(&qWindow, pSlider, [&](int& _iPlayed) {
        _iPlayed = iPlayed;
        return true;
    });
    controller.SetFile(QStringLiteral("/videos/a.mp4"), 200);
    iPlayed = first;
    controller.SlotSetFirstMark();
    QVERIFY(pSlider->IsFirstCutSet() && !pSlider->IsSecondCutSet());
    iPlayed = second;
    controller.SlotSetSecondMark();
    QVERIFY(pSlider->IsFirstCutSet() && pSlider->IsSecondCutSet());
    QCOMPARE(pSlider->GetFirstCutValue(), low);
    QCOMPARE(pSlider->GetSecondCutValue(), high);
    // The same four entries reach any menu, export enabled now both are set.
    QMenu qMenu;
    controller.AddActions(&qMenu);
    QCOMPARE(qMenu.actions().size(), 4);
    QVERIFY(qMenu.actions().last()->isEnabled());
}

void TestClipCutController::marksBelongToOneFile()
{
    QWidget qWindow;
    auto* pSlider = new CLS_WgtPlayerSlider(&qWindow);
    pSlider->setRange(0, 100);
    bool blPlaying = false;
    CLS_ClipCutController controller(&qWindow, pSlider, [&](int& _iPlayed) {
        _iPlayed = 5;
        return blPlaying;
    });
    QSignalSpy spyNotice(&controller, &CLS_ClipCutController::SignNotice);

    // Nothing playing: no mark, and an export asks for marks first.
    controller.SetFile(QStringLiteral("/videos/a.mp4"), 100);
    controller.SlotSetFirstMark();
    QCOMPARE(controller.FirstMark(), -1);
    controller.SlotExport();
    QCOMPARE(spyNotice.count(), 1);

    blPlaying = true;
    controller.SlotSetFirstMark();
    controller.SlotSetSecondMark();
    // Reopening the same file (a resume, a longer total) keeps them ...
    controller.SetFile(QStringLiteral("/videos/a.mp4"), 120);
    QCOMPARE(controller.FirstMark(), 5);
    QVERIFY(pSlider->IsSecondCutSet());
    // ... another file drops them, and so does clearing.
    controller.SetFile(QStringLiteral("/videos/b.mp4"), 100);
    QCOMPARE(controller.FirstMark(), -1);
    QVERIFY(!pSlider->IsFirstCutSet());
    controller.SlotSetFirstMark();
    controller.SlotClearMarks();
    QVERIFY(!pSlider->IsFirstCutSet() && controller.FirstMark() == -1);
}

QTEST_MAIN(TestClipCutController)
#include "tst_ClipCutController.moc"
