// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "AutoQuitBlocker.h"
#include "CustomMessageBox.h"
#include "DataSettingsPage.h"
#include "FittingText.h"
#include "LanguageRows.h"
#include "LauncherModel.h"
#include "Localization.h"
#include "SettingsCard.h"
#include "StorageManager.h"
#include "TestFiles.h"
#include "TestHome.h"
#include "UiDriver.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include <functional>
#include <memory>

namespace
{

using Answer = std::function<void(QWidget*)>;

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
}

LauncherData document(const QString& category)
{
    LauncherData data;
    data.categories = {category};
    data.defaultCategory = category;
    data.categoryIcons = {{category, 10}};
    data.sectionElements = {{category, {{"id-1", "Mail", "URL", "https://mail", ""}}}};
    data.templates = {{"Set", 30, {}}};
    return data;
}

/// What a chooser, a question and a message say, and how each is answered, in the order in which
/// they come up.
class Dialogs
{
public:
    explicit Dialogs(QList<Answer> answers)
        : m_answers(std::move(answers)), m_driver([this](QWidget* dialog) { take(dialog); })
    {}

    /// The text of each message and question that came up, title and body.
    QStringList texts;
    QStringList buttons;   ///< of all of them
    bool isBlocked = true; ///< the windows were kept from hiding all the time
    int count() const { return m_driver.count(); }

private:
    void take(QWidget* dialog)
    {
        isBlocked = isBlocked && g_blockAutoQuit;
        if (qobject_cast<CustomMessageBox*>(dialog)) {
            for (const QLabel* label : dialog->findChildren<QLabel*>())
                texts.append(label->accessibleName().isEmpty() ? label->text()
                                                               : label->accessibleName());
            for (const QPushButton* button : dialog->findChildren<QPushButton*>())
                buttons.append(button->text());
        }
        if (m_answers.isEmpty())
            dialog->close();
        else
            m_answers.takeFirst()(dialog);
    }

    QList<Answer> m_answers;
    ModalDriver m_driver;
};

/// Refuses, if the question looks like one about what can't be taken back.
void lookAndRefuse(QWidget* dialog)
{
    const QList<QPushButton*> buttons = dialog->findChildren<QPushButton*>();
    QCOMPARE(buttons.size(), 2);
    QCOMPARE(buttons.at(0)->styleSheet(), Theme::destructiveBtnStyle(Theme::colors()));
    QVERIFY(!buttons.at(0)->isDefault());
    QVERIFY(buttons.at(1)->styleSheet() != buttons.at(0)->styleSheet());
    QVERIFY(buttons.at(1)->isDefault());
    buttons.at(1)->click();
}

/// Types a path into a chooser.
Answer choose(const QString& path)
{
    return [path](QWidget* dialog) {
        auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(name);
        name->setText(path);
        // Later: the driver would not see what the chooser asks inside of the key.
        QTimer::singleShot(0, name, [name] { QTest::keyClick(name, Qt::Key_Return); });
    };
}

/// Answers the chooser's own question whether a file may be replaced.
void replaceIt(QWidget* dialog)
{
    auto* box = qobject_cast<QMessageBox*>(dialog);
    QVERIFY(box);
    box->button(QMessageBox::Yes)->click();
}

Answer press(Qt::Key key)
{
    return [key](QWidget* dialog) { pressKey(*dialog, key); };
}

Answer click(const QString& text)
{
    return [text](QWidget* dialog) {
        for (QPushButton* button : dialog->findChildren<QPushButton*>()) {
            if (button->text() == text)
                return button->click();
        }
        QFAIL(qPrintable("no button " + text));
    };
}

} // namespace

