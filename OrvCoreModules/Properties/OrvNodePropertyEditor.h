#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointer>
#include <QtWidgets/QFrame>

#include <functional>

class OrvFormLayout;
class OrvSnBaseNode;

/// The titled frame with one row per parameter of a node. Rows come from a function of the node's kind; they
/// are made anew when the node gains or loses attributes. A node without rows has an editor that stays out of
/// sight.
class ORVCOREMODULES_EXPORT OrvNodePropertyEditor : public QFrame {
    Q_OBJECT

public:
    enum Option {
        TitledFrame = 0x0040,
        NoScrollArea = 0x0200,
        CompactRows = 0x0400,
        UserAttributes = 0x2000
    };
    /// Fills the form; a user attribute that has got its row is named in the result.
    using Rows = std::function<QStringList(OrvSnBaseNode* pNode, OrvFormLayout* pForm)>;

    OrvNodePropertyEditor(
        OrvSnBaseNode* pNode, const QString& Title, int Options, const Rows& AddRows, QWidget* pParent);

    OrvSnBaseNode* node() const;

private Q_SLOTS:
    void onNodeAttributesChanged(OrvSnBaseNode* pNode, QString Name);
    void rebuild();

private:
    void addUserAttributes(OrvFormLayout* pForm, const QStringList& Shown);

    QPointer<OrvSnBaseNode> m_pNode;
    QString m_Title;
    int m_Options;
    Rows m_AddRows;
    QWidget* m_pContents = nullptr;
    bool m_RebuildPending = false;
    bool m_OutOfSight = false;
};
