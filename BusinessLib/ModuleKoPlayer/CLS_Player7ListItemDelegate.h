#pragma once

#include <QStyledItemDelegate>

// Paints list entries in the suite's named colours: centred text on a filled
// cell, drawn over once more in the highlight colour when hovered or selected,
// and a small downward triangle for an entry without text. The text is read
// from role Qt::UserRole + 1, not from the display role.
class CLS_Player7ListItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CLS_Player7ListItemDelegate(QObject* _pParent = nullptr);

    void paint(QPainter* _pPainter, const QStyleOptionViewItem& _option,
               const QModelIndex& _index) const override;
    QSize sizeHint(const QStyleOptionViewItem& _option, const QModelIndex& _index) const override;

    static constexpr int kTextRole = Qt::UserRole + 1;

private:
    // Kept as the colour service's text and turned into colours when painting;
    // fixed at construction, so a later change of scheme is not picked up.
    QString m_qstrFontFamily;
    QString m_qstrBorderColor;
    QString m_qstrFillColor;
    QString m_qstrTextColor;
    QString m_qstrHighlightColor;
};
