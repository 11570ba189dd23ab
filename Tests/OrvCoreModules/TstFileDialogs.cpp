#include "OrvCoreModules/Widgets/OrvFileDialog.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>
#include <QtWidgets/QAbstractItemView>
#include <QtWidgets/QCompleter>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>

/// Paths that the user types into the dialogs, from a folder that has nothing to do with them.
class TstFileDialogs : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir(m_Directory.path()).mkpath(QStringLiteral("Begin/Inner")));
        QVERIFY(QDir(m_Directory.path()).mkpath(QStringLiteral("Work/Hull.orvi")));
        for (const char* pName : {"Begin/near.png", "Work/far.png"}) {
            QFile File(path(pName));
            QVERIFY(File.open(QIODevice::WriteOnly));
        }
    }

    void whatIsTypedIsTaken_data()
    {
        QTest::addColumn<bool>("Folder");
        QTest::addColumn<QString>("Typed");
        QTest::addColumn<QString>("Chosen");
        QTest::newRow("folder elsewhere") << true << path("Work/Hull.orvi") << "Work/Hull.orvi";
        QTest::newRow("folder with a slash") << true << path("Work/Hull.orvi/") << "Work/Hull.orvi";
        QTest::newRow("folder here") << true << "Inner" << "Begin/Inner";
        QTest::newRow("file elsewhere") << false << path("Work/far.png") << "Work/far.png";
        QTest::newRow("file here") << false << "near.png" << "Begin/near.png";
        QTest::newRow("file by way of its folder") << false << "../Work/far.png" << "Work/far.png";
    }

    void whatIsTypedIsTaken()
    {
        QFETCH(bool, Folder);
        QFETCH(QString, Typed);
        QFETCH(QString, Chosen);
        QTimer::singleShot(0, this, [&Typed] {
            auto* pName = nameEdit();
            QVERIFY(pName);
            QTest::keyClicks(pName, Typed);
            QTest::keyClick(pName, Qt::Key_Return);
        });
        const QString Answer = Folder
            ? OrvFileDialog::askForFolder(nullptr, QStringLiteral("Open"), path("Begin"))
            : OrvFileDialog::askForFiles(
                nullptr, QStringLiteral("Open"), path("Begin"), QStringLiteral("Images (*.png)"))
                  .value(0);
        QCOMPARE(Answer, path(Chosen));
    }

    void aFolderThatIsTypedForAFileIsGoneInto()
    {
        QTimer::singleShot(0, this, [] {
            QTest::keyClicks(nameEdit(), path("Work"));
            QTest::keyClick(nameEdit(), Qt::Key_Return);
            auto* pDialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            QVERIFY(pDialog);
            QCOMPARE(pDialog->directory().path(), path("Work"));
            QTest::keyClicks(nameEdit(), QStringLiteral("far.png"));
            QTest::keyClick(nameEdit(), Qt::Key_Return);
        });
        QCOMPARE(OrvFileDialog::askForFile(nullptr, QStringLiteral("Open"), path("Begin/near.png")),
            path("Work/far.png"));
    }

    void buttonsAnswerWhileCompletionsAreShown()
    {
        QTimer::singleShot(0, this, [] {
            auto* pName = nameEdit();
            QTest::keyClicks(pName, path("Work/Hull.orvi"));
            QAbstractItemView* pPopup = pName->completer()->popup();
            pPopup->show();
            auto* pDialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            auto* pChoose = pDialog->findChild<QPushButton*>();
            const QPoint Place = pChoose->mapToGlobal(pChoose->rect().center());
            QTest::mousePress(pPopup, Qt::LeftButton, Qt::NoModifier, pPopup->mapFromGlobal(Place));
        });
        QCOMPARE(OrvFileDialog::askForFolder(nullptr, QStringLiteral("Open"), path("Begin")),
            path("Work/Hull.orvi"));
    }

private:
    static QString path(const QString& Name) { return m_Directory.filePath(Name); }
    static QLineEdit* nameEdit()
    {
        const auto* pDialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        return pDialog ? pDialog->findChild<QLineEdit*>() : nullptr;
    }

    inline static QTemporaryDir m_Directory;
};

QTEST_MAIN(TstFileDialogs)
#include "TstFileDialogs.moc"
