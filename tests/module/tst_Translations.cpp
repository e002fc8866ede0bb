// The player shows no English of its own: every visible text is a key passed
// through the translator in the context of the class that shows it. These
// tests hold the language files to the code: every compiled file the dialog
// can load is there and answers, and every key the code or a form asks for is
// finished in every language.

#include <algorithm>
#include <iterator>
#include <vector>

#include <QChar>
#include <QFileInfo>
#include <QLocale>
#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QTranslator>
#include <QtTest>

#include "QuillTestSupport.h"
#include "TranslationSources.h"

using namespace LangScan;

namespace {

struct LanguageFile
{
    const char* pszStem;       // file name without suffix, as the dialog loads it
    QLocale::Language eLanguage;
    QChar::Script eScript;     // script every translation must be written in
};

// Index order of the dialog's language table.
const LanguageFile kLanguages[] = {
    {"QuillPlayer_CN", QLocale::Chinese, QChar::Script_Han},
    {"QuillPlayer_EN", QLocale::English, QChar::Script_Latin},
    {"QuillPlayer_Russian", QLocale::Russian, QChar::Script_Cyrillic},
    {"QuillPlayer_Korean", QLocale::Korean, QChar::Script_Hangul},
    {"QuillPlayer_Thai", QLocale::Thai, QChar::Script_Thai},
    {"QuillPlayer_Vietnames", QLocale::Vietnamese, QChar::Script_Latin},
    {"QuillPlayer_French", QLocale::French, QChar::Script_Latin},
    {"QuillPlayer_Italian", QLocale::Italian, QChar::Script_Latin},
    {"QuillPlayer_Abrabic", QLocale::Arabic, QChar::Script_Arabic},
    {"QuillPlayer_Farsi", QLocale::Persian, QChar::Script_Arabic},
    {"QuillPlayer_TradCHS", QLocale::Chinese, QChar::Script_Han},
    {"QuillPlayer_Turkish", QLocale::Turkish, QChar::Script_Latin},
    {"QuillPlayer_Spanish", QLocale::Spanish, QChar::Script_Latin},
    {"QuillPlayer_Polish", QLocale::Polish, QChar::Script_Latin},
    {"QuillPlayer_Hebrew", QLocale::Hebrew, QChar::Script_Hebrew},
    {"QuillPlayer_Dutch", QLocale::Dutch, QChar::Script_Latin},
    {"QuillPlayer_Czech", QLocale::Czech, QChar::Script_Latin},
    {"QuillPlayer_Slovak", QLocale::Slovak, QChar::Script_Latin},
    {"QuillPlayer_DE", QLocale::German, QChar::Script_Latin},
};

// Texts the code passes through the translator that are not translation keys,
// each with the reason it needs no translation. Everything else a class or a
// form asks for must be finished in every language.
struct AllowedText
{
    const char* pszContext;
    const char* pszText;
    const char* pszReason;
};
const std::vector<AllowedText> kAllowed = {
    // {"CLS_Example", "%1", "a number formatted through tr() for its plural forms"},
};

QString TsPath(const char* _pszStem)
{
    return QStringLiteral(QUILL_SOURCE_DIR "/Lang/QuillPlayer/") + QLatin1String(_pszStem) +
           QStringLiteral(".ts");
}

QString QmPath(const char* _pszStem)
{
    return QuillTest::BinPath(QStringLiteral("Lang/QuillPlayer/") + QLatin1String(_pszStem) +
                              QStringLiteral(".qm"));
}

bool IsAllowed(const CodeUse& _use)
{
    for (const AllowedText& allowed : kAllowed) {
        if (_use.qstrContext == QLatin1String(allowed.pszContext) &&
            _use.qstrText == QLatin1String(allowed.pszText)) {
            return true;
        }
    }
    return false;
}

QStringList Placeholders(const QString& _qstrText)
{
    static const QRegularExpression rePlaceholder(QStringLiteral("%L?[1-9][0-9]?|%n"));
    QStringList lst;
    for (auto it = rePlaceholder.globalMatch(_qstrText); it.hasNext();) lst.append(it.next().captured());
    lst.sort();
    return lst;
}

bool HasLetterOfScript(const QString& _qstrText, QChar::Script _eScript)
{
    for (const QChar c : _qstrText) {
        if (c.isLetter() && c.script() == _eScript) return true;
    }
    return false;
}

}  // namespace

