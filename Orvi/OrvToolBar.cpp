#include "Orvi/OrvToolBar.h"

#include "Orvi/OrvCanvasTools.h"
#include "Orvi/OrvSelectionTool.h"

#include "OrvCoreModules/Menus/OrvLateBindAction.h"
#include "OrvCoreModules/Window/OrvIcon.h"

#include <QtWidgets/QButtonGroup>
#include <QtWidgets/QToolButton>

OrvToolBar::OrvToolBar(OrvCanvasTools* pTools, QWidget* pParent)
    : QToolBar(tr("Tools"), pParent)
    , m_pTools(pTools)
    , m_pToolButtons(new QButtonGroup(this))
    , m_pModeButtons(new QButtonGroup(this))
{
    setObjectName(QStringLiteral("ToolBar"));
    addButton(m_pToolButtons, OrvCanvasTools::Brush, QStringLiteral("Brush.png"), tr("Paint (B)"));
    addButton(m_pToolButtons, OrvCanvasTools::SelectRectangle, QStringLiteral("SelectRectangle.png"),
        tr("Select a rectangle (M)"));
    addButton(m_pToolButtons, OrvCanvasTools::SelectLasso, QStringLiteral("SelectLasso.png"),
        tr("Select what a line encloses (L)"));
    addSeparator();
    addButton(
        m_pModeButtons, OrvSelectionArea::Replace, QStringLiteral("SelectionReplace.png"), tr("Select anew"));
    addButton(m_pModeButtons, OrvSelectionArea::Add, QStringLiteral("SelectionAdd.png"),
        tr("Add to the selection (Shift)"));
    addButton(m_pModeButtons, OrvSelectionArea::Subtract, QStringLiteral("SelectionSubtract.png"),
        tr("Subtract from the selection (Alt)"));
    addButton(m_pModeButtons, OrvSelectionArea::Intersect, QStringLiteral("SelectionIntersect.png"),
        tr("Keep what is selected twice (Shift+Alt)"));

    addViews();

    connect(m_pTools, &OrvCanvasTools::toolChanged, this, &OrvToolBar::refresh);
    connect(m_pTools->selectionTool(), &OrvSelectionTool::modeChanged, this, &OrvToolBar::refresh);
    connect(m_pToolButtons, &QButtonGroup::idClicked, m_pTools, [this](int Id) {
        m_pTools->setTool(OrvCanvasTools::Tool(Id));
        refresh();
    });
    connect(m_pModeButtons, &QButtonGroup::idClicked, m_pTools,
        [this](int Id) { m_pTools->selectionTool()->setMode(OrvSelectionArea::Combination(Id)); });
    refresh();
}

void OrvToolBar::addButton(QButtonGroup* pGroup, int Id, const QString& Icon, const QString& ToolTip)
{
    auto* pButton = new QToolButton(this);
    pButton->setIcon(OrvIcon::createIconFromFilename(Icon));
    pButton->setToolTip(ToolTip);
    pButton->setCheckable(true);
    pButton->setAutoRaise(true);
    pGroup->addButton(pButton, Id);
    addWidget(pButton);
}

void OrvToolBar::addViews()
{
    // They come with the module; without it they do not show.
    addSeparator();
    for (const char* pName : {"Current Channel", "Current Layer && Below", "Current Layer", "Current Paint Target",
             "Current Material", "User Shader"})
        addAction(new OrvLateBindAction(QStringLiteral("/Orvi/Channels/Views/") + QLatin1String(pName), this));
}

void OrvToolBar::refresh()
{
    m_pToolButtons->button(m_pTools->tool())->setChecked(true);
    m_pModeButtons->button(m_pTools->selectionTool()->mode())->setChecked(true);
    // A painter has no use for them.
    for (QAbstractButton* pButton : m_pModeButtons->buttons())
        pButton->setEnabled(m_pTools->tool() != OrvCanvasTools::Brush);
}

#include "moc_OrvToolBar.cpp"
