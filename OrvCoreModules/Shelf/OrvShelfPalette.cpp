#include "OrvCoreModules/Shelf/OrvShelfPalette.h"

#include "OrvCore/Layers/OrvLayer.h"
#include "OrvCore/Layers/OrvLayerManager.h"
#include "OrvCore/Layers/OrvLayerStack.h"
#include "OrvCore/Shaders/OrvMultiChannelLayerUtils.h"
#include "OrvCore/Shelf/OrvMaterialPaintManager.h"
#include "OrvCore/Shelf/OrvShelfDirectories.h"
#include "OrvCoreModules/Menus/OrvMenu.h"
#include "OrvCoreModules/Shelf/OrvShelfModel.h"
#include "OrvCoreModules/Window/OrvMainWindow.h"
#include "OrvCoreModules/Window/OrvStatusManager.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSortFilterProxyModel>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QStyledItemDelegate>
#include <QtWidgets/QVBoxLayout>

namespace {

constexpr int ThumbnailEdge = 84;
constexpr int StatusDuration = 5000;
constexpr int LayerFlags
    = OrvLayerAboveCurrent | OrvLayerMakeCurrent | OrvLayerUniqueName | OrvLayerSelectAlone;

/// Gives every entry the whole of its cell, so that long names have room for a second line.
class CellDelegate : public QStyledItemDelegate {
public:
    explicit CellDelegate(QListView* pView)
        : QStyledItemDelegate(pView)
        , m_pView(pView)
    {
    }
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return m_pView->gridSize();
    }

protected:
    void initStyleOption(QStyleOptionViewItem* pOption, const QModelIndex& Index) const override
    {
        QStyledItemDelegate::initStyleOption(pOption, Index);
        pOption->displayAlignment = Qt::AlignHCenter | Qt::AlignTop;
    }

private:
    const QListView* m_pView;
};

QListView* makeView(QWidget* pParent)
{
    auto* pView = new QListView(pParent);
    pView->setViewMode(QListView::IconMode);
    pView->setResizeMode(QListView::Adjust);
    pView->setMovement(QListView::Static);
    pView->setUniformItemSizes(true);
    pView->setWordWrap(true);
    pView->setIconSize(QSize(ThumbnailEdge, ThumbnailEdge));
    pView->setGridSize(QSize(ThumbnailEdge + 24, ThumbnailEdge + 16 + 2 * pView->fontMetrics().height()));
    pView->setItemDelegate(new CellDelegate(pView));
    pView->setFrameShape(QFrame::NoFrame);
    pView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    pView->setDragEnabled(true);
    pView->setDragDropMode(QAbstractItemView::DragOnly);
    pView->setContextMenuPolicy(Qt::CustomContextMenu);
    return pView;
}

QString keyAt(const QModelIndex& Index)
{
    return Index.data(OrvShelfModel::KeyRole).toString();
}

} // namespace

OrvShelfPalette::OrvShelfPalette(QWidget* pParent)
    : OrvPalette(pParent)
    , m_pModel(new OrvShelfModel(this))
    , m_pFound(new QSortFilterProxyModel(this))
{
    m_pFound->setSourceModel(m_pModel);
    m_pFound->setFilterRole(OrvShelfModel::SearchRole);
    m_pFound->setFilterCaseSensitivity(Qt::CaseInsensitive);
    auto* pBody = new QWidget(this);
    m_pSearch = new QLineEdit(pBody);
    m_pSearch->setPlaceholderText(tr("Search"));
    m_pSearch->setClearButtonEnabled(true);
    m_pView = makeView(pBody);
    m_pView->setModel(m_pFound);
    m_pHint = new QLabel(pBody);
    m_pHint->setAlignment(Qt::AlignCenter);
    m_pHint->setWordWrap(true);
    m_pHint->setEnabled(false);
    auto* pLayout = new QVBoxLayout(pBody);
    pLayout->setContentsMargins(4, 4, 4, 4);
    pLayout->setSpacing(4);
    pLayout->addWidget(m_pSearch);
    pLayout->addWidget(m_pView, 1);
    pLayout->addWidget(m_pHint, 1);
    setBodyWidget(pBody);
    setObjectName(tr("Shelf"));
    setWindowTitle(tr("Shelf"));
    connect(m_pSearch, &QLineEdit::textChanged, this, &OrvShelfPalette::search);
    connect(m_pView, &QListView::activated, this, &OrvShelfPalette::addAsLayer);
    connect(m_pView, &QWidget::customContextMenuRequested, this, &OrvShelfPalette::popupMenu);
    connect(m_pFound, &QAbstractItemModel::modelReset, this, &OrvShelfPalette::updateHint);
    connect(m_pFound, &QAbstractItemModel::rowsInserted, this, &OrvShelfPalette::updateHint);
    connect(m_pFound, &QAbstractItemModel::rowsRemoved, this, &OrvShelfPalette::updateHint);
    updateHint();
}

void OrvShelfPalette::showEvent(QShowEvent* pEvent)
{
    OrvPalette::showEvent(pEvent);
    // The window is painted before the shelf is read.
    QTimer::singleShot(0, m_pModel, &OrvShelfModel::open);
}

