#include "OrvCoreModules/Menus/OrvShortcutEditor.h"

#include "OrvCoreModules/Menus/OrvShortcutManager.h"
#include "OrvCoreModules/Menus/OrvShortcutSequence.h"
#include "OrvCoreModules/Window/OrvApplication.h"

#include <QtCore/QCollator>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QKeySequenceEdit>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTreeWidget>
#include <QtWidgets/QVBoxLayout>

namespace {

enum Column { CommandColumn, GroupColumn, ShortcutColumn, ColumnCount };
constexpr int PathRole = Qt::UserRole;
const QSize InitialSize(640, 560);

/// Sizes stand in the order of their numbers.
class CommandItem : public QTreeWidgetItem {
public:
    bool operator<(const QTreeWidgetItem& Other) const override
    {
        // The C locale compares bytes and knows no numbers.
        static const QCollator Order = [] {
            QCollator Collator(QLocale().language() == QLocale::C ? QLocale(QLocale::English) : QLocale());
            Collator.setNumericMode(true);
            return Collator;
        }();
        const int Column = treeWidget() ? treeWidget()->sortColumn() : int(CommandColumn);
        return Order.compare(text(Column), Other.text(Column)) < 0;
    }
};

} // namespace

OrvShortcutEditor::OrvShortcutEditor(QWidget* pParent)
    : QDialog(pParent)
    , m_Filter(new QLineEdit(this))
    , m_Tree(new QTreeWidget(this))
    , m_SequenceEdit(new QKeySequenceEdit(this))
    , m_AssignButton(new QPushButton(tr("Assign"), this))
    , m_ClearButton(new QPushButton(tr("Clear"), this))
    , m_ResetButton(new QPushButton(tr("Reset"), this))
    , m_Message(new QLabel(this))
{
    setWindowTitle(tr("Shortcuts"));
    resize(InitialSize);
    m_Filter->setPlaceholderText(tr("Filter by command, group or keys"));
    m_Filter->setClearButtonEnabled(true);
    m_Tree->setColumnCount(ColumnCount);
    m_Tree->setHeaderLabels({tr("Command"), tr("Group"), tr("Shortcut")});
    m_Tree->setRootIsDecorated(false);
    m_Tree->setUniformRowHeights(true);
    m_Tree->setAlternatingRowColors(true);
    m_Tree->header()->setSectionResizeMode(CommandColumn, QHeaderView::Stretch);
    m_Tree->header()->resizeSection(GroupColumn, InitialSize.width() / 3);
    m_Message->setWordWrap(true);
    m_Message->setMinimumHeight(m_Message->fontMetrics().lineSpacing() * 2);

    auto* pEditRow = new QHBoxLayout;
    pEditRow->addWidget(m_SequenceEdit, 1);
    for (QPushButton* pButton : {m_AssignButton, m_ClearButton, m_ResetButton}) {
        pButton->setAutoDefault(false);
        pEditRow->addWidget(pButton);
    }
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    QPushButton* pResetAll = pButtons->addButton(tr("Reset All"), QDialogButtonBox::ResetRole);
    pResetAll->setAutoDefault(false);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->addWidget(m_Filter);
    pLayout->addWidget(m_Tree, 1);
    pLayout->addLayout(pEditRow);
    pLayout->addWidget(m_Message);
    pLayout->addWidget(pButtons);

    createRows();
    onCurrentItemChanged();

    connect(m_Filter, &QLineEdit::textChanged, this, &OrvShortcutEditor::filter);
    connect(m_Tree, &QTreeWidget::currentItemChanged, this, &OrvShortcutEditor::onCurrentItemChanged);
    connect(
        m_SequenceEdit, &QKeySequenceEdit::keySequenceChanged, this, &OrvShortcutEditor::onSequenceEdited);
    connect(m_AssignButton, &QPushButton::clicked, this, &OrvShortcutEditor::assign);
    connect(m_ClearButton, &QPushButton::clicked, this, [this] {
        m_SequenceEdit->clear();
        assign();
    });
    connect(m_ResetButton, &QPushButton::clicked, this, &OrvShortcutEditor::resetCurrent);
    connect(pResetAll, &QPushButton::clicked, this, &OrvShortcutEditor::resetAll);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(&OrvShortcutManager::instance(), &OrvShortcutManager::shortcutChanged, this,
        &OrvShortcutEditor::refreshPath);
}

void OrvShortcutEditor::createRows()
{
    const OrvShortcutManager& Manager = OrvShortcutManager::instance();
    QList<QTreeWidgetItem*> Items;
    for (const QString& Path : Manager.paths()) {
        auto* pItem = new CommandItem;
        pItem->setText(CommandColumn, Manager.text(Path));
        pItem->setText(GroupColumn, Manager.group(Path));
        pItem->setToolTip(CommandColumn, Path);
        pItem->setData(CommandColumn, PathRole, Path);
        refreshItem(pItem);
        Items.append(pItem);
    }
    m_Tree->addTopLevelItems(Items);
    m_Tree->sortItems(CommandColumn, Qt::AscendingOrder);
    m_Tree->setSortingEnabled(true);
}

