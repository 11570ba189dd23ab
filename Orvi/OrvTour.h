#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class OrvCanvas;
class QWidget;

/// Plays a short tour over the real program, off screen, and writes a picture of each stop: for the manual
/// and for whoever wants to see what changed. It acts as a user would and waits until the program has settled
/// before it looks.
class OrvTour {
public:
    /// What the tour shows: the sample project, which it makes for itself, or what is open.
    enum Subject { SampleProject, OpenProject };

    OrvTour(OrvCanvas* pCanvas, const QString& Directory, Subject Shown);

    /// The program's exit code.
    int run();

private:
    void settle() const;
    void picture(const QString& Name, QWidget* pWidget = nullptr);
    void showPalette(const QString& Name);
    /// Clicks the layer's row.
    bool select(const QString& LayerName);
    void visitSampleProject();
    void visitPalettes();
    void visitPropertyEditors();
    void visitMaskStack();
    void visitQuickFind();
    void visitBrush();
    void visitSelection();
    void visitChannels();

    OrvCanvas* m_pCanvas;
    QString m_Directory;
    Subject m_Subject;
    QStringList m_Failures;
    int m_Pictures = 0;
};
