#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QStringList>
#include <QtGui/QKeySequence>

class QAction;
class QShortcut;

/// All shortcuts by path, as the user has bound them: every action of the action tree, and the shortcuts of
/// single widgets under the name of their group. What differs from the default is kept in the settings.
/// Actions work in the whole window; a widget's shortcuts only within it, so that several palettes can share
/// a key.
class ORVCOREMODULES_EXPORT OrvShortcutManager : public QObject {
    Q_OBJECT

public:
    static OrvShortcutManager& instance();

    QStringList paths() const { return m_Order; }
    /// What the shortcut does, for people.
    QString text(const QString& Path) const;
    /// Where it is found, for people: "Shaders palette", or the titles of the path below the program's name,
    /// as in "Layers > Add Shader".
    QString group(const QString& Path) const;
    QKeySequence shortcut(const QString& Path) const;
    QKeySequence defaultShortcut(const QString& Path) const;
    /// A default may be set before the action of that path exists.
    void setDefaultShortcut(const QString& Path, const QKeySequence& Sequence);

    /// Paths that would answer to the same keys; a sequence that begins with the other one's keys counts,
    /// too.
    QStringList conflicts(const QString& Path, const QKeySequence& Sequence) const;
    /// Binds and remembers; an empty sequence unbinds. Refused, with nothing changed, while others use the
    /// keys.
    bool setShortcut(const QString& Path, const QKeySequence& Sequence);
    /// Binds and takes the keys away from whoever had them.
    void takeShortcut(const QString& Path, const QKeySequence& Sequence);
    void reset(const QString& Path);
    void resetAll();

    /// A shortcut within a widget; its path is made of the widget's group and the slot's name. Those of
    /// several widgets with one path are bound together.
    QShortcut* createShortcut(
        QWidget* pWidget, const QKeySequence& Sequence, const char* pSlot, QObject* pReceiver);
    /// Menus show, beside an action without keys of its own, those that widgets of the group have for the
    /// same command (the slot, as for createShortcut()). The action itself does not answer to them.
    void showWidgetShortcut(const QString& ActionPath, const QString& Group, const char* pSlot);
    /// The action's own keys, or those shown in their place.
    QKeySequence shownShortcut(const QString& ActionPath) const;
    /// Widgets of that class, and what they contain, belong to the group.
    void addShortcutGroupMapping(const QString& Group, const QString& ClassName);

    /// A plain key that triggers an action, but only while somebody has it enabled, and never while the user
    /// types.
    void setSpecialShortcut(int Key, const QString& ActionKey);
    void setEnabledSpecialShortcut(int Key, bool Enabled);
    bool isSpecialShortcutEnabled(int Key) const { return m_EnabledSpecialKeys.contains(Key); }

    /// Actions with a shortcut are attached to the window, so that they answer without being in an open menu.
    void attachTo(QWidget* pWindow);

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

Q_SIGNALS:
    void shortcutAdded(QString Path);
    void shortcutChanged(QString Path);
    void shownShortcutChanged(QString ActionPath);

private Q_SLOTS:
    void onActionRegistered(const QString& Key, QAction* pAction);
    void onActionUnregistered(const QString& Key);

private:
    struct Binding {
        QString Text;
        QKeySequence Default;
        QKeySequence Current;
        QString WidgetGroup; ///< empty for actions
        QPointer<QAction> pAction;
        QList<QPointer<QShortcut>> WidgetShortcuts;
    };

    OrvShortcutManager();
    Binding& enter(const QString& Path, const QString& Text, const QKeySequence& Default);
    void bind(const QString& Path, const QKeySequence& Sequence);
    void apply(Binding& Entry);
    void tellShown(const QString& WidgetPath);
    void store(const QString& Path, const Binding& Entry) const;
    QString groupOf(const QWidget* pWidget) const;
    QAction* specialAction(int Key) const;

    QHash<QString, Binding> m_Bindings;
    QStringList m_Order;
    QHash<QString, QKeySequence> m_PresetDefaults;
    QHash<QString, QString> m_ShownFrom; ///< by action, whose widget shortcut is shown
    QHash<QString, QString> m_GroupsByClass;
    QHash<int, QString> m_SpecialActions;
    QSet<int> m_EnabledSpecialKeys;
    QPointer<QWidget> m_Window;
};