class DataSettingsPageTest : public QObject, private TestTree
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void initTestCase() { FittingText::useProgramFont(); }
    void init();
    void cleanup();

    void rowsInOrder();
    void layoutOfTheRows();
    void looks();
    void textsFit_data();
    void textsFit();

    void exportChooser();
    void exportToANewFile();
    void exportOverAnExistingFile();
    void exportWithoutADocumentSaysSuccess();
    void exportThatCannotBeWrittenSaysSuccess();
    void exportOverTheDocumentItselfKeepsIt();
    void cancelledExport();

    void importChooser();
    void importAsksFirst();
    void importReplacesTheDocument();
    void importOfABrokenFile_data();
    void importOfABrokenFile();
    void importOfWhatCannotBeRead_data();
    void importOfWhatCannotBeRead();
    void importWithoutAWayBack();
    void importOfThePreviousDocument();
    void cancelledImport();

    void resetAsksFirst();
    void resetEmptiesTheDocument();
    void resetWithoutAWayBack();
    void otherFilesAreUntouched();

    void escapeAndBackspaceGoAhead_data();
    void escapeAndBackspaceGoAhead();
    void cancelledQuestion_data();
    void cancelledQuestion();
    void pageGoesWithItsDialogs_data();
    void pageGoesWithItsDialogs();

private:
    QPushButton* button(const QString& name) const { return m_page->findChild<QPushButton*>(name); }
    QList<QFrame*> cards() const;
    QString dataFile() const { return QDir(TestHome::dataDir()).filePath("data.json"); }
    QString previousFile() const { return StorageManager::previousPath(dataFile()); }
    LauncherData onDisk() const { return StorageManager::loadData(dataFile()); }
    void build();

    std::unique_ptr<LauncherModel> m_model;
    std::unique_ptr<QWidget> m_window;
    DataSettingsPage* m_page = nullptr;
};

void DataSettingsPageTest::init()
{
    Tr::currentLang = Lang::En;
    Theme::forceTheme = 1;
    makeRoot();
    StorageManager::saveData(dataFile(), document("Work"));
    m_model = std::make_unique<LauncherModel>(dataFile(), nullptr);
    m_model->setCurrentCategory("Work");
    build();
}

void DataSettingsPageTest::cleanup()
{
    m_window.reset();
    m_model.reset();
    QDir(TestHome::dataDir()).removeRecursively();
}

void DataSettingsPageTest::build()
{
    m_window = std::make_unique<QWidget>();
    auto* layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins(0, 0, 0, 0);
    m_page = new DataSettingsPage(m_model.get(), dataFile());
    layout->addWidget(m_page);
    m_window->resize(560, m_page->sizeHint().height());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

QList<QFrame*> DataSettingsPageTest::cards() const
{
    QList<QFrame*> cards;
    collectSettingsRows(m_page, cards);
    return cards;
}

void DataSettingsPageTest::rowsInOrder()
{
    QCOMPARE(m_page->styleSheet(), "background: transparent;");
    QCOMPARE(m_page->layout()->contentsMargins(), QMargins(16, 16, 16, 16));
    const QStringList titles{"Export Data", "Import Data", "Delete All Data"};
    const QStringList names{"btnExportData", "btnImportData", "btnResetData"};
    const QStringList texts{QString::fromUtf8("Export →"), QString::fromUtf8("← Import"), "Delete"};
    QCOMPARE(cards().size(), 3);
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(cards().at(i)->findChild<QLabel*>("titleStatic")->text(), titles.at(i));
        const auto* control = cards().at(i)->findChild<QPushButton*>();
        QCOMPARE(control->objectName(), names.at(i));
        QCOMPARE(control->text(), texts.at(i));
    }
}

void DataSettingsPageTest::layoutOfTheRows()
{
    for (const QFrame* card : cards()) {
        const QRect row = rectIn(*m_page, card);
        const auto* control = card->findChild<QPushButton*>();
        QCOMPARE(row.height(), 60);
        QCOMPARE(control->height(), 36);
        QVERIFY(control->width() >= 120);
        QCOMPARE(control->cursor().shape(), Qt::PointingHandCursor);
        QCOMPARE(rectIn(*m_page, control).right(), row.right() - 16);
        QCOMPARE(rectIn(*m_page, card->findChild<QLabel*>()).left(), row.left() + 16 + 8);
    }
}