class tst_Translations : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void sourceFileIsCompleteAndInItsLanguage_data();
    void sourceFileIsCompleteAndInItsLanguage();
    void compiledFileLoadsAndTranslates_data();
    void compiledFileLoadsAndTranslates();
    void everyKeyTheCodeUsesIsTranslatedInEveryLanguage();

private:
    QMap<QString, TsFile> m_mapTs;  // stem -> parsed source
    QSet<QString> m_setAllIds;      // union of the messages of all languages
};

void tst_Translations::initTestCase()
{
    for (const LanguageFile& lang : kLanguages) {
        const TsFile ts = ReadTs(TsPath(lang.pszStem));
        QVERIFY2(ts.qstrError.isEmpty(), qPrintable(ts.qstrError));
        QVERIFY2(!ts.hashMessages.isEmpty(), lang.pszStem);
        m_mapTs.insert(QLatin1String(lang.pszStem), ts);
        for (auto it = ts.hashMessages.cbegin(); it != ts.hashMessages.cend(); ++it) {
            m_setAllIds.insert(it.key());
        }
    }
}

void tst_Translations::sourceFileIsCompleteAndInItsLanguage_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < int(std::size(kLanguages)); ++i) {
        QTest::newRow(kLanguages[i].pszStem) << i;
    }
}

// Every language holds the messages any other language holds, all finished,
// written in its own script and with the placeholders of the English text; and
// the file declares the language its name promises.
void tst_Translations::sourceFileIsCompleteAndInItsLanguage()
{
    QFETCH(int, index);
    const LanguageFile& lang = kLanguages[index];
    const TsFile& ts = m_mapTs[QLatin1String(lang.pszStem)];
    const TsFile& english = m_mapTs[QStringLiteral("QuillPlayer_EN")];

    QVERIFY2(!ts.qstrLanguage.isEmpty(), "the file declares no language");
    QCOMPARE(QLocale(ts.qstrLanguage).language(), lang.eLanguage);

    QStringList lstProblems;
    for (const QString& qstrId : qAsConst(m_setAllIds)) {
        const QString qstrShown = QString(qstrId).replace(QLatin1Char('\n'), QStringLiteral(" / "));
        const auto it = ts.hashMessages.constFind(qstrId);
        if (it == ts.hashMessages.cend()) {
            lstProblems << qstrShown + QStringLiteral(": missing, while another language has it");
            continue;
        }
        if (!it->blFinished) {
            lstProblems << qstrShown + QStringLiteral(": not finished");
            continue;
        }
        if (!HasLetterOfScript(it->qstrTranslation, lang.eScript)) {
            lstProblems << qstrShown + QStringLiteral(": \"") + it->qstrTranslation +
                               QStringLiteral("\" is not written in the language's script");
        }
        const auto itEnglish = english.hashMessages.constFind(qstrId);
        if (itEnglish != english.hashMessages.cend() &&
            Placeholders(itEnglish->qstrTranslation) != Placeholders(it->qstrTranslation)) {
            lstProblems << qstrShown + QStringLiteral(": placeholders differ from English");
        }
    }
    lstProblems.sort();
    QVERIFY2(lstProblems.isEmpty(), qPrintable(lstProblems.join(QLatin1Char('\n'))));
}

void tst_Translations::compiledFileLoadsAndTranslates_data()
{
    sourceFileIsCompleteAndInItsLanguage_data();
}

