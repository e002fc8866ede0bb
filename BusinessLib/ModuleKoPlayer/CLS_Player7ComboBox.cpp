#include "CLS_Player7ComboBox.h"

#include <QApplication>

CLS_Player7ComboBox::CLS_Player7ComboBox(QWidget* _pParent) : QComboBox(_pParent) {}

void CLS_Player7ComboBox::showPopup()
{
    const bool blAnimate = QApplication::isEffectEnabled(Qt::UI_AnimateCombo);
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, false);
    QComboBox::showPopup();
    QApplication::setEffectEnabled(Qt::UI_AnimateCombo, blAnimate);

    // The popup container is the combo box's own first widget child.
    QWidget* pContainer = findChild<QWidget*>();
    if (!pContainer) return;
    const QPoint qptTopLeft = mapToGlobal(QPoint(0, 0));
    pContainer->move(qptTopLeft.x(), qptTopLeft.y() - pContainer->height());
}
