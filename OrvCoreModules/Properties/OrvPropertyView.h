#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QMap>
#include <QtCore/QPointer>
#include <QtCore/QStringList>
#include <QtWidgets/QWidget>

class OrvFormLayout;
class OrvValueBinding;
class QVBoxLayout;
struct OrvOperationParameter;

/// Edits the Qt properties and the visible user attributes of an object directly: it keeps no copy of any
/// value. Follows the object and outlives it, empty then. Each edit is one undo step.
class ORVCOREMODULES_EXPORT OrvPropertyView : public QWidget {
    Q_OBJECT

public:
    enum GroupHint { OneGroup = 0, GroupPerClass = 1 };
    enum DisplayFlag {
        ShowGroupTitles = 0x002,
        Editable = 0x010,
        LeaveOutHidden = 0x080,
        FollowChanges = 0x100,
        NoScrollArea = 0x200,
        CompactRows = 0x400
    };

    /// Group titles by class name; the one of the empty name is for every class without a title of its own.
    /// Properties that are not designable are never shown.
    OrvPropertyView(QObject* pObject, QWidget* pParent, const QMap<QString, QString>& GroupTitles, int Hint,
        int DisplayFlags, const QStringList& HiddenProperties, bool ReadOnly);

    QObject* object() const { return m_pObject; }
    /// Shown at once; for a title that names what can be renamed.
    void setGroupTitle(const QString& ClassName, const QString& Title);

private:
    void requestRebuild();
    void rebuild();
    bool isHidden(const QString& Name) const;
    OrvFormLayout* group(QVBoxLayout* pLayout, const QString& ClassName);
    void addRow(OrvFormLayout* pForm, OrvValueBinding* pBinding, const OrvOperationParameter& Description);
    void addProperties(QVBoxLayout* pLayout);
    void addAttributes(QVBoxLayout* pLayout);

    QPointer<QObject> m_pObject;
    QMap<QString, QString> m_GroupTitles;
    QMap<QString, OrvFormLayout*> m_Groups;
    QStringList m_HiddenProperties;
    QPointer<QWidget> m_pContents;
    int m_Hint, m_DisplayFlags;
    bool m_ReadOnly;
    bool m_RebuildPending = false;
};
