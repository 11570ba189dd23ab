#include "Orvi/OrvHistoryPalette.h"

#include "Orvi/OrvHistoryModel.h"

#include <QtWidgets/QListView>

OrvHistoryPalette::OrvHistoryPalette(QWidget* pParent)
    : OrvPalette(pParent)
{
    auto* pView = new QListView(this);
    auto* pModel = new OrvHistoryModel(pView);
    pView->setModel(pModel);
    pView->setUniformItemSizes(true);
    pView->setFrameShape(QFrame::NoFrame);
    const auto showPresent = [pView, pModel] {
        pView->setCurrentIndex(pModel->index(pModel->presentRow()));
        pView->scrollTo(pView->currentIndex());
    };
    connect(pView, &QListView::clicked, pModel,
        [pModel](const QModelIndex& Index) { pModel->goTo(Index.row()); });
    connect(pModel, &OrvHistoryModel::presentRowChanged, pView, showPresent);
    showPresent();
    setBodyWidget(pView);
    setObjectName(tr("History"));
    setWindowTitle(tr("History"));
}

#include "moc_OrvHistoryPalette.cpp"