void DataSettingsPageTest::looks()
{
    for (const int mode : {1, 2}) {
        Theme::forceTheme = mode;
        build();
        const ColorTokens c = Theme::colors();
        for (const char* name : {"btnExportData", "btnImportData"})
            QCOMPARE(button(name)->styleSheet(), Theme::smallPillStyle(c));
        QCOMPARE(button("btnResetData")->styleSheet(),
                 QStringLiteral("QPushButton { background-color: %1; color: %2; border: 1px solid "
                                "transparent; border-radius: 18px; padding: 0 16px; font-size: "
                                "12px; font-weight: bold; outline: 0; }"
                                "QPushButton:hover { background-color: %3; color: %4; }"
                                "QPushButton:focus { background-color: %3; color: %4; outline: 0; "
                                "}")
                     .arg(c.errorContainer, c.onErrorContainer, c.errorColor, c.onError));
        const auto ground = [this] {
            const QImage image = button("btnResetData")->grab().toImage();
            return image.pixelColor(image.width() / 2, 4);
        };
        button("btnExportData")->setFocus();
        QTRY_COMPARE(ground(), QColor(c.errorContainer));
        button("btnResetData")->setFocus();
        QTRY_COMPARE(ground(), QColor(c.errorColor));
    }
}

void DataSettingsPageTest::textsFit_data()
{
    addLanguageRows();
}

void DataSettingsPageTest::textsFit()
{
    QFETCH(Lang, lang);
    Tr::currentLang = lang;
    build();
    for (const QPushButton* each : m_page->findChildren<QPushButton*>()) {
        QVERIFY2(each->fontMetrics().horizontalAdvance(each->text()) <=
                     FittingText::contentsOf(*each).width(),
                 qPrintable(each->text()));
    }
    for (const QLabel* title : m_page->findChildren<QLabel*>())
        QVERIFY(title->height() >= title->heightForWidth(title->width()));
}

void DataSettingsPageTest::exportChooser()
{
    QString caption;
    QStringList filters;
    QStringList selected;
    QFileDialog::AcceptMode mode = QFileDialog::AcceptOpen;
    Dialogs dialogs({[&](QWidget* dialog) {
        const auto* chooser = qobject_cast<QFileDialog*>(dialog);
        QVERIFY(chooser);
        caption = chooser->windowTitle();
        filters = chooser->nameFilters();
        selected = {chooser->findChild<QLineEdit*>("fileNameEdit")->text()};
        mode = chooser->acceptMode();
        dialog->close();
    }});
    button("btnExportData")->click();
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(caption, "Export Data");
    QCOMPARE(filters, QStringList{"JSON Files (*.json)"});
    QCOMPARE(selected, QStringList{"brelvanti_data.json"});
    QCOMPARE(mode, QFileDialog::AcceptSave);
    QVERIFY(dialogs.isBlocked);
}

void DataSettingsPageTest::exportToANewFile()
{
    const QString target = path("copy.json");
    Dialogs dialogs({choose(target), press(Qt::Key_Return)});
    button("btnExportData")->click();
    QCOMPARE(dialogs.count(), 2);
    QCOMPARE(dialogs.texts,
             QStringList({"Export Successful", "Data has been successfully exported to:\n" +
                                                   QDir::fromNativeSeparators(target)}));
    QVERIFY(dialogs.isBlocked);
    QCOMPARE(contentOf(target), contentOf(dataFile()));
    QCOMPARE(StorageManager::loadData(target), document("Work"));
    QVERIFY(!QFileInfo::exists(previousFile()));
}

