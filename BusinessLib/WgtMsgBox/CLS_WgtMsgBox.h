#pragma once

#include "CLS_ViewBasic.h"

#include <QPoint>

class QAbstractButton;

namespace Ui {
class CLS_WgtMsgBox;
}

// The suite's message box: a frameless, modal box that shows a message (and
// optionally asks for a text, typically a password) and answers the request
// "ShowMessage" once, with the pressed button, through SignRequestTaskRsulted.
// It deletes itself after answering.
class CLS_WgtMsgBox : public CLS_ViewBasic
{
    Q_OBJECT
public:
    explicit CLS_WgtMsgBox(QWidget* _pParent = nullptr);
    ~CLS_WgtMsgBox() override;

    const char* GetModuleCode() override;
    void InitUi() override;
    void InitConnect() override;
    bool HandleTask(const QString& _qstrBusinessKey, const QVariantMap& _qmapParam,
                    QVariantMap& _qmapResult) override;

protected:
    void keyPressEvent(QKeyEvent* _pEvent) override;
    void closeEvent(QCloseEvent* _pEvent) override;
    void mousePressEvent(QMouseEvent* _pEvent) override;
    void mouseMoveEvent(QMouseEvent* _pEvent) override;
    void mouseReleaseEvent(QMouseEvent* _pEvent) override;

private slots:
    void SlotButtonClicked(QAbstractButton* _pButton);
    void SlotShowPassword(bool _blShow);

private:
    bool ShowMessage(const QVariantMap& _qmapParam);
    void SetButtons(int _iButtons, int _iDefaultButton);
    void PlaceAndShow(QWidget* _pParent);
    // Sends the one answer this box gives. The typed text travels only in the
    // signal, never in a log line.
    void Answer(int _iButton);

    Ui::CLS_WgtMsgBox* ui;
    QString m_qstrBusinessUUID;
    bool m_blAsked = false;
    bool m_blAnswered = false;
    bool m_blDragging = false;
    QPoint m_ptDragOffset;
};
