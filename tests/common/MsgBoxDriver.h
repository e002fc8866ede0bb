#pragma once

// The player's message boxes, found and answered as a user would.

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QtTest>

namespace QuillTest {

inline QWidget* ShownMsgBox()
{
    for (QWidget* pWidget : QApplication::topLevelWidgets())
        if (pWidget->isVisible() && pWidget->objectName() == QLatin1String("CLS_WgtMsgBox"))
            return pWidget;
    return nullptr;
}

// Waits for a box saying _qstrContent, types _qstrInput when it asks for
// input, presses _button and waits for the box to go.
inline void AnswerMsgBox(const QString& _qstrContent,
                         QDialogButtonBox::StandardButton _button = QDialogButtonBox::Ok,
                         const QString& _qstrInput = QString(), int _iTimeoutMs = 10000)
{
    QWidget* pBox = nullptr;
    QTRY_VERIFY_WITH_TIMEOUT((pBox = ShownMsgBox()) != nullptr, _iTimeoutMs);
    QCOMPARE(pBox->findChild<QLabel*>(QStringLiteral("lbl_content"))->text(), _qstrContent);
    if (auto* pInput = pBox->findChild<QLineEdit*>(QStringLiteral("lineEdit_input")))
        pInput->setText(_qstrInput);
    QPointer<QWidget> pAnswered(pBox);
    pBox->findChild<QDialogButtonBox*>()->button(_button)->click();
    const auto gone = [&pAnswered] {
        const QWidget* pLeft = pAnswered.data();
        return pLeft == nullptr || pLeft->isHidden();
    };
    QTRY_VERIFY_WITH_TIMEOUT(gone(), _iTimeoutMs);
}

}  // namespace QuillTest