void DataSettingsPageTest::exportOverAnExistingFile()
{
    const QString target = path("copy.json");
    write("copy.json", QByteArray(1'000'000, 'x'));
    Dialogs dialogs({choose(target), replaceIt, press(Qt::Key_Return)});
    button("btnExportData")->click();
    QCOMPARE(dialogs.count(), 3);
    QCOMPARE(contentOf(target), contentOf(dataFile()));
}

void DataSettingsPageTest::exportWithoutADocumentSaysSuccess()
{
    QVERIFY(QFile::remove(dataFile()));
    const QString target = path("copy.json");
    write("copy.json", "an older copy");
    Dialogs dialogs({choose(target), replaceIt, press(Qt::Key_Return)});
    button("btnExportData")->click();
    QCOMPARE(dialogs.texts.value(0), "Export Successful");
    QVERIFY(!QFileInfo::exists(target));
}

void DataSettingsPageTest::exportThatCannotBeWrittenSaysSuccess()
{
    const Dialogs dialogs({choose(path("missing/copy.json")), press(Qt::Key_Return)});
    button("btnExportData")->click();
    QCOMPARE(dialogs.texts.value(0), "Export Successful");
    QVERIFY(!QFileInfo::exists(path("missing")));
}

void DataSettingsPageTest::exportOverTheDocumentItselfKeepsIt()
{
    const QByteArray before = contentOf(dataFile());
    Dialogs dialogs({choose(dataFile()), replaceIt, press(Qt::Key_Return)});
    button("btnExportData")->click();
    QCOMPARE(dialogs.texts.value(0), "Export Successful");
    QCOMPARE(contentOf(dataFile()), before);
}

void DataSettingsPageTest::cancelledExport()
{
    Dialogs dialogs({[](QWidget* dialog) { dialog->close(); }});
    button("btnExportData")->click();
    QCOMPARE(dialogs.count(), 1);
    QVERIFY(QDir(root()).isEmpty());
}

void DataSettingsPageTest::importChooser()
{
    QString caption;
    QStringList filters;
    QFileDialog::FileMode mode = QFileDialog::AnyFile;
    Dialogs dialogs({[&](QWidget* dialog) {
        const auto* chooser = qobject_cast<QFileDialog*>(dialog);
        QVERIFY(chooser);
        caption = chooser->windowTitle();
        filters = chooser->nameFilters();
        mode = chooser->fileMode();
        dialog->close();
    }});
    button("btnImportData")->click();
    QCOMPARE(caption, "Import Data");
    QCOMPARE(filters, QStringList{"JSON Files (*.json)"});
    QCOMPARE(mode, QFileDialog::ExistingFile);
}

void DataSettingsPageTest::importAsksFirst()
{
    StorageManager::saveData(path("other.json"), document("Home"));
    Dialogs dialogs({choose(path("other.json")), lookAndRefuse});
    button("btnImportData")->click();
    QCOMPARE(dialogs.texts, QStringList({Tr::t("settings.data.import_confirm_title"),
                                         Tr::t("settings.data.import_confirm_msg")}));
    QCOMPARE(dialogs.buttons, QStringList({"Yes", "Cancel"}));
    QCOMPARE(m_model->data(), document("Work"));
    QVERIFY(!QFileInfo::exists(previousFile()));
}

void DataSettingsPageTest::importReplacesTheDocument()
{
    StorageManager::saveData(path("other.json"), document("Home"));
    const QByteArray chosen = contentOf(path("other.json"));
    const QByteArray before = contentOf(dataFile());
    QSignalSpy changed(m_page, &DataSettingsPage::dataChanged);
    int changesBefore = -1;
    Dialogs dialogs({choose(path("other.json")), click("Yes"), [&](QWidget* box) {
                         changesBefore = static_cast<int>(changed.count());
                         press(Qt::Key_Return)(box);
                     }});
    button("btnImportData")->click();
    QCOMPARE(dialogs.texts.mid(2),
             QStringList({"Import Successful", "Data has been successfully imported."}));
    QVERIFY(dialogs.isBlocked);
    QCOMPARE(changesBefore, 0); // it comes behind the message
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_model->data(), document("Home"));
    QCOMPARE(m_model->currentCategory(), "Home");
    QCOMPARE(onDisk(), document("Home"));
    QCOMPARE(contentOf(path("other.json")), chosen);
    QCOMPARE(contentOf(previousFile()), before);
}

