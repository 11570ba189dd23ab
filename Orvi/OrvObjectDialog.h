#pragma once

#include <QtCore/QVector>
#include <QtWidgets/QDialog>

#include <functional>
#include <memory>

class OrvGeoEntity;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;

/// Asks what a new object is like: its name, and its UDIM tiles or the resolution of its faces. It lets only
/// answers pass that make an object, and adds none to the project.
class OrvObjectDialog : public QDialog {
    Q_OBJECT

public:
    /// Whether a name is taken is the caller's to say.
    OrvObjectDialog(
        const QString& Name, const std::function<bool(const QString&)>& IsTaken, QWidget* pParent = nullptr);

    /// As answered.
    std::unique_ptr<OrvGeoEntity> makeObject() const;

    /// "1001-1003, 1011" as tiles; empty when it is no such list.
    static QVector<int> tilesOf(const QString& Text);

private:
    QString trouble() const;
    void updateState();
    bool isPtex() const;

    std::function<bool(const QString&)> m_IsTaken;
    QLineEdit *m_pName, *m_pTiles;
    QComboBox *m_pSurface, *m_pResolution;
    QStackedWidget* m_pDetails;
    QLabel* m_pTrouble;
    QPushButton* m_pAdd;
};
