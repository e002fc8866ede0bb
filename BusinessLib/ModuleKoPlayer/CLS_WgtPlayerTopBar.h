#pragma once

#include <QWidget>

class QTimer;

namespace Ui {
class CLS_WgtPlayerTopBar;
}

// The title strip of the frameless player dialog: title, wall clock, and the
// minimise, maximise/restore and close buttons. It reports clicks and mirrors
// the dialog's maximised state; the dialog does the work.
class CLS_WgtPlayerTopBar : public QWidget
{
    Q_OBJECT

public:
    explicit CLS_WgtPlayerTopBar(QWidget* _pParent = nullptr);
    ~CLS_WgtPlayerTopBar() override;

    CLS_WgtPlayerTopBar(const CLS_WgtPlayerTopBar&) = delete;
    CLS_WgtPlayerTopBar& operator=(const CLS_WgtPlayerTopBar&) = delete;

signals:
    void SignMiniSize();
    void SignMaxSize();
    void SignAppClose();

private slots:
    void SlotHandleTimerEvent();
    // Called by name through the meta-object system by the dialog.
    void SlotSetWindowStatus(bool _blMaxSize);

private:
    void InitTopBarUI();

    Ui::CLS_WgtPlayerTopBar* ui;
    QTimer* m_pTimer = nullptr;
};