void DataSettingsPageTest::importOfABrokenFile_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isMoved");
    QTest::newRow("cut off") << QByteArray("{\"categories\": [") << true;
    QTest::newRow("an array") << QByteArray("[]") << true;
    QTest::newRow("no JSON") << QByteArray(1'000, '\0') << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("white space") << QByteArray(" \n\t") << false;
}

void DataSettingsPageTest::importOfABrokenFile()
{
    QFETCH(QByteArray, content);
    QFETCH(bool, isMoved);
    write("other.json", content);
    Dialogs dialogs({choose(path("other.json")), click("Yes"), press(Qt::Key_Return)});
    button("btnImportData")->click();
    QCOMPARE(dialogs.texts.value(2), "Import Successful");
    QCOMPARE(m_model->data(), StorageManager::emptyDocument());
    QCOMPARE(onDisk(), StorageManager::emptyDocument());
    QCOMPARE(contentOf(path(isMoved ? "other.json.bak" : "other.json")), content);
    QCOMPARE(StorageManager::loadData(previousFile()), document("Work"));
}

void DataSettingsPageTest::importOfWhatCannotBeRead_data()
{
    QTest::addColumn<QString>("what");
    for (const char* what : {"too large", "gone", "directory"})
        QTest::newRow(what) << QString(what);
}

void DataSettingsPageTest::importOfWhatCannotBeRead()
{
    QFETCH(QString, what);
    write("other.json", "{}");
    if (what == "too large") {
        QFile sparse(path("other.json"));
        QVERIFY(sparse.resize(StorageManager::MaxDocumentBytes + 1));
    }
    QSignalSpy changed(m_page, &DataSettingsPage::dataChanged);
    QSignalSpy categories(m_model.get(), &LauncherModel::categoriesChanged);
    const QByteArray before = contentOf(dataFile());
    Dialogs dialogs({choose(path("other.json")),
                     [&](QWidget* box) {
                         if (what != "too large")
                             QVERIFY(QFile::remove(path("other.json")));
                         if (what == "directory")
                             makeDirectory("other.json");
                         click("Yes")(box);
                     },
                     press(Qt::Key_Return)});
    button("btnImportData")->click();
    QCOMPARE(dialogs.texts.mid(2),
             QStringList({"Import Failed", "Failed to read or parse import file:\n" +
                                               QDir::fromNativeSeparators(path("other.json"))}));
    QCOMPARE(changed.count() + categories.count(), 0);
    QCOMPARE(m_model->data(), document("Work"));
    QCOMPARE(contentOf(dataFile()), before);
    QVERIFY(!QFileInfo::exists(previousFile()));
    QVERIFY(!QFileInfo::exists(path("other.json.bak")));
    QCOMPARE(QFileInfo::exists(path("other.json")), what != "gone");
}

void DataSettingsPageTest::importWithoutAWayBack()
{
    QVERIFY(QDir().mkpath(previousFile() + "/inside")); // in the way
    for (const QByteArray& content : {QByteArray(R"({"categories": ["Home"]})"), QByteArray("x")}) {
        write("other.json", content);
        QSignalSpy changed(m_page, &DataSettingsPage::dataChanged);
        Dialogs dialogs({choose(path("other.json")), click("Yes"), press(Qt::Key_Return)});
        button("btnImportData")->click();
        QCOMPARE(dialogs.texts.value(2), "Error");
        QVERIFY(dialogs.texts.value(3).startsWith("The present data could not be kept"));
        QVERIFY(dialogs.texts.value(3).endsWith(previousFile()));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(m_model->data(), document("Work"));
        QCOMPARE(onDisk(), document("Work"));
        QCOMPARE(contentOf(path("other.json")), content);
    }
}