void OrvShortcutEditor::refreshItem(QTreeWidgetItem* pItem)
{
    const OrvShortcutManager& Manager = OrvShortcutManager::instance();
    const QString Path = pItem->data(CommandColumn, PathRole).toString();
    const QKeySequence Sequence = Manager.shortcut(Path);
    pItem->setText(ShortcutColumn, OrvShortcutSequence::toUserFriendlyString(Sequence));
    // What the user has changed stands out.
    QFont Font = m_Tree->font();
    Font.setBold(Sequence != Manager.defaultShortcut(Path));
    pItem->setFont(ShortcutColumn, Font);
}

void OrvShortcutEditor::refreshPath(const QString& Path)
{
    for (int Row = 0; Row < m_Tree->topLevelItemCount(); ++Row) {
        QTreeWidgetItem* pItem = m_Tree->topLevelItem(Row);
        if (pItem->data(CommandColumn, PathRole).toString() == Path)
            refreshItem(pItem);
    }
    if (Path == currentPath())
        onCurrentItemChanged();
}

void OrvShortcutEditor::filter(const QString& Text)
{
    for (int Row = 0; Row < m_Tree->topLevelItemCount(); ++Row) {
        QTreeWidgetItem* pItem = m_Tree->topLevelItem(Row);
        bool Matches = false;
        for (int Column = 0; Column < ColumnCount; ++Column)
            Matches = Matches || pItem->text(Column).contains(Text, Qt::CaseInsensitive);
        pItem->setHidden(!Matches);
    }
    // What is not in sight is not edited.
    if (m_Tree->currentItem() && m_Tree->currentItem()->isHidden())
        m_Tree->setCurrentItem(nullptr);
}

QString OrvShortcutEditor::currentPath() const
{
    const QTreeWidgetItem* pItem = m_Tree->currentItem();
    return pItem ? pItem->data(CommandColumn, PathRole).toString() : QString();
}

void OrvShortcutEditor::onCurrentItemChanged()
{
    const OrvShortcutManager& Manager = OrvShortcutManager::instance();
    const QString Path = currentPath();
    const QKeySequence Sequence = Manager.shortcut(Path);
    m_SequenceEdit->setKeySequence(Sequence);
    m_SequenceEdit->setEnabled(!Path.isEmpty());
    m_AssignButton->setEnabled(false);
    m_ClearButton->setEnabled(!Sequence.isEmpty());
    m_ResetButton->setEnabled(!Path.isEmpty() && Sequence != Manager.defaultShortcut(Path));
    m_Message->clear();
}

void OrvShortcutEditor::onSequenceEdited()
{
    const QString Path = currentPath();
    const QKeySequence Sequence = m_SequenceEdit->keySequence();
    m_AssignButton->setEnabled(!Path.isEmpty() && Sequence != OrvShortcutManager::instance().shortcut(Path));
    showConflicts();
}

void OrvShortcutEditor::showConflicts()
{
    const OrvShortcutManager& Manager = OrvShortcutManager::instance();
    const QKeySequence Sequence = m_SequenceEdit->keySequence();
    QStringList Users;
    for (const QString& Path : Manager.conflicts(currentPath(), Sequence))
        Users.append(QStringLiteral("\"%1\" (%2)").arg(Manager.text(Path), Manager.group(Path)));
    m_Message->setText(Users.isEmpty() ? QString()
                                       : tr("%1 is in use by %2. Assign takes it from there.")
                                             .arg(OrvShortcutSequence::toUserFriendlyString(Sequence),
                                                 Users.join(QStringLiteral(", "))));
}

void OrvShortcutEditor::assign()
{
    OrvShortcutManager::instance().takeShortcut(currentPath(), m_SequenceEdit->keySequence());
}

void OrvShortcutEditor::resetCurrent()
{
    OrvShortcutManager& Manager = OrvShortcutManager::instance();
    const QKeySequence Default = Manager.defaultShortcut(currentPath());
    if (Manager.conflicts(currentPath(), Default).isEmpty())
        Manager.reset(currentPath());
    else
        m_SequenceEdit->setKeySequence(Default); // to be assigned, which says from whom
}

void OrvShortcutEditor::resetAll()
{
    if (OrvApplication::popupsAllowed()
        && QMessageBox::question(this, tr("Reset All"), tr("Give every command its default keys?"))
            != QMessageBox::Yes)
        return;
    OrvShortcutManager::instance().resetAll();
}

#include "moc_OrvShortcutEditor.cpp"
