#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

class OrvCanvas;
class OrvPalette;
class QPointF;
class QSize;
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
    /// Null, which is noted, when there is no such palette.
    OrvPalette* palette(const QString& Name);
    void showPalette(const QString& Name);
    /// One that is closed by default, away from the window; it may need some rests until it is complete.
    void showFloating(const QString& Name, const QSize& Size, int Rests = 0);
    /// Runs a command of the menus, by its key.
    bool trigger(const QString& Key);
    /// The same for one that opens a dialog, which is visited while it is open, and closed.
    void visitDialog(const QString& Key, const std::function<void(QWidget*)>& Visit);
    /// With the left button, along a path of the picture's points.
    void drag(const std::function<QPointF(double)>& PicturePoint);
    /// Clicks the layer's row.
    bool select(const QString& LayerName);
    void visitSampleProject();
    void visitPalettes();
    void visitLight();
    void visitPropertyEditors();
    void visitMaskStack();
    void visitQuickFind();
    void visitBrush();
    void visitSelection();
    void visitConversion();
    void visitMaterials();
    void visitObjects();
    void visitChannels();

    OrvCanvas* m_pCanvas;
    QString m_Directory;
    Subject m_Subject;
    QStringList m_Failures;
    int m_Pictures = 0;
};
