#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtWidgets/QDockWidget>

#include <functional>

class OrvPaletteHeader;

/// A palette: a body widget under a header of our own, docked in the main window or floating. A floating
/// palette that is pinnable and not pinned is a visitor, which closes by itself once the user has left it. It
/// owns its body and knows nothing of what the body shows.
class ORVCOREMODULES_EXPORT OrvPalette : public QDockWidget {
    Q_OBJECT

public:
    explicit OrvPalette(QWidget* pParent = nullptr);
    /// The object name is made of kind and title, so that a saved window layout finds the palette again.
    OrvPalette(const QString& Title, QWidget* pParent, const QString& Kind = QString());

    void setBodyWidget(QWidget* pBody);
    QWidget* originalWidget() const { return m_Body; }
    QString kind() const { return m_Kind; }

    /// Shown in the header instead of the window title; an empty one gives the window title its place back.
    void setHeaderTitle(const QString& Title);
    QString headerTitle() const;
    /// What the title stands for, where several palettes may have the same; asked for whenever it is shown.
    /// Without it, the header tells a cut title in full.
    void setHeaderToolTip(const std::function<QString()>& ToolTip) { m_HeaderToolTip = ToolTip; }
    QString headerToolTip() const { return m_HeaderToolTip ? m_HeaderToolTip() : QString(); }
    void setPaletteIcon(const QIcon& Icon);
    QIcon paletteIcon() const { return m_Icon; }

    void setContextHelpKey(const QString& Key);
    QString contextHelpKey() const { return m_ContextHelpKey; }

    /// Going over to a related palette does not count as leaving this one. One direction.
    void addRelatedPalette(OrvPalette* pPalette);
    QList<OrvPalette*> relatedPalettes() const;

    void setPinnable(bool Pinnable);
    bool isPinnable() const { return m_Pinnable; }
    bool isPinned() const { return m_Pinned; }

    /// Open in the window and not closed by the user; a palette behind another one's tab is active, too.
    bool isPaletteActive() const { return !isHidden(); }

    /// A floating palette takes the size that its contents ask for, within the screen.
    void fitToContents();

public Q_SLOTS:
    void setPinned(bool Pinned);
    /// Shows the palette in front, whatever tab or window hides it.
    void open();
    void showContextHelp();

Q_SIGNALS:
    void sizeChanged();
    void pinnedChanged(bool Pinned);
    void headerChanged();
    /// Shown or closed, by whatever means.
    void paletteActiveChanged(bool Active);

protected:
    bool event(QEvent* pEvent) override;
    void resizeEvent(QResizeEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;

private Q_SLOTS:
    void closeIfLeft();

private:
    void construct();
    bool isVisitor() const { return m_Pinnable && !m_Pinned && isFloating(); }
    bool isInUse() const;

    QString m_Kind;
    QString m_HeaderTitle;
    std::function<QString()> m_HeaderToolTip;
    QString m_ContextHelpKey;
    QIcon m_Icon;
    QPointer<QWidget> m_Body;
    OrvPaletteHeader* m_Header = nullptr;
    QList<QPointer<OrvPalette>> m_RelatedPalettes;
    QTimer m_LeaveTimer;
    bool m_Pinnable = false;
    bool m_Pinned = true;
};
