#pragma once

#include <QtWidgets/QWidget>

class OrvShaderNetwork;
class QHBoxLayout;

/// The way from the object's network to the one that is shown: a button per network, which leads there.
class OrvNodeGraphBreadcrumb : public QWidget {
    Q_OBJECT

public:
    explicit OrvNodeGraphBreadcrumb(QWidget* pParent = nullptr);

    void showWayTo(OrvShaderNetwork* pNetwork);

Q_SIGNALS:
    void networkChosen(OrvShaderNetwork* pNetwork);

private:
    void addStep(OrvShaderNetwork* pNetwork, bool Last);

    QHBoxLayout* m_pLayout;
};
