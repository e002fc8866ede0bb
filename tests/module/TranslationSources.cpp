#include "TranslationSources.h"

#include <algorithm>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QPair>
#include <QRegularExpression>
#include <QXmlStreamReader>

namespace LangScan {

QString MessageId(const QString& _qstrContext, const QString& _qstrSource)
{
    return _qstrContext + QLatin1Char('\n') + _qstrSource;
}

TsFile ReadTs(const QString& _qstrPath)
{
    TsFile ts;
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) {
        ts.qstrError = QStringLiteral("cannot open ") + _qstrPath;
        return ts;
    }
    QXmlStreamReader xml(&file);
    QString qstrContext;
    QString qstrSource;
    Message message;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            const QStringRef name = xml.name();
            if (name == QLatin1String("TS")) {
                ts.qstrLanguage = xml.attributes().value(QLatin1String("language")).toString();
            } else if (name == QLatin1String("name")) {
                qstrContext = xml.readElementText();
            } else if (name == QLatin1String("message")) {
                qstrSource.clear();
                message = Message();
            } else if (name == QLatin1String("source")) {
                qstrSource = xml.readElementText();
            } else if (name == QLatin1String("translation")) {
                // "unfinished", "obsolete" and "vanished" all mean the text is
                // not ready to be shown.
                const bool blTyped = xml.attributes().hasAttribute(QLatin1String("type"));
                message.qstrTranslation = xml.readElementText();
                message.blFinished = !blTyped && !message.qstrTranslation.trimmed().isEmpty();
            }
        } else if (xml.isEndElement() && xml.name() == QLatin1String("message")) {
            ts.hashMessages.insert(MessageId(qstrContext, qstrSource), message);
        }
    }
    if (xml.hasError()) {
        ts.qstrError = _qstrPath + QStringLiteral(": ") + xml.errorString() +
                       QStringLiteral(" at line ") + QString::number(xml.lineNumber());
    }
    return ts;
}

