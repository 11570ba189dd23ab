#include "OrvCoreModules/Widgets/OrvFormLayout.h"

#include <QtWidgets/QWidget>

namespace {

/// Of one form, the labels of rows that have a field beside them.
QList<QWidget*> labels(const QFormLayout* pForm)
{
    QList<QWidget*> Labels;
    for (int Row = 0; Row < pForm->rowCount(); ++Row) {
        QLayoutItem* pItem = pForm->itemAt(Row, QFormLayout::LabelRole);
        if (pItem && pItem->widget())
            Labels.append(pItem->widget());
    }
    return Labels;
}

} // namespace

OrvFormLayout::OrvFormLayout(QWidget* pParent)
    : QFormLayout(pParent)
{
    setContentsMargins(2, 2, 2, 2);
    setHorizontalSpacing(6);
    setVerticalSpacing(2);
    setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    setFieldGrowthPolicy(AllNonFixedFieldsGrow);
    setRowWrapPolicy(DontWrapRows);
}

void OrvFormLayout::alignLabels(const QList<QWidget*>& Widgets)
{
    QList<QWidget*> Labels;
    for (const QWidget* pWidget : Widgets) {
        const QList<OrvFormLayout*> Forms
            = pWidget ? pWidget->findChildren<OrvFormLayout*>() : QList<OrvFormLayout*>();
        for (const OrvFormLayout* pForm : Forms)
            Labels += labels(pForm);
    }
    int Widest = 0;
    for (QWidget* pLabel : qAsConst(Labels)) {
        // What a label wants is no less than what it was given before.
        pLabel->setMinimumWidth(0);
        Widest = qMax(Widest, pLabel->sizeHint().width());
    }
    for (QWidget* pLabel : qAsConst(Labels))
        pLabel->setMinimumWidth(Widest);
}

#include "moc_OrvFormLayout.cpp"
