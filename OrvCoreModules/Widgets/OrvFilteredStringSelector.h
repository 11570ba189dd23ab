#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPair>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtWidgets/QWidget>

class QKeyEvent;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

/// A line edit above a list of texts: typing words narrows the list to the texts that contain all of them,
/// the arrow keys move in it, Return chooses. While nothing is typed the list shows its sections. Texts are
/// "/"-separated paths of which the last part stands out; each may carry a star.
class ORVCOREMODULES_EXPORT OrvFilteredStringSelector : public QWidget {
    Q_OBJECT

public:
    explicit OrvFilteredStringSelector(QWidget* pParent = nullptr);

    /// Titles with their texts, in the order shown. A text may stand in several sections.
    void setSections(const QVector<QPair<QString, QStringList>>& Sections);
    void setStarsShown(bool Shown);
    void setStarred(const QStringList& Texts);
    const QStringList& starred() const { return m_Starred; }

    QString filter() const;
    void setFilter(const QString& Words);
    /// Empty when nothing is left to choose from.
    QString currentText() const;
    /// The texts shown, without titles.
    QStringList shownTexts() const;

Q_SIGNALS:
    void chosen(QString Text);
    void starToggled(QString Text, bool Starred);

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void refill();
    void addTitle(const QString& Title);
    void addText(const QString& Text);
    QStringList matches() const;
    void moveCurrent(int Steps);
    void toggleStar(QListWidgetItem* pItem);
    bool isOnStar(const QPoint& Position) const;
    bool keyPressed(QKeyEvent* pEvent);

    QVector<QPair<QString, QStringList>> m_Sections;
    QStringList m_Starred;
    QLineEdit* m_pFilter;
    QListWidget* m_pList;
    bool m_StarsShown = false;
};
