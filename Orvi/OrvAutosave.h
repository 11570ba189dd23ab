#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

#include <memory>

class QLockFile;

/// Keeps a second, younger copy of the open project in its cache directory while there are unsaved changes,
/// and finds copies that a crash left behind. A copy goes when its project is saved or closed. It never
/// writes where the user saves.
class OrvAutosave : public QObject {
    Q_OBJECT

public:
    explicit OrvAutosave(QObject* pParent = nullptr);
    ~OrvAutosave() override;

    struct Copy {
        QString Directory; ///< where it lies
        QString ProjectName;
        QString ProjectPath; ///< empty for a project that was never saved
    };
    /// Copies whose program is gone, not those of another one that runs.
    static QList<Copy> leftBehind();
    /// Makes a project of a copy, opens it and takes the copy away. Returns the project's folder, empty on
    /// failure.
    static QString recover(const Copy& Left, QString& Error);
    static void discard(const Copy& Left);

    /// True when a copy was written; nothing is when there is nothing to lose.
    bool saveNow();

private:
    void onProjectCurrent();
    void request();
    void dropCopy();

    QTimer m_Delay; ///< after the last request, so that a burst of edits is one copy
    QTimer m_Interval;
    QString m_Directory; ///< of the open project
    std::unique_ptr<QLockFile> m_pLock;
};
