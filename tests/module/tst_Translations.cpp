// The language files against the code: every compiled file the dialog loads
// is built and answers, and every key a class or a form passes through the
// translator is finished, in its class's context, in every language.

#include <algorithm>

#include <QDirIterator>
#include <QRegularExpression>
#include <QTranslator>
#include <QXmlStreamReader>
#include <QtTest>

#include "QuillTestSupport.h"

// Declared ahead of the raw-string patterns below, which moc cannot read.
class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void compiledFileLoadsAndTranslates_data();
    void compiledFileLoadsAndTranslates();
    void everyKeyTheCodeUsesIsTranslatedInEveryLanguage();
};

namespace {

// The dialog's language table, in its order.
const char* const kLanguages[] = {
    "QuillPlayer_CN",      "QuillPlayer_EN",        "QuillPlayer_Russian", "QuillPlayer_Korean",
    "QuillPlayer_Thai",    "QuillPlayer_Vietnames", "QuillPlayer_French",  "QuillPlayer_Italian",
    "QuillPlayer_Abrabic", "QuillPlayer_Farsi",     "QuillPlayer_TradCHS", "QuillPlayer_Turkish",
    "QuillPlayer_Spanish", "QuillPlayer_Polish",    "QuillPlayer_Hebrew",  "QuillPlayer_Dutch",
    "QuillPlayer_Czech",   "QuillPlayer_Slovak",    "QuillPlayer_DE",
};

struct Use
{
    QString qstrId;  // context + '\n' + key
    QString qstrWhere;
};

// "context\nsource" of every finished message of a language source file.
// A missing or broken file has none; lrelease rejects a broken one anyway.
QSet<QString> FinishedMessages(const QString& _qstrPath)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return {};
    QXmlStreamReader xml(&file);
    QString qstrContext;
    QString qstrSource;
    QSet<QString> setFinished;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QLatin1String("name")) {
            qstrContext = xml.readElementText();
        } else if (xml.name() == QLatin1String("source")) {
            qstrSource = xml.readElementText();
        } else if (xml.name() == QLatin1String("translation")) {
            // "unfinished", "obsolete" and "vanished" are not shown.
            const bool blTyped = xml.attributes().hasAttribute(QLatin1String("type"));
            if (!xml.readElementText().trimmed().isEmpty() && !blTyped)
                setFinished.insert(qstrContext + QLatin1Char('\n') + qstrSource);
        }
    }
    return setFinished;
}

// C++ patterns: literals and comments; scopes; tr() and translate() calls.
const char k_Lexeme[] = R"re("(?:[^"\\\n]|\\.)*"|'(?:[^'\\\n]|\\.)*'|//[^\n]*|/\*.*?\*/)re";
const char k_Scope[] =
    R"re(^(?:[A-Za-z_][^;{}()#=\n]*[\s*&])?((?:\w+::)*\w+)::~?\w+\s*\(|)re"
    R"re(\b(?<!enum\s)(?:class|struct)\s+(?:[A-Z_][A-Z0-9_]*\s+)?(\w+)\s*(?:final\s*)?[:{])re";
