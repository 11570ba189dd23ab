#pragma once

#include <QtWidgets/QFrame>

class OrvSnBaseNode;
class QListWidget;

/// The list of those who share something, as a popup at the cursor. A click on one of them goes there. It
/// destroys itself when it is closed, and edits nothing.
class OrvSharerListPopup : public QFrame {
    Q_OBJECT

public:
    explicit OrvSharerListPopup(QWidget* pParent);

    /// A line that cannot be chosen, above the sharers added next.
    void addHeading(const QString& Heading);
    void addSharer(const QString& Path, OrvSnBaseNode* pNode);
    /// Without a sharer nothing is shown.
    void popup();

private:
    QSize contentsSize() const;

    QListWidget* m_List;
    bool m_HasSharers = false;
};
