#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvShaderInputPropertiesPane.h"

#include "OrvCore/Channels/OrvShaderInput.h"
#include "OrvCore/Network/OrvSnBaseNode.h"
#include "OrvCore/Undo/OrvUndoManager.h"
#include "OrvCoreModules/Properties/OrvPropertyView.h"
#include "OrvDdi/Color/OrvColorSpaceConfig.h"
#include "OrvDdi/Color/OrvColorSpaceManager.h"
#include "OrvPlugins/OrvShaderNetworkLayerViewContext/OrvPaletteSplitter.h"

#include <QtCore/QPointer>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QVBoxLayout>

namespace {

const QSize SmallestSize(40, 40);
constexpr int PropertyDisplayFlags = OrvPropertyView::ShowGroupTitles | OrvPropertyView::Editable
    | OrvPropertyView::LeaveOutHidden | OrvPropertyView::FollowChanges | OrvPropertyView::NoScrollArea
    | OrvPropertyView::CompactRows;

} // namespace

OrvShaderInputPropertiesPane::OrvShaderInputPropertiesPane(QWidget* pParent)
    : QWidget(pParent)
{
    setMinimumSize(SmallestSize);
    QScrollArea* pScrollArea = new QScrollArea(this);
    pScrollArea->setWidgetResizable(true);
    pScrollArea->setContentsMargins(0, 0, 0, 0);
    pScrollArea->setSizePolicy(QSizePolicy::MinimumExpanding, QSizePolicy::MinimumExpanding);
    OrvPaletteSplitter::createTightLayout(this)->addWidget(pScrollArea);
    QWidget* pContents = new QWidget;
    pContents->setMinimumSize(0, 0);
    m_PropertyLayout = OrvPaletteSplitter::createTightLayout(pContents);
    pScrollArea->setWidget(pContents);
}

void OrvShaderInputPropertiesPane::showProperties(OrvShaderInput* pShaderInput)
{
    clear();
    if (!pShaderInput || !pShaderInput->node())
        return;
    m_PropertyLayout->addWidget(createProperties(pShaderInput));
    m_PropertyLayout->addStretch();
}

void OrvShaderInputPropertiesPane::clear()
{
    while (QLayoutItem* pItem = m_PropertyLayout->takeAt(0)) {
        // One of its editors may be what led here.
        if (QWidget* pWidget = pItem->widget()) {
            pWidget->hide();
            pWidget->deleteLater();
        }
        delete pItem;
    }
}

OrvPropertyView* OrvShaderInputPropertiesPane::createProperties(OrvShaderInput* pShaderInput) const
{
    OrvColorSpaceConfig& Config = pShaderInput->colorSpaceConfig();
    if (OrvColorSpaceManager::instance().userInterfaceMode() == 0) {
        Config.setColorSpaceVisible(OrvColorSpaceConfig::NativeSpace, true);
        Config.setDataPrettyNameDesignable(false);
    }
    const QStringList Hidden = QStringList{QStringLiteral("imageSetDepthString"),
                                   QStringLiteral("imageSetSize"), QStringLiteral("fileSpace")}
        + Config.propertyMap().keys();
    const auto title = [](const QString& Name) { return tr("Channel : %1").arg(Name); };
    const QMap<QString, QString> Titles{{QString(), title(pShaderInput->node()->name())}};
    auto* pProperties = new OrvPropertyView(pShaderInput->node(), m_PropertyLayout->parentWidget(), Titles,
        OrvPropertyView::GroupPerClass, PropertyDisplayFlags, Hidden, false);
    connect(pShaderInput->node(), &OrvSnBaseNode::nameChanged, pProperties,
        [pProperties, title](const QString& Name) { pProperties->setGroupTitle(QString(), title(Name)); });
    const auto followObstacles = [pProperties, pGuarded = QPointer<OrvShaderInput>(pShaderInput)] {
        if (pGuarded)
            pProperties->setEnabled(pGuarded->isModifiable());
    };
    followObstacles();
    // Locks and caches of whatever shares the channel count, too, and so does that it is shared at all.
    connect(&OrvUndoManager::instance(), &OrvUndoManager::editFinished, pProperties, followObstacles);
    return pProperties;
}

#include "moc_OrvShaderInputPropertiesPane.cpp"
