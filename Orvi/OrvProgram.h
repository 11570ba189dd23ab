#pragma once

#include <QtCore/QObject>

#include <memory>

class OrvAutosave;
class OrvCanvas;
class OrvCanvasTools;
class OrvCommandLine;
class OrvEditCommands;
class OrvImportExport;
class OrvObjectCommands;
class OrvProjectCommands;
class OrvSelectionCommands;

/// The program with a window, put together: makes the managers in the order in which they need each other,
/// the window's own parts, and the plug-ins, arranges the palettes and opens what was asked for. Made after
/// the application object, destroyed before it; it does no work of its own afterwards.
class OrvProgram : public QObject {
    Q_OBJECT

public:
    OrvProgram();
    ~OrvProgram() override;

    /// Shows the window and opens what the command line names.
    void start(const OrvCommandLine& Line);
    OrvCanvas* canvas() const { return m_pCanvas; }

private Q_SLOTS:
    void openSample();
    void showAbout();

private:
    void makeParts();
    void makeMenus();
    void loadPlugins();
    void registerPalettes();
    static void arrangePalettes();
    void open(const OrvCommandLine& Line);

    OrvCanvas* m_pCanvas = nullptr; ///< the window's
    OrvCanvasTools* m_pTools = nullptr;
    OrvProjectCommands* m_pProjectCommands = nullptr;
    OrvImportExport* m_pImportExport = nullptr;
    OrvSelectionCommands* m_pSelectionCommands = nullptr;
    OrvObjectCommands* m_pObjectCommands = nullptr;
    OrvEditCommands* m_pEditCommands = nullptr;
    OrvAutosave* m_pAutosave = nullptr;
};
