#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtWidgets/QWidget>

class OrvPalette;
class QToolButton;
class QVBoxLayout;

/// The slim strip at the window's edge with a button for each palette. In its docking mode a button shows or
/// hides the palette in the window; in its open mode it brings the palette up beside the strip as a visitor.
class ORVCOREMODULES_EXPORT OrvPaletteSidebar : public QWidget {
    Q_OBJECT

public:
    enum PaletteOpenMode {
        Dock, ///< palettes open in the window and stay
        Open, ///< palettes open floating and unpinned, and close when they are left
    };

    explicit OrvPaletteSidebar(QWidget* pParent = nullptr);

    PaletteOpenMode paletteOpenMode() const { return m_Mode; }

    void addPalette(OrvPalette* pPalette);

public Q_SLOTS:
    void setPaletteOpenMode(OrvPaletteSidebar::PaletteOpenMode Mode);

Q_SIGNALS:
    void paletteOpenModeChanged(OrvPaletteSidebar::PaletteOpenMode Mode);

protected:
    void contextMenuEvent(QContextMenuEvent* pEvent) override;

private:
    void toggle(OrvPalette* pPalette, const QToolButton* pButton);
    void openBeside(OrvPalette* pPalette, const QToolButton* pButton) const;

    PaletteOpenMode m_Mode = Dock;
    QVBoxLayout* m_Buttons;
};
