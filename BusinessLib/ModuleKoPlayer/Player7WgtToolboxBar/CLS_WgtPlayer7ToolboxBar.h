#pragma once

#include <QWidget>

namespace Ui {
class CLS_WgtPlayer7ToolboxBar;
}

// Title bar of the history panel: a caption with an arrow over its right end.
// A click on either asks the panel to close.
class CLS_WgtPlayer7ToolboxBar : public QWidget
{
    Q_OBJECT
public:
    explicit CLS_WgtPlayer7ToolboxBar(QWidget* _pParent = nullptr);
    ~CLS_WgtPlayer7ToolboxBar() override;

    void SetText(const QString& _qstrText);

signals:
    void SignClicked(bool _blChecked);
    // Part of the bar's interface for callers; the bar itself never raises it.
    void SignItemBtnClicked(QString _qstrFilePath);

private slots:
    void on_tlb_arrow_clicked();

protected:
    void mousePressEvent(QMouseEvent* _pEvent) override;
    void mouseMoveEvent(QMouseEvent* _pEvent) override;
    void resizeEvent(QResizeEvent* _pEvent) override;

private:
    void ApplyTextDirection();

    // Stays false: the panel only ever closes on a click, so the arrow's own
    // checked state is deliberately not reported.
    bool m_blChecked = false;
    Ui::CLS_WgtPlayer7ToolboxBar* ui;
};
