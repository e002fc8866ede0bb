// Many open/play/seek/step/speed/stop cycles over every container the player
// reads, then many dialogs created and destroyed: memory settles, and file
// descriptors and threads come back to where they were. QUILL_SOAK_CYCLES and
// QUILL_SOAK_DIALOGS choose the counts (the defaults are a short run).

#include "PlayerRig.h"

#include <QComboBox>

#include <functional>

namespace {

using QuillTest::kClipSeconds;
using QuillTest::kHangMs;
const QByteArray kPassword = "soak-Secret-7";

struct ST_Usage
{
    qint64 iRssKb = 0;
    int iFds = 0;
    int iThreads = 0;
};

ST_Usage Usage()
{
    ST_Usage stUsage;
    for (const QByteArray& qbaLine : QuillTest::ReadFile("/proc/self/status").split('\n'))
        if (qbaLine.startsWith("VmRSS:"))
            stUsage.iRssKb = qbaLine.mid(6).trimmed().split(' ').first().toLongLong();
    const auto entries = [](const char* _pDir) {
        return QDir(QLatin1String(_pDir))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System)
            .size();
    };
    stUsage.iFds = entries("/proc/self/fd");
    stUsage.iThreads = entries("/proc/self/task");
    return stUsage;
}

int Count(const char* _pVariable, int _iDefault)
{
    return qEnvironmentVariableIntValue(_pVariable) > 0 ? qEnvironmentVariableIntValue(_pVariable)
                                                        : _iDefault;
}

// _iWarmUp rounds fill the caches; after _iRounds more, memory has grown by
// 5% at most, and file descriptors and threads come back to where they were.
// Threads that end on their own (the engine's reader, a pool worker after its
// task) may take a moment to.
void StaysFlat(const char* _pWhat, int _iWarmUp, int _iRounds,
               const std::function<void(int)>& _fnRound)
{
    ST_Usage stWarm;
    for (int i = 1; i <= _iWarmUp + _iRounds; ++i) {
        _fnRound(i);
        if (QTest::currentTestFailed()) QFAIL(qPrintable(QStringLiteral("%1 %2").arg(_pWhat).arg(i)));
        if (i == _iWarmUp) stWarm = Usage();
    }
    const bool blSettled = QTest::qWaitFor(
        [&stWarm] {
            const ST_Usage stNow = Usage();
            return stNow.iFds <= stWarm.iFds && stNow.iThreads <= stWarm.iThreads;
        },
        5000);
    const ST_Usage stEnd = Usage();
    qInfo("%s, after the warm-up and at the end: rss %lld/%lld kB, fds %d/%d, threads %d/%d",
          _pWhat, stWarm.iRssKb, stEnd.iRssKb, stWarm.iFds, stEnd.iFds, stWarm.iThreads,
          stEnd.iThreads);
    QVERIFY(blSettled);
    QVERIFY(stEnd.iRssKb <= stWarm.iRssKb * 105 / 100);
}

}  // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::PlayerRig> m_pRig;
    QStringList m_qlstFiles;

    // Open, seek to the middle, pause, step, change speed, stop: the history
    // keeps the file at about the middle.
    void Cycle(const QString& _qstrFile)
    {
        QuillTest::PlayerRig& rig = *m_pRig;
        QVERIFY(rig.Open(_qstrFile));
        if (_qstrFile.endsWith(QLatin1String("sealed.sdv")))
            QVERIFY(rig.AnswerPassword(QString::fromLatin1(kPassword)));
        QTRY_VERIFY_WITH_TIMEOUT(rig.PlayedShown() >= 1, kHangMs);
        QVERIFY(rig.Bar("SignSliderClicked", 50));
        QTRY_VERIFY_WITH_TIMEOUT(rig.PlayedShown() >= kClipSeconds / 2, kHangMs);
        QVERIFY(rig.Bar("SignVideoPlayOrPause"));
        QVERIFY(rig.Bar("SignStepUp"));
        auto* pSpeed = static_cast<QComboBox*>(rig.Find("comboBox_speedinfo"));
        pSpeed->setCurrentIndex(pSpeed->currentIndex() == 5 ? 4 : 5);
        QTest::qWait(100);
        QVERIFY(rig.Bar("SignStop"));
        const QJsonObject qjsEntry = QuillTest::NewestHistroyEntry();
        QCOMPARE(qjsEntry[QLatin1String("path")].toString(), _qstrFile);
        const int iPos = qjsEntry[QLatin1String("pos")].toInt(-1);
        QVERIFY2(iPos >= kClipSeconds / 2 - 1 && iPos <= kClipSeconds / 2 + 4,
                 qPrintable(QString::number(iPos)));
    }

private slots:
    void initTestCase()
    {
        m_pRig = std::make_unique<QuillTest::PlayerRig>();
        QVERIFY(m_pRig->IsReady());
        const QStringList qlstX264{"-c:v", "libx264", "-preset", "ultrafast", "-g", "50"};
        m_qlstFiles << m_pRig->MakeClip("clip.mp4", qlstX264, {"-c:a", "aac"})
                    << m_pRig->MakeClip("clip.avi", {"-c:v", "mpeg4"}, {"-c:a", "mp3"})
                    << m_pRig->MakeClip("clip.ps", {"-c:v", "mpeg2video"}, {"-c:a", "mp2"},
                                        {"-f", "vob"});
        QVERIFY(!m_qlstFiles.contains(QString()));
        m_qlstFiles << m_pRig->WorkDir().FilePath("plain.sdv")
                    << m_pRig->WorkDir().FilePath("sealed.sdv");
        QCOMPARE(QuillTest::SealClip(m_qlstFiles[0], m_qlstFiles[3], {}), 0);
        QCOMPARE(QuillTest::SealClip(m_qlstFiles[0], m_qlstFiles[4], kPassword), 0);
        m_pRig->CreateDialog();
    }

    void cleanupTestCase() { m_pRig.reset(); }

    void playbackCycles()
    {
        const int iCycles = Count("QUILL_SOAK_CYCLES", 15);
        // Two rounds of every file: the sealed one grows the heap once more the
        // second time it plays.
        const int iWarmUp = qMax(2 * m_qlstFiles.size(), iCycles / 10);
        StaysFlat("cycle", iWarmUp, qMax(1, iCycles - iWarmUp),
                  [this](int _iCycle) { Cycle(m_qlstFiles[_iCycle % m_qlstFiles.size()]); });
    }

    // One dialog played above; the first few new ones fill the caches.
    void dialogCycles()
    {
        StaysFlat("dialog", 3, Count("QUILL_SOAK_DIALOGS", 10), [this](int) {
            m_pRig->DestroyDialog();
            m_pRig->CreateDialog();
            QVERIFY(m_pRig->Dialog()->isVisible());
        });
    }
};

QTEST_MAIN(tst_Soak)
#include "tst_Soak.moc"
