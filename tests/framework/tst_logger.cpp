// The log line builder: qualified names, and records with their maps as the
// real logging service writes them.
#include "Logger.h"
#include "ServiceFixture.h"

#include <QtTest>

class TestLogger : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase() { QVERIFY(m_services.IsReady()); }
    void qualifiedFunctionName_data()
    {
        QTest::addColumn<QString>("signature");
        QTest::addColumn<QString>("expected");
        QTest::newRow("destructor") << "CLS_ModuleBasic::~CLS_ModuleBasic()"
                                    << "CLS_ModuleBasic::~CLS_ModuleBasic";
        QTest::newRow("virtual const") << "virtual const char* CLS_ViewBasic::GetModuleCode() const"
                                       << "CLS_ViewBasic::GetModuleCode";
        QTest::newRow("template return") << "std::map<std::__cxx11::basic_string<char>, void*> "
                                            "LoadDll(const string&, const std::vector<int>&)"
                                         << "LoadDll";
        QTest::newRow("lambda") << "CLS_ModuleBasic::TaskRequest(const QString&)::<lambda()>"
                                << "CLS_ModuleBasic::TaskRequest";
        QTest::newRow("call operator") << "void Ns::Functor::operator()(int) const"
                                       << "Ns::Functor::operator()";
        QTest::newRow("templated class")
            << "void Queue<std::pair<int, int> >::Push(int) [with T = int]"
            << "Queue<std::pair<int, int> >::Push";
        QTest::newRow("no parameters list") << "weird"
                                            << "weird";
    }

    void qualifiedFunctionName()
    {
        QFETCH(QString, signature);
        QFETCH(QString, expected);
        QCOMPARE(
            QString::fromStdString(Logger::QualifiedFunctionName(signature.toStdString().c_str())),
            expected);
    }

    void recordCarriesItsSourcePosition()
    {
        const int iLine = __LINE__ + 1;
        KOLOG(3, "LoggerTest") << "value " << 42 << ' ' << true << ' ' << QStringLiteral("é")
                               << " map:[" << QVariantMap{{QStringLiteral("k"), 1}} << "] empty:["
                               << QVariantMap() << "]";

        const QStringList qlstRecords = m_services.LogRecords(QStringLiteral("LoggerTest"));
        QCOMPARE(qlstRecords.size(), 1);
        const QString& qstrRecord = qlstRecords.first();
        QVERIFY2(qstrRecord.contains(QStringLiteral("tst_logger.cpp:%1").arg(iLine)),
                 qPrintable(qstrRecord));
        QVERIFY2(qstrRecord.contains(QStringLiteral("TestLogger::recordCarriesItsSourcePosition")),
                 qPrintable(qstrRecord));
        QVERIFY2(qstrRecord.contains(QStringLiteral("LoggerTest")), qPrintable(qstrRecord));
        QVERIFY2(qstrRecord.contains(
                     QStringLiteral("value 42 1 é map:[{\n    \"k\": 1\n}\n] empty:[{\n}\n]")),
                 qPrintable(qstrRecord));
    }

private:
    QuillTest::ServiceFixture m_services{QuillTest::Service::Log};
};

QTEST_GUILESS_MAIN(TestLogger)
#include "tst_logger.moc"
