#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QList>
#include <QtCore/QObject>
#include <QtCore/QPointer>

class OrvPalette;
class OrvPaletteSidebar;
class QSettings;

/// All palettes that the program keeps at hand: puts them into the window, the sidebar and the Palettes menu,
/// finds them by name and keeps where the user left them. Palettes belong to the main window; one that dies
/// leaves the list.
class ORVCOREMODULES_EXPORT OrvPaletteManager : public QObject {
    Q_OBJECT

public:
    static OrvPaletteManager& instance();

    /// Docks the palette in the main window. One that is not shown at first start waits for the saved layout,
    /// for the default layout or for the user.
    void registerPalette(OrvPalette* pPalette, bool ShownAtFirstStart, const QString& IconFile);

    QList<OrvPalette*> palettes() const;
    /// By object name; null when there is none.
    static OrvPalette* find(const QString& Name);
    /// Null until the first palette is registered.
    static OrvPaletteSidebar* sidebar();

    /// What concerns all palettes, in the settings' current group.
    void savePaletteSettings(QSettings& Settings) const;
    void restorePaletteSettings(QSettings& Settings);
    /// What concerns one palette, under numbered keys. A key that is absent changes nothing; an entry that
    /// bears the palette's own name counts before the one of that index.
    void savePaletteSettings(QSettings& Settings, int Index, const OrvPalette* pPalette) const;
    void restorePaletteSettings(QSettings& Settings, int Index, OrvPalette* pPalette);

Q_SIGNALS:
    void paletteRegistered(OrvPalette* pPalette);

private:
    OrvPaletteManager() = default;
    void createSidebar();
    void addToPalettesMenu(OrvPalette* pPalette);

    QList<QPointer<OrvPalette>> m_Palettes;
    QPointer<OrvPaletteSidebar> m_Sidebar;
};
