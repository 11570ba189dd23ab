#include "OrvCoreModules/Menus/OrvShortcutManager.h"

#include "OrvCore/Object/OrvDebug.h"
#include "OrvCore/Object/OrvSettings.h"
#include "OrvCoreModules/Menus/OrvActionTreeManager.h"
#include "OrvCoreModules/Window/OrvGui.h"

#include <QtGui/QKeyEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QShortcut>

#include <algorithm>

namespace {

const char File[] = "OrvShortcutManager";
const QString SettingsGroup = QStringLiteral("Shortcuts");
const QLatin1Char Separator('/');

/// "addShader" becomes "Add Shader"; what consists of words stays as it is.
QString inWords(const QString& Name)
{
    QString Text;
    for (const QChar Letter : Name) {
        if (Letter.isUpper() && !Text.isEmpty() && Text.back().isLower())
            Text.append(QLatin1Char(' '));
        Text.append(Text.isEmpty() ? Letter.toUpper() : Letter);
    }
    return Text;
}

/// "1removeShaderInput()", as SLOT() writes it, becomes "Remove Shader Input".
QString textOfSlot(const char* pSlot)
{
    return inWords(QString::fromLatin1(pSlot).mid(1).section(QLatin1Char('('), 0, 0));
}

QString widgetPath(const QString& Group, const char* pSlot)
{
    return QStringLiteral("/Orvi/Palettes/%1/%2").arg(Group, textOfSlot(pSlot));
}

/// Either one's keys begin with the other one's, so that one of them could never be reached.
bool collide(const QKeySequence& First, const QKeySequence& Second)
{
    return !First.isEmpty() && !Second.isEmpty()
        && (First.matches(Second) != QKeySequence::NoMatch || Second.matches(First) != QKeySequence::NoMatch);
}

} // namespace

OrvShortcutManager& OrvShortcutManager::instance()
{
    static auto* pInstance = new OrvShortcutManager;
    return *pInstance;
}

OrvShortcutManager::OrvShortcutManager()
{
    OrvActionTreeManager& ActionTree = OrvActionTreeManager::instance();
    connect(
        &ActionTree, &OrvActionTreeManager::actionRegistered, this, &OrvShortcutManager::onActionRegistered);
    connect(&ActionTree, &OrvActionTreeManager::actionUnregistered, this,
        &OrvShortcutManager::onActionUnregistered);
    for (const QString& Key : ActionTree.actionKeys())
        onActionRegistered(Key, ActionTree.findAction(Key));
    addShortcutGroupMapping(QStringLiteral("Channels"), QStringLiteral("OrvShaderInputView"));
    addShortcutGroupMapping(QStringLiteral("Shaders"), QStringLiteral("OrvShaderView"));
    setSpecialShortcut(Qt::Key_Tab, QStringLiteral("/Orvi/Layers/Quick Find"));
}

QString OrvShortcutManager::text(const QString& Path) const
{
    return m_Bindings.value(Path).Text;
}

QString OrvShortcutManager::group(const QString& Path) const
{
    const auto Found = m_Bindings.constFind(Path);
    if (Found != m_Bindings.cend() && !Found->WidgetGroup.isEmpty())
        return tr("%1 palette").arg(Found->WidgetGroup);
    QStringList Titles = Path.section(Separator, 2, -2).split(Separator);
    std::transform(Titles.begin(), Titles.end(), Titles.begin(), inWords);
    return Titles.join(QLatin1String(" > "));
}

QKeySequence OrvShortcutManager::shortcut(const QString& Path) const
{
    return m_Bindings.value(Path).Current;
}

QKeySequence OrvShortcutManager::defaultShortcut(const QString& Path) const
{
    const auto Found = m_Bindings.constFind(Path);
    return Found == m_Bindings.cend() ? m_PresetDefaults.value(Path) : Found->Default;
}

void OrvShortcutManager::setDefaultShortcut(const QString& Path, const QKeySequence& Sequence)
{
    const QString Key = OrvActionTreeManager::cleanPath(Path);
    m_PresetDefaults.insert(Key, Sequence);
    const auto Found = m_Bindings.find(Key);
    if (Found == m_Bindings.end())
        return;
    const bool FollowsDefault = Found->Current == Found->Default;
    Found->Default = Sequence;
    if (FollowsDefault)
        bind(Key, Sequence);
}

