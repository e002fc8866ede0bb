// Many open/play/seek/step/speed/stop cycles over every container the player
// reads, then many dialogs created and destroyed: memory settles, and file
// descriptors and threads come back to where they were. QUILL_SOAK_CYCLES and
// QUILL_SOAK_DIALOGS choose the counts (the defaults are a short run).

#include "PlayerRig.h"
#include "QuillTestSupport.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QtTest>

namespace {

constexpr int kHangMs = 20000;
constexpr int kClipSeconds = 20;
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
    QFile qfStatus(QStringLiteral("/proc/self/status"));
    if (qfStatus.open(QIODevice::ReadOnly))
        for (const QByteArray& qbaLine : qfStatus.readAll().split('\n'))
            if (qbaLine.startsWith("VmRSS:")) stUsage.iRssKb = qbaLine.mid(6).trimmed().split(' ').first().toLongLong();
    const auto entries = [](const char* _pDir) {
        return QDir(QLatin1String(_pDir)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System).size();
    };
    stUsage.iFds = entries("/proc/self/fd");
    stUsage.iThreads = entries("/proc/self/task");
    return stUsage;
}

void Report(const char* _pWhen, int _iCycle, const ST_Usage& _stUsage)
{
    qInfo("%s %d: rss %lld kB, fds %d, threads %d", _pWhen, _iCycle, _stUsage.iRssKb, _stUsage.iFds,
          _stUsage.iThreads);
}

int Count(const char* _pVariable, int _iDefault)
{
    bool blOk = false;
    const int iValue = qEnvironmentVariableIntValue(_pVariable, &blOk);
    return blOk && iValue > 0 ? iValue : _iDefault;
}

// Threads that end on their own (the engine's reader, a pool worker after
// its task) may take a moment; the count has to come back, not be back now.
bool SettlesTo(const ST_Usage& _stStart)
{
    return QTest::qWaitFor(
        [&_stStart] {
            const ST_Usage stNow = Usage();
            return stNow.iFds <= _stStart.iFds && stNow.iThreads <= _stStart.iThreads;
        },
        5000);
}

}  // namespace

class tst_Soak : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QuillTest::PlayerRig> m_pRig;
    QStringList m_qlstFiles;

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
        QVERIFY2(iPos >= kClipSeconds / 2 - 1 && iPos <= kClipSeconds / 2 + 4, qPrintable(QString::number(iPos)));
    }

private slots:
    void initTestCase()
    {
        m_pRig = std::make_unique<QuillTest::PlayerRig>();
        QVERIFY(m_pRig->IsReady());
        for (const char* pName : {"clip.mp4", "clip.avi", "clip.ps"}) {
            m_qlstFiles << m_pRig->MakeClip(QLatin1String(pName), kClipSeconds);
            QVERIFY(!m_qlstFiles.last().isEmpty());
        }
        m_qlstFiles << m_pRig->MakeSdv(m_qlstFiles.first(), QStringLiteral("plain.sdv"), {})
                    << m_pRig->MakeSdv(m_qlstFiles.first(), QStringLiteral("sealed.sdv"), kPassword);
        QVERIFY(!m_qlstFiles.contains(QString()));
        m_pRig->CreateDialog();
    }

    void cleanupTestCase() { m_pRig.reset(); }

    void playbackCycles()
    {
        const int iCycles = Count("QUILL_SOAK_CYCLES", 15);
        // Two rounds of every file: the sealed one grows the heap once more the
        // second time it plays.
        const int iWarmUp = qMax(2 * m_qlstFiles.size(), iCycles / 10);
        Report("before", 0, Usage());
        ST_Usage stWarm;
        for (int i = 1; i <= iCycles; ++i) {
            Cycle(m_qlstFiles[i % m_qlstFiles.size()]);
            if (QTest::currentTestFailed()) QFAIL(qPrintable(QStringLiteral("cycle %1").arg(i)));
            if (i == iWarmUp) {
                QVERIFY(SettlesTo(Usage()));
                stWarm = Usage();
                Report("warm", i, stWarm);
            } else if (i % qMax(1, iCycles / 10) == 0) {
                Report("cycle", i, Usage());
            }
        }
        QVERIFY(SettlesTo(stWarm));
        const ST_Usage stEnd = Usage();
        Report("end", iCycles, stEnd);
        QVERIFY2(stEnd.iRssKb <= stWarm.iRssKb * 105 / 100, qPrintable(QString::number(stEnd.iRssKb)));
    }

    void dialogCycles()
    {
        const int iDialogs = Count("QUILL_SOAK_DIALOGS", 10);
        // One dialog played above; the first few new ones fill the caches.
        for (int i = 0; i < 3; ++i) {
            m_pRig->DestroyDialog();
            m_pRig->CreateDialog();
        }
        QVERIFY(SettlesTo(Usage()));
        const ST_Usage stStart = Usage();
        Report("dialogs start", 0, stStart);
        for (int i = 1; i <= iDialogs; ++i) {
            m_pRig->DestroyDialog();
            m_pRig->CreateDialog();
            QVERIFY(m_pRig->Dialog()->isVisible());
        }
        QVERIFY(SettlesTo(stStart));
        const ST_Usage stEnd = Usage();
        Report("dialogs end", iDialogs, stEnd);
        QVERIFY2(stEnd.iRssKb <= stStart.iRssKb * 105 / 100, qPrintable(QString::number(stEnd.iRssKb)));
    }
};

QTEST_MAIN(tst_Soak)
#include "tst_Soak.moc"