void OrvShelfPalette::search(const QString& Text)
{
    m_pFound->setFilterFixedString(Text.trimmed());
    updateHint();
}

void OrvShelfPalette::updateHint()
{
    const bool Empty = m_pFound->rowCount() == 0;
    m_pHint->setText(m_pModel->rowCount() == 0
            ? tr("Nothing on the shelf")
            : tr("Nothing found for \"%1\"").arg(m_pSearch->text().trimmed()));
    m_pView->setVisible(!Empty);
    m_pHint->setVisible(Empty);
}

void OrvShelfPalette::addAsLayer(const QModelIndex& Index)
{
    const OrvShelfEntry* pEntry = OrvMaterialPaintManager::instance().entry(keyAt(Index));
    if (!pEntry)
        return;
    if (!pEntry->Error.isEmpty()) {
        QMessageBox::warning(
            &OrvMainWindow::instance(), tr("Cannot Use '%1'").arg(pEntry->Name), pEntry->Error);
        return;
    }
    const bool IsMaterial = pEntry->What == OrvShelfEntry::Material;
    OrvLayerStack* pStack = OrvLayerManager::instance().currentLayerStack();
    if (!pStack) {
        OrvStatusManager::instance().showMessage(
            tr("There is no layer stack to add '%1' to.").arg(Index.data().toString()), StatusDuration);
        return;
    }
    if (IsMaterial) {
        addMaterial(Index, pStack);
        return;
    }
    QString Error;
    if (!pStack->createCustomProceduralLayer(keyAt(Index), nullptr, LayerFlags, Error))
        QMessageBox::warning(
            &OrvMainWindow::instance(), tr("Custom Procedural Layer Creation Failed"), Error);
}

void OrvShelfPalette::addMaterial(const QModelIndex& Index, const OrvLayerStack* pStack)
{
    if (OrvMultiChannelLayerUtils::shadersForMultiChannelLayers(pStack).isEmpty()) {
        OrvStatusManager::instance().showMessage(
            tr("A material goes into the channels of a shader: connect this channel to one first."),
            StatusDuration);
        return;
    }
    const OrvShelfEntry* pEntry = OrvMaterialPaintManager::instance().entry(keyAt(Index));
    const OrvLayerShader* pShader
        = OrvMultiChannelLayerUtils::shaderForMultiChannelLayerCreationWithUserInput(pStack);
    if (!pEntry || !pShader)
        return;
    QString Error;
    if (!OrvMultiChannelLayerUtils::createMaterialLayer(pEntry->Path, pShader, nullptr, Error))
        QMessageBox::warning(&OrvMainWindow::instance(), tr("Material Layer Creation Failed"), Error);
}

void OrvShelfPalette::addAsMask(const QModelIndex& Index)
{
    OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    QString Error;
    if (pLayer && !pLayer->addMaskCustomProcedural(keyAt(Index), Error))
        QMessageBox::warning(&OrvMainWindow::instance(), tr("Mask Creation Failed"), Error);
}

void OrvShelfPalette::showInFiles(const QModelIndex& Index)
{
    if (const OrvShelfEntry* pEntry = OrvMaterialPaintManager::instance().entry(keyAt(Index)))
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(pEntry->Path).path()));
}

void OrvShelfPalette::openUserDirectory()
{
    QDir().mkpath(OrvShelfDirectories::user());
    QDesktopServices::openUrl(QUrl::fromLocalFile(OrvShelfDirectories::user()));
}

void OrvShelfPalette::popupMenu(const QPoint& Position)
{
    const QPersistentModelIndex Index = m_pView->indexAt(Position);
    const bool Usable = Index.data(OrvShelfModel::UsableRole).toBool();
    const OrvLayer* pLayer = OrvLayerManager::instance().currentLayer();
    auto* pMenu = new OrvMenu(this);
    pMenu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add
        = [&](const QString& Text, bool Enabled, void (OrvShelfPalette::*pDo)(const QModelIndex&)) {
              QAction* pAction = pMenu->addAction(Text);
              pAction->setEnabled(Enabled);
              connect(pAction, &QAction::triggered, this, [this, Index, pDo] { (this->*pDo)(Index); });
          };
    const OrvLayerStack* pStack = OrvLayerManager::instance().currentLayerStack();
    const bool UsableMaterial = Index.data(OrvShelfModel::MaterialRole).toBool()
        && !OrvMultiChannelLayerUtils::shadersForMultiChannelLayers(pStack).isEmpty();
    add(tr("Add as Layer"), (Usable && pStack) || UsableMaterial, &OrvShelfPalette::addAsLayer);
    add(tr("Use as Mask of the Current Layer"), Usable && pLayer && !pLayer->hasMask(),
        &OrvShelfPalette::addAsMask);
    pMenu->addSeparator();
    add(tr("Open Its Folder"), Index.isValid(), &OrvShelfPalette::showInFiles);
    connect(pMenu->addAction(tr("Open My Shelf Folder")), &QAction::triggered, this,
        &OrvShelfPalette::openUserDirectory);
    pMenu->popup(m_pView->viewport()->mapToGlobal(Position));
}

#include "moc_OrvShelfPalette.cpp"
