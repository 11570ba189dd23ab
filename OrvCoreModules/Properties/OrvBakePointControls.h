#pragma once

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class OrvSnBakePointNode;
class OrvSnBaseNode;
class QLabel;
class QPushButton;

/// The row of a bake point's editor: whether it is baked and up to date, and the buttons that bake it and go
/// back to showing what lies below. It asks the layer to do it, so that locks and caches count.
class OrvBakePointControls : public QWidget {
    Q_OBJECT

public:
    explicit OrvBakePointControls(OrvSnBakePointNode* pNode, QWidget* pParent = nullptr);

private Q_SLOTS:
    void bake();
    void unbake();
    void onNodeRefreshed(OrvSnBaseNode* pNode);

private:
    void update();

    QPointer<OrvSnBakePointNode> m_pNode;
    QLabel* m_pState;
    QPushButton* m_pBake;
    QPushButton* m_pUnbake;
};
