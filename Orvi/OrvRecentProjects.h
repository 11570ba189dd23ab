#pragma once

#include <QtCore/QObject>
#include <QtCore/QStringList>

class QAction;

/// The projects opened last, newest first, kept in the settings and offered in the File menu. Those that are
/// gone from the disk are not shown.
class OrvRecentProjects : public QObject {
    Q_OBJECT

public:
    static constexpr int Most = 10;

    explicit OrvRecentProjects(QObject* pParent = nullptr);
    ~OrvRecentProjects() override;

    static QStringList paths();
    void add(const QString& Path);

Q_SIGNALS:
    void chosen(QString Path);

private:
    void rebuildMenu();
    void clear();

    QList<QAction*> m_Actions;
};
