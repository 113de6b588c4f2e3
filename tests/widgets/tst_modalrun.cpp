// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "FileChooser.h"
#include "ModalRun.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QDialog>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

#include <functional>
#include <memory>

using Call = std::function<QString(QWidget* parent)>;
Q_DECLARE_METATYPE(Call)

/// Dialogs that are waited for, whatever becomes of their parent.
class ModalRunTest : public QObject
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase();
    void resultIsTheDialogs();
    void dialogEndsWithTheRun();
    void survivesItsParent_data();
    void survivesItsParent();

    void chooserAsksForAFile();
    void chosenFile_data();
    void chosenFile();
    void cancelledChooser();
};

void ModalRunTest::initTestCase()
{
    // The desktop's own file dialog would be nobody's to answer.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
}

void ModalRunTest::resultIsTheDialogs()
{
    for (const int result : {0, 1, 7}) {
        ModalRun<QDialog> run(nullptr);
        const ModalDriver driver(
            [result](QWidget* modal) { qobject_cast<QDialog*>(modal)->done(result); });
        QCOMPARE(run.exec(), std::optional(result));
        QCOMPARE(driver.count(), 1);
    }
}

void ModalRunTest::dialogEndsWithTheRun()
{
    QPointer<QDialog> dialog;
    {
        const ModalRun<QDialog> run(nullptr);
        dialog = run.operator->();
        QVERIFY(dialog);
    }
    QVERIFY(!dialog);
}

void ModalRunTest::survivesItsParent_data()
{
    QTest::addColumn<Call>("call");
    QTest::addColumn<QString>("answer");
    const auto row = [](const char* name, const QString& answer, const Call& call) {
        QTest::newRow(name) << call << answer;
    };
    row("any dialog", "none", [](QWidget* parent) {
        ModalRun<QDialog> run(parent);
        return run.exec() ? QStringLiteral("some") : QStringLiteral("none");
    });
    row("message", "0", [](QWidget* parent) {
        return QString::number(CustomMessageBox::warning(parent, "Title", "Text"));
    });
    // The first button is mostly the one that deletes.
    row("question", "-1", [](QWidget* parent) {
        return QString::number(
            CustomMessageBox::customQuestion(parent, "Title", "Text", {"Yes", "No"}, 1, {0}));
    });
    row("file chooser", "",
        [](QWidget* parent) { return FileChooser::openFile(parent, "Title", "All Files (*.*)"); });
}

void ModalRunTest::survivesItsParent()
{
    QFETCH(Call, call);
    auto parent = std::make_unique<QWidget>();
    const ModalDriver driver([&parent](QWidget* modal) {
        QCOMPARE(modal->parentWidget(), parent.get());
        parent.reset();
    });
    QTEST(call(parent.get()), "answer");
    QCOMPARE(driver.count(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void ModalRunTest::chooserAsksForAFile()
{
    QWidget parent;
    QTRY_VERIFY(!g_blockAutoQuit);
    const ModalDriver driver([&parent](QWidget* modal) {
        auto* chooser = qobject_cast<QFileDialog*>(modal);
        QVERIFY(chooser);
        QCOMPARE(chooser->windowTitle(), "Pick one");
        QCOMPARE(chooser->nameFilters(), QStringList{"Texts (*.txt)"});
        QCOMPARE(chooser->fileMode(), QFileDialog::ExistingFile);
        QCOMPARE(chooser->acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(chooser->parentWidget(), &parent);
        QVERIFY(g_blockAutoQuit);
        chooser->reject();
    });
    QCOMPARE(FileChooser::openFile(&parent, "Pick one", "Texts (*.txt)"), QString());
    QCOMPARE(driver.count(), 1);
}

void ModalRunTest::chosenFile_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << "report.txt";
    QTest::newRow("without a suffix") << "program";
    QTest::newRow("blanks and no ASCII") << QString::fromUtf8("mi programa ñ.exe");
}

void ModalRunTest::chosenFile()
{
    QFETCH(QString, name);
    const QString path = TestHome::writeDataFile(name, "content");
    const ModalDriver driver([&path](QWidget* modal) {
        auto* fileName = modal->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(fileName);
        fileName->setText(path);
        QTest::keyClick(fileName, Qt::Key_Return);
    });
    QCOMPARE(FileChooser::openFile(nullptr, "Pick one", "All Files (*.*)"), path);
    QCOMPARE(driver.count(), 1);
}

void ModalRunTest::cancelledChooser()
{
    const ModalDriver driver([](QWidget* modal) { pressKey(*modal, Qt::Key_Escape); });
    QCOMPARE(FileChooser::openFile(nullptr, "Pick one", "All Files (*.*)"), QString());
    QCOMPARE(driver.count(), 1);
}

QTEST_MAIN(ModalRunTest)
#include "tst_modalrun.moc"