OrvShortcutManager::Binding& OrvShortcutManager::enter(
    const QString& Path, const QString& Text, const QKeySequence& Default)
{
    const auto Found = m_Bindings.find(Path);
    if (Found != m_Bindings.end())
        return *Found;
    Binding& New = m_Bindings[Path];
    New.Text = Text;
    New.Default = m_PresetDefaults.value(Path, Default);
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    const QString Stored = Settings.value(Path.mid(1)).toString();
    New.Current
        = Settings.contains(Path.mid(1)) ? QKeySequence(Stored, QKeySequence::PortableText) : New.Default;
    m_Order.append(Path);
    return New;
}

void OrvShortcutManager::onActionRegistered(const QString& Key, QAction* pAction)
{
    Binding& Entry = enter(Key, pAction->iconText(), pAction->shortcut());
    Entry.pAction = pAction;
    apply(Entry);
    Q_EMIT shortcutAdded(Key);
}

void OrvShortcutManager::onActionUnregistered(const QString& Key)
{
    m_Bindings.remove(Key);
    m_Order.removeOne(Key);
}

QShortcut* OrvShortcutManager::createShortcut(
    QWidget* pWidget, const QKeySequence& Sequence, const char* pSlot, QObject* pReceiver)
{
    if (!pWidget || !pReceiver) {
        OrvDebug(File, __LINE__, QStringLiteral("%1 is NULL").arg(pWidget ? "pReceiver" : "pWidget"), false,
            false);
        return nullptr;
    }
    auto* pShortcut = new QShortcut(pWidget);
    pShortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(pShortcut, SIGNAL(activated()), pReceiver, pSlot);

    const QString Group = groupOf(pWidget);
    const QString Text = textOfSlot(pSlot);
    const QString Path = widgetPath(Group, pSlot);
    const bool IsNew = !m_Bindings.contains(Path);
    Binding& Entry = enter(Path, Text, Sequence);
    Entry.WidgetGroup = Group;
    Entry.WidgetShortcuts.removeAll(QPointer<QShortcut>());
    Entry.WidgetShortcuts.append(pShortcut);
    pShortcut->setKey(Entry.Current);
    if (IsNew) {
        Q_EMIT shortcutAdded(Path);
        tellShown(Path);
    }
    return pShortcut;
}

void OrvShortcutManager::showWidgetShortcut(
    const QString& ActionPath, const QString& Group, const char* pSlot)
{
    const QString Key = OrvActionTreeManager::cleanPath(ActionPath);
    m_ShownFrom.insert(Key, widgetPath(Group, pSlot));
    Q_EMIT shownShortcutChanged(Key);
}

QKeySequence OrvShortcutManager::shownShortcut(const QString& ActionPath) const
{
    const QKeySequence Own = shortcut(ActionPath);
    return Own.isEmpty() ? shortcut(m_ShownFrom.value(ActionPath)) : Own;
}

void OrvShortcutManager::tellShown(const QString& WidgetPath)
{
    for (auto Shown = m_ShownFrom.cbegin(); Shown != m_ShownFrom.cend(); ++Shown) {
        if (Shown.value() == WidgetPath)
            Q_EMIT shownShortcutChanged(Shown.key());
    }
}

void OrvShortcutManager::addShortcutGroupMapping(const QString& Group, const QString& ClassName)
{
    m_GroupsByClass.insert(ClassName, Group);
}

QString OrvShortcutManager::groupOf(const QWidget* pWidget) const
{
    for (const QWidget* pAncestor = pWidget; pAncestor; pAncestor = pAncestor->parentWidget()) {
        const auto Found = m_GroupsByClass.constFind(QLatin1String(pAncestor->metaObject()->className()));
        if (Found != m_GroupsByClass.cend())
            return *Found;
    }
    return QLatin1String(pWidget->metaObject()->className());
}

QStringList OrvShortcutManager::conflicts(const QString& Path, const QKeySequence& Sequence) const
{
    const QString OwnGroup = m_Bindings.value(Path).WidgetGroup;
    QStringList Paths;
    for (const QString& Other : m_Order) {
        const Binding& Entry = *m_Bindings.constFind(Other);
        // Widgets of different groups never have the focus together.
        const bool Apart
            = !OwnGroup.isEmpty() && !Entry.WidgetGroup.isEmpty() && OwnGroup != Entry.WidgetGroup;
        if (Other != Path && !Apart && collide(Sequence, Entry.Current))
            Paths.append(Other);
    }
    return Paths;
}