void DataSettingsPageTest::importOfThePreviousDocument()
{
    m_model->resetData();
    Dialogs dialogs({choose(previousFile()), click("Yes"), press(Qt::Key_Return)});
    button("btnImportData")->click();
    QCOMPARE(dialogs.texts.value(2), "Import Successful");
    QCOMPARE(onDisk(), document("Work"));
    QCOMPARE(StorageManager::loadData(previousFile()), StorageManager::emptyDocument());
}

void DataSettingsPageTest::cancelledImport()
{
    Dialogs dialogs({[](QWidget* dialog) { dialog->close(); }});
    button("btnImportData")->click();
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(m_model->data(), document("Work"));
}

void DataSettingsPageTest::resetAsksFirst()
{
    Dialogs dialogs({lookAndRefuse});
    button("btnResetData")->click();
    QCOMPARE(dialogs.count(), 1);
    QCOMPARE(dialogs.texts, QStringList({Tr::t("settings.data.reset_confirm_title"),
                                         Tr::t("settings.data.reset_confirm_msg")}));
    QCOMPARE(dialogs.buttons, QStringList({"Delete Everything", "Cancel"}));
    QVERIFY(dialogs.isBlocked);
    QCOMPARE(m_model->data(), document("Work"));
}

void DataSettingsPageTest::resetEmptiesTheDocument()
{
    const QByteArray before = contentOf(dataFile());
    QSignalSpy changed(m_page, &DataSettingsPage::dataChanged);
    Dialogs dialogs({click("Delete Everything"), press(Qt::Key_Return)});
    button("btnResetData")->click();
    QCOMPARE(dialogs.texts.mid(2), QStringList({"Data Deleted", "All data has been deleted."}));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_model->data(), StorageManager::emptyDocument());
    QCOMPARE(onDisk(), StorageManager::emptyDocument());
    QCOMPARE(contentOf(previousFile()), before);
}

void DataSettingsPageTest::resetWithoutAWayBack()
{
    QVERIFY(QDir().mkpath(previousFile() + "/inside"));
    QSignalSpy changed(m_page, &DataSettingsPage::dataChanged);
    Dialogs dialogs({click("Delete Everything"), press(Qt::Key_Return)});
    button("btnResetData")->click();
    QCOMPARE(dialogs.texts.value(2), "Error");
    QCOMPARE(changed.count(), 0);
    QCOMPARE(onDisk(), document("Work"));
    QCOMPARE(m_model->data(), document("Work"));
}

void DataSettingsPageTest::otherFilesAreUntouched()
{
    const QStringList names{"settings.ini", "usage.json", "folderfilter.json", "data.json.bak"};
    for (const QString& name : names)
        TestHome::writeDataFile(name, "what stands in " + name.toUtf8());
    StorageManager::saveData(path("other.json"), document("Home"));
    // One at a time, or each would take the windows of the others.
    const auto run = [this](const char* name, const QList<Answer>& answers) {
        const Dialogs dialogs(answers);
        button(name)->click();
        QCOMPARE(dialogs.count(), answers.size());
    };
    run("btnImportData", {choose(path("other.json")), click("Yes"), press(Qt::Key_Return)});
    run("btnExportData", {choose(path("copy.json")), press(Qt::Key_Return)});
    QVERIFY(QFileInfo::exists(path("copy.json")));
    run("btnResetData", {click("Delete Everything"), press(Qt::Key_Return)});
    QCOMPARE(m_model->data(), StorageManager::emptyDocument());
    for (const QString& name : names)
        QCOMPARE(contentOf(QDir(TestHome::dataDir()).filePath(name)),
                 "what stands in " + name.toUtf8());
}