namespace {

// Blanks out comments, keeping string literals and line breaks, so that a
// commented-out tr() is not counted and line numbers stay right.
QString StripComments(const QString& _qstrCode)
{
    QString qstrOut = _qstrCode;
    enum { Code, Line, Block, String, Char } eState = Code;
    for (int i = 0; i < qstrOut.size(); ++i) {
        const QChar c = qstrOut.at(i);
        const QChar next = i + 1 < qstrOut.size() ? qstrOut.at(i + 1) : QChar();
        switch (eState) {
            case Code:
                if (c == QLatin1Char('/') && next == QLatin1Char('/')) {
                    eState = Line;
                    qstrOut[i] = QLatin1Char(' ');
                } else if (c == QLatin1Char('/') && next == QLatin1Char('*')) {
                    eState = Block;
                    qstrOut[i] = QLatin1Char(' ');
                } else if (c == QLatin1Char('"')) {
                    eState = String;
                } else if (c == QLatin1Char('\'')) {
                    eState = Char;
                }
                break;
            case Line:
                if (c == QLatin1Char('\n')) {
                    eState = Code;
                } else {
                    qstrOut[i] = QLatin1Char(' ');
                }
                break;
            case Block:
                if (c == QLatin1Char('*') && next == QLatin1Char('/')) {
                    qstrOut[i] = QLatin1Char(' ');
                    qstrOut[i + 1] = QLatin1Char(' ');
                    ++i;
                    eState = Code;
                } else if (c != QLatin1Char('\n')) {
                    qstrOut[i] = QLatin1Char(' ');
                }
                break;
            case String:
            case Char:
                if (c == QLatin1Char('\\')) {
                    ++i;
                } else if ((eState == String && c == QLatin1Char('"')) ||
                           (eState == Char && c == QLatin1Char('\''))) {
                    eState = Code;
                }
                break;
        }
    }
    return qstrOut;
}

QString Unescape(const QString& _qstrLiteral)
{
    QString qstrOut;
    for (int i = 0; i < _qstrLiteral.size(); ++i) {
        QChar c = _qstrLiteral.at(i);
        if (c == QLatin1Char('\\') && i + 1 < _qstrLiteral.size()) {
            c = _qstrLiteral.at(++i);
            if (c == QLatin1Char('n')) c = QLatin1Char('\n');
            if (c == QLatin1Char('t')) c = QLatin1Char('\t');
        }
        qstrOut.append(c);
    }
    return qstrOut;
}

int LineAt(const QString& _qstrText, int _iPos)
{
    return _qstrText.leftRef(_iPos).count(QLatin1Char('\n')) + 1;
}

// C++ source patterns (raw strings kept out of macro arguments, which moc
// cannot read).
const char k_Definition[] =
    R"re(^(?:[A-Za-z_][^;{}()#=\n]*[\s*&])?((?:[A-Za-z_]\w*::)*[A-Za-z_]\w*)::~?[A-Za-z_]\w*\s*\()re";
const char k_Class[] =
    R"re(\b(?<!enum\s)(?:class|struct)\s+(?:[A-Z_][A-Z0-9_]*\s+)?([A-Za-z_]\w*)\s*(?:final\s*)?[:{])re";
const char k_Tr[] =
    R"re((?<![\w.>])(?:([A-Za-z_]\w*)::)?(?:tr|QT_TR_NOOP)\s*\(\s*"((?:[^"\\\n]|\\.)*)")re";
const char k_Translate[] =
    R"re(\b(?:translate|QT_TRANSLATE_NOOP)\s*\(\s*"((?:[^"\\\n]|\\.)*)"\s*,\s*"((?:[^"\\\n]|\\.)*)")re";

// tr() takes its context from the class it is written in: the class of the
// member function around the call (a definition "Class::Function(" at the
// start of a line), or the class whose declaration encloses an inline body.
void ScanCode(const QString& _qstrPath, const QString& _qstrShownPath, QList<CodeUse>& _lstUses)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return;
    const QString qstrCode = StripComments(QString::fromUtf8(file.readAll()));

    static const QRegularExpression reDefinition{QLatin1String(k_Definition),
                                                 QRegularExpression::MultilineOption};
    static const QRegularExpression reClass{QLatin1String(k_Class)};
    static const QRegularExpression reTr{QLatin1String(k_Tr)};
    static const QRegularExpression reTranslate{QLatin1String(k_Translate)};

    QList<QPair<int, QString>> lstScopes;  // position -> class, in order
    for (auto it = reDefinition.globalMatch(qstrCode); it.hasNext();) {
        const auto match = it.next();
        lstScopes.append({static_cast<int>(match.capturedStart()), match.captured(1)});
    }
    for (auto it = reClass.globalMatch(qstrCode); it.hasNext();) {
        const auto match = it.next();
        lstScopes.append({static_cast<int>(match.capturedStart()), match.captured(1)});
    }
    std::sort(lstScopes.begin(), lstScopes.end(),
              [](const auto& a, const auto& b) { return a.first < b.first; });

    auto scopeAt = [&lstScopes](int _iPos) {
        QString qstrClass;
        for (const auto& scope : lstScopes) {
            if (scope.first > _iPos) break;
            qstrClass = scope.second;
        }
        return qstrClass;
    };
    auto where = [&](int _iPos) -> QString {
        return _qstrShownPath + QLatin1Char(':') + QString::number(LineAt(qstrCode, _iPos));
    };

    for (auto it = reTr.globalMatch(qstrCode); it.hasNext();) {
        const auto match = it.next();
        const int iPos = static_cast<int>(match.capturedStart());
        QString qstrContext = match.captured(1);
        if (qstrContext.isEmpty()) qstrContext = scopeAt(iPos);
        _lstUses.append({qstrContext, Unescape(match.captured(2)), where(iPos)});
    }
    for (auto it = reTranslate.globalMatch(qstrCode); it.hasNext();) {
        const auto match = it.next();
        _lstUses.append({Unescape(match.captured(1)), Unescape(match.captured(2)),
                         where(static_cast<int>(match.capturedStart()))});
    }
}

// A form's retranslateUi passes every <string> through the translator in the
// context of the form's class, unless the string is marked notr. Style sheets
// go the same way but are no texts to translate; they are left out.
void ScanForm(const QString& _qstrPath, const QString& _qstrShownPath, QList<CodeUse>& _lstUses)
{
    QFile file(_qstrPath);
    if (!file.open(QIODevice::ReadOnly)) return;
    QXmlStreamReader xml(&file);
    QString qstrClass;
    QStringList lstProperties;
    QList<CodeUse> lstFormUses;
    while (!xml.atEnd()) {
        xml.readNext();
        if (xml.isStartElement()) {
            if (xml.name() == QLatin1String("class") && qstrClass.isEmpty() &&
                lstProperties.isEmpty()) {
                qstrClass = xml.readElementText().trimmed();
            } else if (xml.name() == QLatin1String("property") ||
                       xml.name() == QLatin1String("attribute")) {
                lstProperties.append(xml.attributes().value(QLatin1String("name")).toString());
            } else if (xml.name() == QLatin1String("string")) {
                const bool blNoTr =
                    xml.attributes().value(QLatin1String("notr")) == QLatin1String("true");
                const QString qstrProperty = lstProperties.isEmpty() ? QString() : lstProperties.last();
                const int iLine = static_cast<int>(xml.lineNumber());
                const QString qstrText = xml.readElementText();
                if (!blNoTr && !qstrText.isEmpty() && qstrProperty != QLatin1String("styleSheet") &&
                    qstrProperty != QLatin1String("objectName")) {
                    lstFormUses.append(
                        {QString(), qstrText, _qstrShownPath + QLatin1Char(':') + QString::number(iLine)});
                }
            }
        } else if (xml.isEndElement() && (xml.name() == QLatin1String("property") ||
                                          xml.name() == QLatin1String("attribute"))) {
            if (!lstProperties.isEmpty()) lstProperties.removeLast();
        }
    }
    for (CodeUse& use : lstFormUses) {
        use.qstrContext = qstrClass;
        _lstUses.append(use);
    }
}

}  // namespace

QList<CodeUse> ScanSources(const QString& _qstrRoot, const QStringList& _lstFolders)
{
    QList<CodeUse> lstUses;
    const QDir root(_qstrRoot);
    for (const QString& qstrFolder : _lstFolders) {
        QDirIterator it(root.filePath(qstrFolder),
                        {QStringLiteral("*.cpp"), QStringLiteral("*.h"), QStringLiteral("*.ui")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString qstrPath = it.next();
            const QString qstrShown = root.relativeFilePath(qstrPath);
            if (qstrPath.endsWith(QLatin1String(".ui"))) {
                ScanForm(qstrPath, qstrShown, lstUses);
            } else {
                ScanCode(qstrPath, qstrShown, lstUses);
            }
        }
    }
    return lstUses;
}

}  // namespace LangScan