bool OrvShortcutManager::setShortcut(const QString& Path, const QKeySequence& Sequence)
{
    if (!m_Bindings.contains(Path) || !conflicts(Path, Sequence).isEmpty())
        return false;
    bind(Path, Sequence);
    return true;
}

void OrvShortcutManager::takeShortcut(const QString& Path, const QKeySequence& Sequence)
{
    if (!m_Bindings.contains(Path))
        return;
    for (const QString& Other : conflicts(Path, Sequence))
        bind(Other, QKeySequence());
    bind(Path, Sequence);
}

void OrvShortcutManager::reset(const QString& Path)
{
    takeShortcut(Path, defaultShortcut(Path));
}

void OrvShortcutManager::resetAll()
{
    for (const QString& Path : qAsConst(m_Order))
        bind(Path, m_Bindings.value(Path).Default);
}

void OrvShortcutManager::bind(const QString& Path, const QKeySequence& Sequence)
{
    Binding& Entry = m_Bindings[Path];
    Entry.Current = Sequence;
    store(Path, Entry);
    apply(Entry);
    Q_EMIT shortcutChanged(Path);
    tellShown(Path);
}

void OrvShortcutManager::store(const QString& Path, const Binding& Entry) const
{
    OrvSettings Settings;
    Settings.beginGroup(SettingsGroup);
    if (Entry.Current == Entry.Default)
        Settings.remove(Path.mid(1));
    else
        Settings.setValue(Path.mid(1), Entry.Current.toString(QKeySequence::PortableText));
}

void OrvShortcutManager::apply(Binding& Entry)
{
    if (Entry.pAction) {
        if (Entry.pAction->shortcut() != Entry.Current)
            Entry.pAction->setShortcut(Entry.Current);
        if (m_Window && !Entry.Current.isEmpty())
            m_Window->addAction(Entry.pAction);
    }
    for (const QPointer<QShortcut>& pShortcut : qAsConst(Entry.WidgetShortcuts)) {
        if (pShortcut)
            pShortcut->setKey(Entry.Current);
    }
}

void OrvShortcutManager::attachTo(QWidget* pWindow)
{
    m_Window = pWindow;
    for (Binding& Entry : m_Bindings)
        apply(Entry);
}

void OrvShortcutManager::setSpecialShortcut(int Key, const QString& ActionKey)
{
    m_SpecialActions.insert(Key, ActionKey);
}

void OrvShortcutManager::setEnabledSpecialShortcut(int Key, bool Enabled)
{
    if (Enabled == isSpecialShortcutEnabled(Key))
        return;
    if (Enabled)
        m_EnabledSpecialKeys.insert(Key);
    else
        m_EnabledSpecialKeys.remove(Key);
    // Every event of the program passes a filter, so there is one only while it has something to do.
    if (m_EnabledSpecialKeys.isEmpty())
        qApp->removeEventFilter(this);
    else
        qApp->installEventFilter(this);
}

QAction* OrvShortcutManager::specialAction(int Key) const
{
    if (!isSpecialShortcutEnabled(Key) || OrvGui::isTypedInto(QApplication::focusWidget())
        || QApplication::activeModalWidget() || QApplication::activePopupWidget())
        return nullptr;
    QAction* pAction = OrvActionTreeManager::instance().findAction(m_SpecialActions.value(Key));
    return pAction && pAction->isEnabled() ? pAction : nullptr;
}

bool OrvShortcutManager::eventFilter(QObject* pWatched, QEvent* pEvent)
{
    if (pEvent->type() != QEvent::KeyPress || !pWatched->isWidgetType())
        return QObject::eventFilter(pWatched, pEvent);
    const auto* pKeyEvent = static_cast<const QKeyEvent*>(pEvent);
    QAction* pAction = pKeyEvent->modifiers() == Qt::NoModifier ? specialAction(pKeyEvent->key()) : nullptr;
    if (!pAction)
        return QObject::eventFilter(pWatched, pEvent);
    pAction->trigger();
    return true;
}

#include "moc_OrvShortcutManager.cpp"