void DataSettingsPageTest::escapeAndBackspaceGoAhead_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<bool>("isImport");
    for (const bool isImport : {true, false}) {
        QTest::addRow("Esc, %s", isImport ? "import" : "reset") << Qt::Key_Escape << isImport;
        QTest::addRow("Backspace, %s", isImport ? "import" : "reset")
            << Qt::Key_Backspace << isImport;
    }
}

void DataSettingsPageTest::escapeAndBackspaceGoAhead()
{
    QFETCH(Qt::Key, key);
    QFETCH(bool, isImport);
    StorageManager::saveData(path("other.json"), document("Home"));
    QList<Answer> answers{press(key), press(Qt::Key_Return)};
    if (isImport)
        answers.prepend(choose(path("other.json")));
    const Dialogs dialogs(answers);
    button(isImport ? "btnImportData" : "btnResetData")->click();
    QCOMPARE(onDisk(), isImport ? document("Home") : StorageManager::emptyDocument());
    QCOMPARE(StorageManager::loadData(previousFile()), document("Work"));
}

void DataSettingsPageTest::cancelledQuestion_data()
{
    QTest::addColumn<bool>("isImport");
    QTest::newRow("import") << true;
    QTest::newRow("reset") << false;
}

void DataSettingsPageTest::cancelledQuestion()
{
    QFETCH(bool, isImport);
    StorageManager::saveData(path("other.json"), document("Home"));
    // Enter is for the default, which is to cancel.
    QList<Answer> answers{press(Qt::Key_Return)};
    if (isImport)
        answers.prepend(choose(path("other.json")));
    const Dialogs dialogs(answers);
    button(isImport ? "btnImportData" : "btnResetData")->click();
    QCOMPARE(dialogs.count(), isImport ? 2 : 1);
    QCOMPARE(onDisk(), document("Work"));
    QVERIFY(!QFileInfo::exists(previousFile()));
}

void DataSettingsPageTest::pageGoesWithItsDialogs_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("last"); // the dialog during which the page goes
    for (const auto& [name, count] : {std::pair("btnExportData", 2), std::pair("btnImportData", 3),
                                      std::pair("btnResetData", 2)}) {
        for (int i = 0; i < count; ++i)
            QTest::addRow("%s, dialog %d", name, i + 1) << QString(name) << i;
    }
}

void DataSettingsPageTest::pageGoesWithItsDialogs()
{
    QFETCH(QString, name);
    QFETCH(int, last);
    StorageManager::saveData(path("other.json"), document("Home"));
    QList<Answer> answers;
    if (name == "btnExportData")
        answers = {choose(path("copy.json")), press(Qt::Key_Return)};
    else if (name == "btnImportData")
        answers = {choose(path("other.json")), press(Qt::Key_Escape), press(Qt::Key_Return)};
    else
        answers = {press(Qt::Key_Escape), press(Qt::Key_Return)};
    const Answer answer = answers.at(last);
    int changes = 0; // told by the one in its place
    answers[last] = [&](QWidget* dialog) {
        delete m_page;
        m_page = new DataSettingsPage(m_model.get(), dataFile(), m_window.get());
        connect(m_page, &DataSettingsPage::dataChanged, this, [&changes] { ++changes; });
        answer(dialog);
    };
    const Dialogs dialogs(answers);
    button(name)->click();
    // What was answered counts all the same, and the rest is asked and told.
    QCOMPARE(dialogs.count(), answers.size());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(changes, name == "btnExportData" ? 0 : 1);
    if (name == "btnExportData")
        QCOMPARE(contentOf(path("copy.json")), contentOf(dataFile()));
    else
        QCOMPARE(m_model->data().categories.contains("Home"), name == "btnImportData");
}

QTEST_MAIN(DataSettingsPageTest)
#include "tst_datasettingspage.moc"