const char k_Tr[] =
    R"re((?<![\w.>])(?:(\w+)::)?(?:tr|QT_TR_NOOP)\s*\(\s*"((?:[^"\\\n]|\\.)*)"|)re"
    R"re(\b(?:translate|QT_TRANSLATE_NOOP)\s*\(\s*"((?:[^"\\\n]|\\.)*)"\s*,\s*"((?:[^"\\\n]|\\.)*)")re";

// tr() takes the context of the class it is written in: the class of the
// member definition "Class::Function(" before the call, or of the class
// declaration around an inline body; translate() names its context.
void ScanCode(const QString& _qstrPath, const QString& _qstrShown, QList<Use>& _lstUses)
{
    static const QRegularExpression reLexeme(QLatin1String(k_Lexeme),
                                             QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression reScope(QLatin1String(k_Scope),
                                            QRegularExpression::MultilineOption);
    static const QRegularExpression reTr{QLatin1String(k_Tr)};
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return;
    const QString qstrRaw = QString::fromUtf8(file.readAll());
    // Comments blanked out (line breaks kept), so a commented-out tr() is not counted.
    QString qstrCode;
    int iLast = 0;
    for (auto it = reLexeme.globalMatch(qstrRaw); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        const QString qstrLexeme = match.captured();
        qstrCode += qstrRaw.mid(iLast, match.capturedStart() - iLast);
        qstrCode += qstrLexeme.startsWith(QLatin1Char('/'))
                        ? QString(qstrLexeme.count(QLatin1Char('\n')), QLatin1Char('\n'))
                        : qstrLexeme;
        iLast = match.capturedEnd();
    }
    qstrCode += qstrRaw.mid(iLast);

    QList<QPair<int, QString>> lstScopes;  // in order of position
    for (auto it = reScope.globalMatch(qstrCode); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        lstScopes.append({match.capturedStart(), match.captured(1) + match.captured(2)});
    }
    for (auto it = reTr.globalMatch(qstrCode); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        QString qstrContext = match.captured(1) + match.captured(3);
        if (qstrContext.isEmpty() && match.captured(3).isNull()) {
            for (const auto& scope : lstScopes)
                if (scope.first < match.capturedStart()) qstrContext = scope.second;
        }
        const int iLine = qstrCode.leftRef(match.capturedStart()).count(QLatin1Char('\n')) + 1;
        _lstUses.append({qstrContext + QLatin1Char('\n') + match.captured(2) + match.captured(4),
                         _qstrShown + QLatin1Char(':') + QString::number(iLine)});
    }
}

// A form translates every <string> in the context of its class, but for
// those marked notr, object names and style sheets.
void ScanForm(const QString& _qstrPath, const QString& _qstrShown, QList<Use>& _lstUses)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return;
    QXmlStreamReader xml(&file);
    QString qstrClass;
    QString qstrProperty;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        if (xml.name() == QLatin1String("class") && qstrClass.isEmpty()) {
            qstrClass = xml.readElementText().trimmed();
        } else if (xml.name() == QLatin1String("property") ||
                   xml.name() == QLatin1String("attribute")) {
            qstrProperty = xml.attributes().value(QLatin1String("name")).toString();
        } else if (xml.name() == QLatin1String("string")) {
            const bool blNoTr =
                xml.attributes().value(QLatin1String("notr")) == QLatin1String("true");
            const QString qstrWhere =
                _qstrShown + QLatin1Char(':') + QString::number(xml.lineNumber());
            const QString qstrText = xml.readElementText();
            if (!blNoTr && !qstrText.isEmpty() && qstrProperty != QLatin1String("styleSheet") &&
                qstrProperty != QLatin1String("objectName"))
                _lstUses.append({qstrClass + QLatin1Char('\n') + qstrText, qstrWhere});
        }
    }
}

}  // namespace

void tst_Translations::compiledFileLoadsAndTranslates_data()
{
    QTest::addColumn<QString>("qmPath");
    for (const char* pszStem : kLanguages)
        QTest::newRow(pszStem) << QuillTest::BinPath(
            QStringLiteral("Lang/QuillPlayer/%1.qm").arg(QLatin1String(pszStem)));
}

// The dialog loads "./Lang/QuillPlayer/<file>.qm" from the installation.
void tst_Translations::compiledFileLoadsAndTranslates()
{
    QFETCH(QString, qmPath);
    QTranslator translator;
    QVERIFY2(translator.load(qmPath, QString(), QString(), QString()), qPrintable(qmPath));
    const QString qstrSample = translator.translate("CLS_WgtPlayerControlBar", "btn_play_pause");
    QVERIFY(!qstrSample.isEmpty() && qstrSample != QLatin1String("btn_play_pause"));
}

void tst_Translations::everyKeyTheCodeUsesIsTranslatedInEveryLanguage()
{
    const QDir root(QStringLiteral(QUILL_SOURCE_DIR));
    QList<Use> lstUses;
    for (const char* pszFolder : {"BriskInclude", "BusinessLib"}) {
        QDirIterator it(root.filePath(QLatin1String(pszFolder)),
                        {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString qstrPath = it.next();
            if (qstrPath.endsWith(QLatin1String(".ui")))
                ScanForm(qstrPath, root.relativeFilePath(qstrPath), lstUses);
            else
                ScanCode(qstrPath, root.relativeFilePath(qstrPath), lstUses);
        }
    }
    // A scan that misses the framework's own key sees nothing at all.
    QVERIFY(std::any_of(lstUses.begin(), lstUses.end(), [](const Use& _use) {
        return _use.qstrId == QLatin1String("CLS_ModuleBasic\nModuleName");
    }));

    QStringList lstMissing;
    for (const char* pszStem : kLanguages) {
        const QSet<QString> setFinished = FinishedMessages(
            root.filePath(QStringLiteral("Lang/QuillPlayer/%1.ts").arg(QLatin1String(pszStem))));
        for (const Use& use : qAsConst(lstUses)) {
            if (!setFinished.contains(use.qstrId))
                lstMissing << QStringLiteral("%1: %2 (%3)")
                                  .arg(QLatin1String(pszStem),
                                       QString(use.qstrId).replace(QLatin1Char('\n'), " / "),
                                       use.qstrWhere);
        }
    }
    QVERIFY2(lstMissing.isEmpty(),
             qPrintable(QStringLiteral("untranslated (add them to Lang/tools/make_ts.py):\n") +
                        lstMissing.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_Translations.moc"
