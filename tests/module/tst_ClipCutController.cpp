#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QWidget>

#include "CLS_ClipCutController.h"
#include "CLS_WgtPlayerSlider.h"

namespace {

// A controller on a 0..100 slider, its played time and playing state set by the test.
struct Rig
{
    QWidget window;
    CLS_WgtPlayerSlider* pSlider = new CLS_WgtPlayerSlider(&window);
    int iPlayed = 5;
    bool blPlaying = true;
    CLS_ClipCutController controller{&window, pSlider, [this](int& _iPlayed) {
                                         _iPlayed = iPlayed;
                                         return blPlaying;
                                     }};
    Rig() { pSlider->setRange(0, 100); }
};

}  // namespace

// The marks follow the picture on screen and belong to one file; the slider
// shows what the clip will hold.
class TestClipCutController : public QObject
{
    Q_OBJECT

private slots:
    void marksShowTheStretchTheClipHolds_data()
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

    void marksShowTheStretchTheClipHolds()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        QFETCH(int, low);
        QFETCH(int, high);
        Rig rig;
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 200);
        rig.iPlayed = first;
        rig.controller.SlotSetFirstMark();
        QVERIFY(rig.pSlider->IsFirstCutSet() && !rig.pSlider->IsSecondCutSet());
        rig.iPlayed = second;
        rig.controller.SlotSetSecondMark();
        QCOMPARE(rig.pSlider->GetFirstCutValue(), low);
        QCOMPARE(rig.pSlider->GetSecondCutValue(), high);
        // The same four entries reach any menu, export enabled now both are set.
        QMenu qMenu;
        rig.controller.AddActions(&qMenu);
        QCOMPARE(qMenu.actions().size(), 4);
        QVERIFY(qMenu.actions().last()->isEnabled());
    }

    void marksBelongToOneFile()
    {
        Rig rig;
        rig.blPlaying = false;
        QSignalSpy spyNotice(&rig.controller, &CLS_ClipCutController::SignNotice);
        // Nothing playing: no mark, and an export asks for marks first.
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 100);
        rig.controller.SlotSetFirstMark();
        QCOMPARE(rig.controller.FirstMark(), -1);
        rig.controller.SlotExport();
        QCOMPARE(spyNotice.count(), 1);

        rig.blPlaying = true;
        rig.controller.SlotSetFirstMark();
        rig.controller.SlotSetSecondMark();
        // Reopening the same file (a resume, a longer total) keeps them ...
        rig.controller.SetFile(QStringLiteral("/videos/a.mp4"), 120);
        QVERIFY(rig.controller.FirstMark() == 5 && rig.pSlider->IsSecondCutSet());
        // ... another file drops them, and so does clearing.
        rig.controller.SetFile(QStringLiteral("/videos/b.mp4"), 100);
        QVERIFY(rig.controller.FirstMark() == -1 && !rig.pSlider->IsFirstCutSet());
        rig.controller.SlotSetFirstMark();
        rig.controller.SlotClearMarks();
        QVERIFY(!rig.pSlider->IsFirstCutSet() && rig.controller.FirstMark() == -1);
    }
};

QTEST_MAIN(TestClipCutController)
#include "tst_ClipCutController.moc"
