#include "OrvCoreModules/Widgets/OrvComboBox.h"

#include <QtGui/QWheelEvent>

OrvComboBox::OrvComboBox(QWidget* pParent)
    : QComboBox(pParent)
{
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(22);
    setMaxVisibleItems(30);
    // A long entry must not widen the palette around it.
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(6);
}

void OrvComboBox::wheelEvent(QWheelEvent* pEvent)
{
    if (hasFocus())
        QComboBox::wheelEvent(pEvent);
    else
        pEvent->ignore();
}

#include "moc_OrvComboBox.cpp"
