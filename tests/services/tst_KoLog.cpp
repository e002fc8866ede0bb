#include "CLS_LogService.h"
#include "KoLogApi.h"
#include "ServiceFixture.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

class tst_KoLog : public QObject
{
    Q_OBJECT

private slots:
    void callsOutsideInitAndUnInitAreDropped()
    {
        Print(3, "Life", "dropped before Init");
        QVERIFY(!m_pfnSetConfig("Life", 0));
        QVERIFY(m_pfnInit && m_pfnSetConfig && m_pfnPrint && m_pfnUnInit);
        QVERIFY(Init(QStringLiteral("life")));
        // Records racing UnInit and Init land whole or not at all.
        std::atomic<bool> blStop{false};
        std::vector<std::thread> vecThreads;
        for (int t = 0; t < 4; ++t) {
            vecThreads.emplace_back([&] {
                while (!blStop) {
                    Print(1, "Life", "kept");
                    m_pfnSetConfig("Life", 0);
                }
            });
        }
        for (int i = 0; i < 200; ++i) {
            m_pfnUnInit();
            QVERIFY(Init(QStringLiteral("life")));
        }
        QTRY_VERIFY(Records(QStringLiteral("life"), QStringLiteral("Life")).size() >= 100);
        blStop = true;
        for (std::thread& thread : vecThreads)
            thread.join();
        m_pfnUnInit();
        m_pfnUnInit();
        Print(1, "Life", "dropped after UnInit");
        QVERIFY(!m_pfnSetConfig("Life", 0));
        for (const QString& qstrLine : Records(QStringLiteral("life"), QStringLiteral("Life")))
            QVERIFY2(qstrLine.endsWith("] kept"), qPrintable(qstrLine));
    }

    void recordCarriesEveryField()
    {
        const QString qstrDir = QStringLiteral("fields/nested");
        QVERIFY(Init(qstrDir, 1));
        const std::string strText = "request key:[\n{\n    \"PlayUrl\": \"a.mp4\"\n}\n]";
        m_pfnPrint(1, "ModuleKoPlayer", "/src/BusinessLib/MainWindow.cpp", 321,
                   "MainWindow::SlotStop", &strText);
        const QString qstrLog = Records(qstrDir, QStringLiteral("ModuleKoPlayer")).join('\n');
        const QRegularExpression record(QStringLiteral(
            R"(^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] \[info\] .*\[ModuleKoPlayer\] )"
            R"(\[MainWindow\.cpp:321\] \[MainWindow::SlotStop\] request key:\[\n\{\n    "PlayUrl": "a\.mp4"\n\}\n\]$)"));
        QVERIFY2(record.match(qstrLog).hasMatch(), qPrintable(qstrLog));
        m_pfnPrint(3, nullptr, nullptr, 0, nullptr, nullptr);  // null parts are tolerated
        QVERIFY(Records(qstrDir, QStringLiteral("Default")).join('\n').contains("[?:0] [?]"));

        // Each kept record names its level; a channel's own level overrides Init's.
        Print(0, "Levels", "dropped");
        QVERIFY(m_pfnSetConfig("Levels", 0));
        const char* const levels[] = {"trace", "info", "warning", "error"};
        for (unsigned i = 0; i < 4; ++i)
            Print(i, "Levels", levels[i]);
        QCOMPARE(Records(qstrDir, "Levels")
                     .join('\n')
                     .count(QRegularExpression(R"(\[(trace|info|warning|error)\] .*\] \1$)",
                                               QRegularExpression::MultilineOption)),
                 4);
    }

    void concurrentRecordsAreAllWritten()
    {
        QVERIFY(Init(QStringLiteral("concurrent")));
        constexpr int kThreads = 8, kRecords = 1000;
        std::vector<std::thread> vecThreads;
        for (int t = 0; t < kThreads; ++t) {
            vecThreads.emplace_back([this, t] {
                // Two channels, so files are also created concurrently.
                const std::string strChannel = "Busy" + std::to_string(t % 2);
                for (int i = 0; i < kRecords; ++i)
                    Print(1, strChannel.c_str(),
                          "rec-" + std::to_string(t) + "-" + std::to_string(i));
            });
        }
        for (std::thread& thread : vecThreads)
            thread.join();

        // No record torn or interleaved, none lost.
        QSet<QString> setSeen;
        const QRegularExpression text(QStringLiteral(R"(\] (rec-\d+-\d+)$)"));
        for (const QString& qstrLine :
             Records("concurrent", "Busy0") + Records("concurrent", "Busy1"))
            setSeen.insert(text.match(qstrLine).captured(1));
        setSeen.remove(QString());
        QCOMPARE(setSeen.size(), kThreads * kRecords);
        QCOMPARE(Records("concurrent", "Busy0").size() + Records("concurrent", "Busy1").size(),
                 kThreads * kRecords);
    }

    void filesRotatePastTheSizeLimit()
    {
        CLS_LogService::Options options;
        options.m_sizeMaxFileBytes = 4096;
        options.m_sizeMaxFiles = 3;
        CLS_LogService service(options);
        QDir dir(m_tmpDir.filePath(QStringLiteral("rotate")));
        QVERIFY(service.Init(dir.path().toStdString(), 0));
        for (int i = 0; i < 400; ++i) {
            const std::string strText = "n" + std::to_string(i) + " " + std::string(100, 'p');
            service.PrintLog(1, "Roll", "f.cpp", 1, "f", &strText);
        }
        service.UnInit();
        QCOMPARE(dir.entryList(QDir::Files, QDir::Name),
                 (QStringList{"Roll.1.log", "Roll.2.log", "Roll.log"}));
        for (const QString& qstrName : dir.entryList(QDir::Files))
            QVERIFY(QFileInfo(dir.filePath(qstrName)).size() <= 4096);
        // The newest record is in the live file.
        QVERIFY(Records(QStringLiteral("rotate"), QStringLiteral("Roll"))
                    .last()
                    .endsWith("] n399 " + QString(100, 'p')));
    }

private:
    void Print(unsigned _uiLevel, const char* _pChannel, const std::string& _strText)
    {
        m_pfnPrint(_uiLevel, _pChannel, __FILE__, 7, "tst_KoLog::Print", &_strText);
    }
    // The records of one channel below the test's folder _qstrDir, as lines.
    QStringList Records(const QString& _qstrDir, const QString& _qstrChannel)
    {
        QFile file(m_tmpDir.filePath(_qstrDir + QLatin1Char('/') + _qstrChannel + ".log"));
        if (!file.open(QIODevice::ReadOnly)) return {};
        return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    }
    bool Init(const QString& _qstrDir, int _iLevel = 0)
    {
        return m_pfnInit(m_tmpDir.filePath(_qstrDir).toStdString(), _iLevel);
    }

    template <typename Fn>
    static Fn Function(const char* _pName)
    {
        return QuillTest::ServiceFunction<Fn>(QuillTest::Service::Log, _pName);
    }
    const KoLogApi::InitFn m_pfnInit = Function<KoLogApi::InitFn>("Init");
    const KoLogApi::SetLoggerConfigFn m_pfnSetConfig =
        Function<KoLogApi::SetLoggerConfigFn>("SetLoggerConfig");
    const KoLogApi::PrintLogFn m_pfnPrint = Function<KoLogApi::PrintLogFn>("PrintLog");
    const KoLogApi::UnInitFn m_pfnUnInit = Function<KoLogApi::UnInitFn>("UnInit");
    QTemporaryDir m_tmpDir;
};

QTEST_GUILESS_MAIN(tst_KoLog)
#include "tst_KoLog.moc"
