#pragma once

#include "OrvCoreModules/OrvCoreModulesExport.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

#include <memory>

class OrvInPlaceEdit;
class QStaticText;

/// A label that turns into a line edit: by a double click, by F2 while it has the focus, or by edit(). Return
/// and leaving the editor commit, Escape gives up. Lists hold thousands of these: it paints its text itself
/// and has no editor until somebody edits.
class ORVCOREMODULES_EXPORT OrvEditLabel : public QWidget {
    Q_OBJECT

public:
    explicit OrvEditLabel(const QString& Text, QWidget* pParent = nullptr);
    explicit OrvEditLabel(QWidget* pParent = nullptr);
    ~OrvEditLabel() override;

    const QString& text() const { return m_Text; }
    /// Rich text is shown in place of the plain text, which editing still starts from.
    void setDisplayText(const QString& RichText, const QString& PlainText);
    void clearDisplayText();
    /// Empty while the plain text is shown.
    QString displayText() const;

    bool isEditable() const { return m_Editable; }
    void setEditable(bool Editable) { m_Editable = Editable; }
    bool isEditing() const;
    Qt::Alignment alignment() const { return m_Alignment; }
    void setAlignment(Qt::Alignment Alignment);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /// Sends no signal.
    void setText(const QString& Text);
    void edit();

Q_SIGNALS:
    /// The user committed another text; the label shows it already.
    void textChanged(QString Text);

protected:
    bool event(QEvent* pEvent) override;
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseDoubleClickEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;

private Q_SLOTS:
    void onEditEnded(QString Text, bool Committed);

private:
    QString m_Text;
    std::unique_ptr<QStaticText> m_pDisplayText;
    QPointer<OrvInPlaceEdit> m_pEditor;
    QPointer<QWidget> m_pFocusBefore;
    Qt::Alignment m_Alignment = Qt::AlignLeft | Qt::AlignVCenter;
    bool m_Editable = true;
};
