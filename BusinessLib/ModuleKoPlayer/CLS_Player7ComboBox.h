#pragma once

#include <QComboBox>

// The speed combo box. It sits at the bottom of the player, so its list
// always opens upwards, and without the slide animation that would start it
// off in the wrong place.
class CLS_Player7ComboBox : public QComboBox
{
    Q_OBJECT

public:
    explicit CLS_Player7ComboBox(QWidget* _pParent = nullptr);

    void showPopup() override;
};
