#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QWidget>

class OrvFormLayout;
class QLayout;
class QToolButton;

/// A titled group that folds. It owns what is put into it.
class ORVCOREMODULES_EXPORT OrvExpandableListWidget : public QWidget {
    Q_OBJECT

public:
    explicit OrvExpandableListWidget(const QString& Title, QWidget* pParent = nullptr);

    QString title() const;
    void setTitle(const QString& Title);
    bool isExpanded() const { return m_Expanded; }

    /// Both texts may be empty; the label stands to the left of what is added.
    void addChild(QLayout* pLayout, const QString& Label, const QString& ToolTip);
    void addChild(QWidget* pWidget, const QString& Label = QString(), const QString& ToolTip = QString());

public Q_SLOTS:
    void setExpanded(bool Expanded);

Q_SIGNALS:
    void expandedChanged(bool Expanded);

private:
    QToolButton* m_pHeader;
    QWidget* m_pContents;
    OrvFormLayout* m_pContentsLayout;
    bool m_Expanded = true;
};