// The dialog loads "./Lang/QuillPlayer/<file>.qm" from the installation; the
// build must have put every file there, and each must give back exactly what
// its source says (a stale or half-compiled file shows up here).
void tst_Translations::compiledFileLoadsAndTranslates()
{
    QFETCH(int, index);
    const LanguageFile& lang = kLanguages[index];
    const QString qstrQm = QmPath(lang.pszStem);
    QVERIFY2(QFileInfo::exists(qstrQm), qPrintable(qstrQm + QStringLiteral(" was not built")));

    QTranslator translator;
    QVERIFY2(translator.load(qstrQm, QString(), QString(), QString()), qPrintable(qstrQm));
    QVERIFY(!translator.isEmpty());

    const QString qstrSample =
        translator.translate("CLS_WgtPlayerControlBar", "btn_play_pause");
    QVERIFY(!qstrSample.isEmpty());
    QVERIFY(qstrSample != QLatin1String("btn_play_pause"));

    const TsFile& ts = m_mapTs[QLatin1String(lang.pszStem)];
    for (auto it = ts.hashMessages.cbegin(); it != ts.hashMessages.cend(); ++it) {
        const QString qstrContext = it.key().section(QLatin1Char('\n'), 0, 0);
        const QString qstrSource = it.key().section(QLatin1Char('\n'), 1);
        const QString qstrGot = translator.translate(qstrContext.toUtf8().constData(),
                                                     qstrSource.toUtf8().constData());
        QVERIFY2(qstrGot == it->qstrTranslation,
                 qPrintable(qstrContext + QStringLiteral(" / ") + qstrSource +
                            QStringLiteral(": the compiled file answers \"") + qstrGot +
                            QStringLiteral("\"")));
    }
}

void tst_Translations::everyKeyTheCodeUsesIsTranslatedInEveryLanguage()
{
    const QList<CodeUse> lstUses =
        ScanSources(QStringLiteral(QUILL_SOURCE_DIR),
                    {QStringLiteral("BriskInclude"), QStringLiteral("BusinessLib")});

    // The scan must see the framework's own keys, or it sees nothing at all.
    bool blSawModuleName = false;
    for (const CodeUse& use : lstUses) {
        blSawModuleName |= use.qstrContext == QLatin1String("CLS_ModuleBasic") &&
                           use.qstrText == QLatin1String("ModuleName");
    }
    QVERIFY2(blSawModuleName, "the source scan found no tr(\"ModuleName\") in CLS_ModuleBasic");

    QMap<QString, QString> mapMissing;  // "context / key (where)" -> languages
    for (const CodeUse& use : lstUses) {
        if (IsAllowed(use)) continue;
        if (use.qstrContext.isEmpty()) {
            mapMissing.insert(QStringLiteral("\"") + use.qstrText + QStringLiteral("\" (") +
                                  use.qstrWhere + QStringLiteral(")"),
                              QStringLiteral("every language: no class found around the call"));
            continue;
        }
        const QString qstrId = MessageId(use.qstrContext, use.qstrText);
        QStringList lstLanguages;
        for (const LanguageFile& lang : kLanguages) {
            const TsFile& ts = m_mapTs[QLatin1String(lang.pszStem)];
            const auto it = ts.hashMessages.constFind(qstrId);
            if (it == ts.hashMessages.cend() || !it->blFinished) {
                lstLanguages << QLatin1String(lang.pszStem);
            }
        }
        if (!lstLanguages.isEmpty()) {
            mapMissing.insert(use.qstrContext + QStringLiteral(" / \"") + use.qstrText +
                                  QStringLiteral("\" (") + use.qstrWhere + QStringLiteral(")"),
                              lstLanguages.size() == int(std::size(kLanguages))
                                  ? QStringLiteral("every language")
                                  : lstLanguages.join(QStringLiteral(", ")));
        }
    }

    QStringList lstReport;
    for (auto it = mapMissing.cbegin(); it != mapMissing.cend(); ++it) {
        lstReport << it.key() + QStringLiteral(": missing in ") + it.value();
    }
    QVERIFY2(lstReport.isEmpty(),
             qPrintable(QStringLiteral("texts the code translates but the language files lack "
                                       "(add them to Lang/tools/make_ts.py):\n") +
                        lstReport.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(tst_Translations)
#include "tst_Translations.moc"
