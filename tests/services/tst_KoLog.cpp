// Log records: the line builder's qualified names and values, the record a
// call writes through the exported library, and the service's own rules.
#include "CLS_LogService.h"
#include "Logger.h"
#include "ServiceFixture.h"

#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

class tst_KoLog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }
    void qualifiedFunctionName_data()
    {
        QTest::addColumn<QString>("signature");
        QTest::addColumn<QString>("expected");
        const char* const rows[][3] = {
            {"destructor", "CLS_ModuleBasic::~CLS_ModuleBasic()",
             "CLS_ModuleBasic::~CLS_ModuleBasic"},
            {"virtual const", "virtual const char* CLS_ViewBasic::GetModuleCode() const",
             "CLS_ViewBasic::GetModuleCode"},
            {"template return",
             "std::map<std::__cxx11::basic_string<char>, void*> LoadDll(const string&, const "
             "std::vector<int>&)",
             "LoadDll"},
            {"lambda", "CLS_ModuleBasic::TaskRequest(const QString&)::<lambda()>",
             "CLS_ModuleBasic::TaskRequest"},
            {"call operator", "void Ns::Functor::operator()(int) const", "Ns::Functor::operator()"},
            {"templated class", "void Queue<std::pair<int, int> >::Push(int) [with T = int]",
             "Queue<std::pair<int, int> >::Push"},
            {"no parameters list", "weird", "weird"}};
        for (const auto& row : rows)
            QTest::newRow(row[0]) << QString(row[1]) << QString(row[2]);
    }

    void qualifiedFunctionName()
    {
        QFETCH(QString, signature);
        QFETCH(QString, expected);
        QCOMPARE(QString::fromStdString(Logger::QualifiedFunctionName(qPrintable(signature))),
                 expected);
    }

    // One record through the stream and the real service: time, level, thread,
    // channel, the call's file and line, its qualified name, and the values,
    // maps as JSON.
    void recordCarriesEveryField()
    {
        const int iLine = __LINE__ + 1;
        KOLOG(3, "LoggerTest") << "value " << 42 << ' ' << true << ' ' << QStringLiteral("é")
                               << " map:[" << QVariantMap{{QStringLiteral("k"), 1}} << "] empty:["
                               << QVariantMap() << "]";
        const QRegularExpression reRecord(
            QStringLiteral(
                R"(^\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3}\] \[error\] \[\d+\] \[LoggerTest\] )"
                R"(\[tst_KoLog\.cpp:%1\] \[tst_KoLog::recordCarriesEveryField\] )"
                R"(value 42 1 é map:\[\{\n    "k": 1\n\}\n\] empty:\[\{\n\}\n\]$)")
                .arg(iLine));
        const QStringList qlstRecords = m_services.LogRecords(QStringLiteral("LoggerTest"));
        QCOMPARE(qlstRecords.size(), 1);
        QVERIFY2(reRecord.match(qlstRecords.first()).hasMatch(), qPrintable(qlstRecords.first()));
    }

    void callsOutsideInitAndUnInitAreDropped()
    {
        Print(3, "Life", "dropped before Init");
        QVERIFY(!m_service.SetLoggerConfig("Life", 0));
        QVERIFY(Init("life"));
        // Records racing UnInit and Init land whole or not at all.
        std::atomic<bool> blStop{false};
        std::vector<std::thread> vecThreads;
        for (int t = 0; t < 4; ++t) {
            vecThreads.emplace_back([&] {
                while (!blStop) {
                    Print(1, "Life", "kept");
                    m_service.SetLoggerConfig("Life", 0);
                }
            });
        }
        for (int i = 0; i < 200; ++i) {
            m_service.UnInit();
            QVERIFY(Init("life"));
        }
        QTRY_VERIFY(Records("life", "Life").size() >= 100);
        blStop = true;
        for (std::thread& thread : vecThreads)
            thread.join();
        m_service.UnInit();
        m_service.UnInit();
        Print(1, "Life", "dropped after UnInit");
        QVERIFY(!m_service.SetLoggerConfig("Life", 0));
        for (const QString& qstrLine : Records("life", "Life"))
            QVERIFY2(qstrLine.endsWith("] kept"), qPrintable(qstrLine));
    }

    void levelsAndMissingParts()
    {
        QVERIFY(Init("levels", 1));
        m_service.PrintLog(3, nullptr, nullptr, 0, nullptr, nullptr);
        QVERIFY(Records("levels", "Default").join('\n').contains("[?:0] [?]"));
        // Each kept record names its level; a channel's own level overrides Init's.
        Print(0, "Levels", "dropped");
        QVERIFY(m_service.SetLoggerConfig("Levels", 0));
        const char* const levels[] = {"trace", "info", "warning", "error"};
        for (unsigned i = 0; i < 4; ++i)
            Print(i, "Levels", levels[i]);
        const QStringList qlstRecords = Records("levels", "Levels");
        QCOMPARE(qlstRecords.size(), 4);
        QCOMPARE(qlstRecords.filter(QRegularExpression(R"(\[(\w+)\] .*\] \1$)")).size(), 4);
        m_service.UnInit();
    }

private:
    void Print(unsigned _uiLevel, const char* _pChannel, const std::string& _strText)
    {
        m_service.PrintLog(_uiLevel, _pChannel, __FILE__, 7, "tst_KoLog::Print", &_strText);
    }
    // The lines of one channel's file below the test's folder _pDir.
    QStringList Records(const QString& _qstrDir, const QString& _qstrChannel) const
    {
        const QString qstrPath = m_tmpDir.filePath(_qstrDir + '/' + _qstrChannel + ".log");
        return QString::fromUtf8(QuillTest::ReadFile(qstrPath)).split('\n', Qt::SkipEmptyParts);
    }
    bool Init(const QString& _qstrDir, int _iLevel = 0)
    {
        return m_service.Init(m_tmpDir.filePath(_qstrDir).toStdString(), _iLevel);
    }

    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
    QTemporaryDir m_tmpDir;
    CLS_LogService m_service;
};

QTEST_GUILESS_MAIN(tst_KoLog)
#include "tst_KoLog.moc"
