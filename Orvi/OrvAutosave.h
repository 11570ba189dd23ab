#pragma once

#include "Orvi/OrvCanvasRenderer.h"

#include <QtCore/QDateTime>
#include <QtCore/QObject>
#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <functional>
#include <memory>

class QLockFile;

/// Keeps a second, younger copy of the open project in its cache directory while there are unsaved changes,
/// and finds copies that a crash left behind. A copy is written in slices while the user rests and the
/// renderer pauses, and goes when its project is saved or closed. It never writes where the user saves.
class OrvAutosave : public QObject {
    Q_OBJECT

public:
    explicit OrvAutosave(OrvCanvasRenderer* pRenderer = nullptr, QObject* pParent = nullptr);
    ~OrvAutosave() override;

    struct Copy {
        QString Directory; ///< where it lies
        QString ProjectName;
        QString ProjectPath; ///< empty for a project that was never saved
        QDateTime Written;
    };
    /// Copies whose program is gone, not those of another one that runs.
    static QList<Copy> leftBehind();
    /// Makes a project of a copy, opens it and takes the copy away. Returns the project's folder, empty on
    /// failure.
    static QString recover(const Copy& Left, QString& Error);
    static void discard(const Copy& Left);

    /// True when a copy was written; nothing is when there is nothing to lose.
    bool saveNow();
    /// Writes a copy once the user has rested for a moment; the window stays alive meanwhile.
    void saveWhenIdle();
    /// How long the window may wait for one slice, in milliseconds; a slice brings one piece of an image at least.
    void setSliceLength(int Milliseconds) { m_SliceLength = Milliseconds; }
    bool isWaiting() const { return m_Idle.isActive() || m_Slices.isActive(); }

    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void onProjectCurrent();
    void beginSaving();
    void saveSlice();
    void endSaving();
    bool write(const std::function<bool(int Done, int Total)>& Step);
    void dropCopy();

    QPointer<OrvCanvasRenderer> m_pRenderer;
    std::unique_ptr<OrvCanvasRenderer::Pause> m_pPause; ///< while slices are written
    QTimer m_Delay; ///< after the last request, so that a burst of edits is one copy
    QTimer m_Interval;
    QTimer m_Idle; ///< since the user's last touch
    QTimer m_Slices;
    int m_SliceLength = 150;
    QString m_Directory; ///< of the open project
    std::unique_ptr<QLockFile> m_pLock;
};
