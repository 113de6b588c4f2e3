// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#include "LauncherModelFixture.h"
#include "TestHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaMethod>
#include <QSet>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QUuid>

Q_DECLARE_METATYPE(LauncherModelFixture::Operation)

class LauncherModelTest : public QObject, private LauncherModelFixture
{
    Q_OBJECT

public:
    static void initMain() { TestHome::install(); }

private slots:
    void init() { makeModel(); }
    void cleanup() { removeModel(); }

    void firstRunLeavesNoFile();
    void constructionLoadsAndSelectsNothing();
    void signalsStandInOrder();

    void signalsAndSaving_data();
    void signalsAndSaving();
    void fileIsCompleteBeforeEachSignal_data();
    void fileIsCompleteBeforeEachSignal();

    void getItemsOfUnknownCategories();
    void locateElementById_data();
    void locateElementById();
    void locateElementByTheVariableOfTheCategory();
    void getCategoryIcon();
    void templateIndexOf();
    void suggestItemName_data();
    void suggestItemName();
    void suggestSectionName_data();
    void suggestSectionName();
    void aThousandthCopyBearsTheNameOfTheFirst();

    void addCategory();
    void addCategoryRefusals_data();
    void addCategoryRefusals();
    void addCategoryOverwritesAStaleIcon();
    void addCategoryRepairsTheDefault();
    void editCategoryRenames();
    void editCategoryOfTheDefault();
    void editCategoryWithoutItems();
    void editCategoryIconAlone();
    void editCategoryIconOfAnUnknownName();
    void editCategoryRefusals_data();
    void editCategoryRefusals();
    void editCategoryByAReferenceIntoTheDocument();
    void deleteCategory_data();
    void deleteCategory();
    void deleteCategoryListedTwice();
    void deleteCategoryByAReferenceIntoTheDocument();
    void deleteEveryCategory();
    void setCurrentCategoryIsUncheckedAndUnsaved();
    void saveReorderedCategoriesTakesTheListAsItIs();

    void saveItem_data();
    void saveItem();
    void saveItemInAnUnknownCategory();
    void saveItemByAReferenceIntoTheDocument();
    void deleteItem();
    void deleteItemThatIsNotThere_data();
    void deleteItemThatIsNotThere();
    void deleteItemOfADoubledId();
    void duplicateItem();
    void duplicateItemRefusals_data();
    void duplicateItemRefusals();
    void moveItem();
    void moveItemToACategoryWithoutAList();
    void moveItemRefusals_data();
    void moveItemRefusals();
    void saveReorderedItems();

    void saveTemplate();
    void renameTemplate();
    void renameTemplateRefusals_data();
    void renameTemplateRefusals();
    void deleteTemplate();
    void createCategoryFromTemplate();
    void createCategoryFromTemplateRefusals_data();
    void createCategoryFromTemplateRefusals();

    void migrateLegacyIcons_data();
    void migrateLegacyIcons();
    void migrationLeavesOtherIconsAlone();
    void withoutAWritableFileAllWorksInMemory();
    void slotsMayChangeTheDocumentAgain();
};

using Operation = LauncherModelFixture::Operation;

namespace
{

QStringList namesOf(const QVector<LauncherElement>& items)
{
    QStringList names;
    for (const LauncherElement& element : items)
        names.append(element.name);
    return names;
}

void addOperation(const char* name, const QStringList& expectedSignals, bool isSaved,
                  const Operation& operation)
{
    QTest::newRow(name) << operation << expectedSignals << isSaved;
}

void addCategoryOperations()
{
    addOperation("addCategory", {"current:New", "categories"}, true,
                 [](LauncherModel& m) { QVERIFY(m.addCategory("New", 1)); });
    addOperation("addCategory refused", {}, false,
                 [](LauncherModel& m) { QVERIFY(!m.addCategory("Work", 1)); });
    addOperation("editCategory, name", {"current:New", "categories"}, true,
                 [](LauncherModel& m) { QVERIFY(m.editCategory("Home", "New", 1)); });
    addOperation("editCategory, icon", {"categories"}, true,
                 [](LauncherModel& m) { QVERIFY(m.editCategory("Home", "Home", 1)); });
    addOperation("editCategory refused", {}, false,
                 [](LauncherModel& m) { QVERIFY(!m.editCategory("Home", "Work", 1)); });
    addOperation("editCategory of nothing", {}, false,
                 [](LauncherModel& m) { QVERIFY(m.editCategory("Nothing", "New", 1)); });
    addOperation("deleteCategory, current", {"current:Home", "categories"}, true,
                 [](LauncherModel& m) { m.deleteCategory("Work"); });
    addOperation("deleteCategory, other", {"categories"}, true,
                 [](LauncherModel& m) { m.deleteCategory("Home"); });
    addOperation("setCurrentCategory", {"current:Home"}, false,
                 [](LauncherModel& m) { m.setCurrentCategory("Home"); });
    addOperation("setCurrentCategory unchanged", {}, false,
                 [](LauncherModel& m) { m.setCurrentCategory("Work"); });
    addOperation("saveReorderedCategories", {"categories"}, true, [](LauncherModel& m) {
        m.saveReorderedCategories({"Bare", "Home", "Work"});
    });
}

void addItemOperations()
{
    addOperation("saveItem", {"items:Work"}, true, [](LauncherModel& m) {
        m.saveItem("Work", LauncherModelFixture::item("New"), -1);
    });
    addOperation("deleteItem", {"items:Work"}, true,
                 [](LauncherModel& m) { m.deleteItem("Work", "id-Mail"); });
    addOperation("deleteItem of nothing", {}, false,
                 [](LauncherModel& m) { m.deleteItem("Work", "id-Nothing"); });
    addOperation("duplicateItem", {"items:Work"}, true,
                 [](LauncherModel& m) { QVERIFY(m.duplicateItem("Work", "id-Mail", nullptr)); });
    addOperation("duplicateItem refused", {}, false, [](LauncherModel& m) {
        QVERIFY(!m.duplicateItem("Work", "id-Nothing", nullptr));
    });
    addOperation(
        "moveItemToCategory signals the source alone", {"items:Work"}, true,
        [](LauncherModel& m) { QVERIFY(m.moveItemToCategory("Work", "id-Mail", "Home")); });
    addOperation("moveItemToCategory refused", {}, false, [](LauncherModel& m) {
        QVERIFY(!m.moveItemToCategory("Work", "id-Mail", "Work"));
    });
    addOperation("saveReorderedItems", {"items:Work"}, true,
                 [](LauncherModel& m) { m.saveReorderedItems("Work", {}); });
}

void addTemplateOperations()
{
    addOperation("saveTemplate", {"templates"}, true, [](LauncherModel& m) {
        m.saveTemplate({"New", 1, {}});
    });
    addOperation("saveTemplate without a name", {}, false, [](LauncherModel& m) {
        m.saveTemplate({"", 1, {}});
    });
    addOperation("renameTemplate", {"templates"}, true,
                 [](LauncherModel& m) { QVERIFY(m.renameTemplate("Set", "New", 1)); });
    addOperation("renameTemplate refused", {}, false,
                 [](LauncherModel& m) { QVERIFY(!m.renameTemplate("Set", "Other", 1)); });
    addOperation("deleteTemplate", {"templates"}, true,
                 [](LauncherModel& m) { m.deleteTemplate("Set"); });
    addOperation("deleteTemplate of nothing", {}, false,
                 [](LauncherModel& m) { m.deleteTemplate("Nothing"); });
    addOperation("createCategoryFromTemplate", {"current:New", "categories"}, true,
                 [](LauncherModel& m) { QVERIFY(m.createCategoryFromTemplate("Set", "New", 1)); });
    addOperation("createCategoryFromTemplate refused", {}, false, [](LauncherModel& m) {
        QVERIFY(!m.createCategoryFromTemplate("Nothing", "New", 1));
    });
}

void addOperationRows()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QStringList>("expectedSignals");
    QTest::addColumn<bool>("isSaved");
    addCategoryOperations();
    addItemOperations();
    addTemplateOperations();
    addOperation("resetData", {"current:Default", "categories"}, true,
                 [](LauncherModel& m) { m.resetData(); });
    addOperation("importData", {"current:Other", "categories"}, true, [](LauncherModel& m) {
        const QString file = TestHome::writeDataFile("other.json", R"({"categories": ["Other"]})");
        QCOMPARE(m.importData(file), LauncherModel::Replacement::Done);
    });
    addOperation("importData of nothing", {}, false, [](LauncherModel& m) {
        QCOMPARE(m.importData("/no/such/file"), LauncherModel::Replacement::Unreadable);
    });
}

} // namespace

void LauncherModelTest::firstRunLeavesNoFile()
{
    QVERIFY(QFile::remove(path()));
    LauncherModel model(path(), nullptr);
    QCOMPARE(model.data().categories, QStringList{"Default"});
    QCOMPARE(model.data().defaultCategory, "Default");
    QVERIFY(model.getItems("Default").isEmpty());
    QVERIFY(model.templates().isEmpty());
    QVERIFY(!QFile::exists(path()));

    model.saveItem("Default", item("First"), -1);
    QVERIFY(QFile::exists(path()));
}

void LauncherModelTest::constructionLoadsAndSelectsNothing()
{
    QCOMPARE(m_model->data(), document());
    QCOMPARE(m_model->templates(), document().templates);
    QCOMPARE(m_model->currentCategory(), QString());

    QObject owner;
    const auto* owned = new LauncherModel(path(), &owner);
    QCOMPARE(owned->parent(), &owner);
}

void LauncherModelTest::signalsStandInOrder()
{
    QStringList names;
    const QMetaObject& meta = LauncherModel::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    QCOMPARE(names, (QStringList{"dataLoaded()", "categoriesChanged()", "itemsChanged(QString)",
                                 "currentCategoryChanged(QString)", "templatesChanged()"}));
}

void LauncherModelTest::signalsAndSaving_data()
{
    addOperationRows();
}

void LauncherModelTest::signalsAndSaving()
{
    QFETCH(Operation, operation);
    QFETCH(bool, isSaved);
    m_model->setCurrentCategory("Work");
    // A file that is gone shows whether it was written.
    QVERIFY(QFile::remove(path()));
    QTEST(recordSignals(*m_model, operation), "expectedSignals");
    QCOMPARE(QFile::exists(path()), isSaved);
    if (isSaved)
        QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::fileIsCompleteBeforeEachSignal_data()
{
    addOperationRows();
}

void LauncherModelTest::fileIsCompleteBeforeEachSignal()
{
    QFETCH(Operation, operation);
    m_model->setCurrentCategory("Work");
    const auto check = [this] { QCOMPARE(onDisk(), m_model->data()); };
    connect(m_model.get(), &LauncherModel::categoriesChanged, this, check);
    connect(m_model.get(), &LauncherModel::itemsChanged, this, check);
    connect(m_model.get(), &LauncherModel::currentCategoryChanged, this, check);
    connect(m_model.get(), &LauncherModel::templatesChanged, this, check);
    operation(*m_model);
    check();
}

void LauncherModelTest::getItemsOfUnknownCategories()
{
    const QVector<LauncherElement>* first = &m_model->getItems("Nothing");
    QVERIFY(first->isEmpty());
    QCOMPARE(&m_model->getItems("Nothing else"), first);
    QCOMPARE(&m_model->getItems("Bare"), first);
    QCOMPARE(m_model->data(), document());
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Mail", "Wiki", "Chat"}));
    QCOMPARE(namesOf(m_model->getItems("Unlisted")), QStringList{"Hidden"});
    QVERIFY(m_model->getItems("work").isEmpty());
}

void LauncherModelTest::locateElementById_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("category");
    QTest::addColumn<int>("index");
    QTest::newRow("first") << "id-Mail"
                           << "Work" << 0;
    QTest::newRow("last of its list") << "id-Chat"
                                      << "Work" << 2;
    QTest::newRow("second category") << "id-Music"
                                     << "Home" << 0;
    QTest::newRow("empty") << ""
                           << "" << -1;
    QTest::newRow("unknown") << "id-Nothing"
                             << "" << -1;
    QTest::newRow("unlisted category") << "id-Hidden"
                                       << "" << -1;
    QTest::newRow("other case") << "ID-MAIL"
                                << "" << -1;
    QTest::newRow("in two categories, the first in display order") << "id-twice"
                                                                   << "Zeta" << 1;
}

void LauncherModelTest::locateElementById()
{
    QFETCH(QString, id);
    QFETCH(QString, category);
    LauncherData data = document();
    data.categories = {"Zeta", "Work", "Home", "Alpha"};
    data.sectionElements["Alpha"] = {item("twice")};
    data.sectionElements["Zeta"] = {item("other"), item("twice"), item("twice")};
    open(data);
    m_model->saveItem("Zeta", LauncherElement(), -1); // whose id is empty

    QString outCat = "before";
    int outIndex = 77;
    const QVector<LauncherElement>* list = m_model->locateElementById(id, outCat, outIndex);
    QCOMPARE(outCat, category);
    QTEST(outIndex, "index");
    QCOMPARE(list, category.isEmpty() ? nullptr : &m_model->getItems(category));
}

void LauncherModelTest::locateElementByTheVariableOfTheCategory()
{
    QString text = "id-Music";
    int index = 0;
    QVERIFY(m_model->locateElementById(text, text, index));
    QCOMPARE(text, "Home");
}

void LauncherModelTest::getCategoryIcon()
{
    QCOMPARE(m_model->getCategoryIcon("Work"), 10U);
    QCOMPARE(m_model->getCategoryIcon("Bare"), 58055U);
    QCOMPARE(m_model->getCategoryIcon("Nothing"), 0xE2C7U);
}

void LauncherModelTest::templateIndexOf()
{
    QCOMPARE(m_model->templateIndexOf("Set"), 0);
    QCOMPARE(m_model->templateIndexOf("Other"), 1);
    QCOMPARE(m_model->templateIndexOf("set"), -1);
    QCOMPARE(m_model->templateIndexOf(""), -1);
}

void LauncherModelTest::suggestItemName_data()
{
    QTest::addColumn<QStringList>("taken");
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("suggestion");
    QTest::newRow("free") << QStringList{"Wiki"} << "Mail"
                          << "Mail";
    QTest::newRow("taken") << QStringList{"Mail"} << "Mail"
                           << "Mail 2";
    QTest::newRow("two taken") << QStringList{"Mail", "Mail 2"} << "Mail"
                               << "Mail 3";
    QTest::newRow("a gap is filled") << QStringList{"Mail", "Mail 3"} << "Mail"
                                     << "Mail 2";
    QTest::newRow("a gap before the base") << QStringList{"Mail 2"} << "Mail"
                                           << "Mail";
    QTest::newRow("case counts") << QStringList{"mail"} << "Mail"
                                 << "Mail";
    QTest::newRow("a number gets a number") << QStringList{"Mail", "Mail 2"} << "Mail 2"
                                            << "Mail 2 2";
    QTest::newRow("empty") << QStringList{""} << ""
                           << "";
    QTest::newRow("blank") << QStringList{" "} << " "
                           << "  2";
    QTest::newRow("placeholders") << QStringList{"50%2 of %1"} << "50%2 of %1"
                                  << "50%2 of %1 2";
}

void LauncherModelTest::suggestItemName()
{
    QFETCH(QStringList, taken);
    QFETCH(QString, base);
    QVector<LauncherElement> items;
    for (const QString& name : taken)
        items.append(item(name));
    m_model->saveReorderedItems("Bare", items);
    QTEST(m_model->suggestItemName("Bare", base), "suggestion");
    QCOMPARE(m_model->suggestItemName("Nothing", base), base);
}

void LauncherModelTest::suggestSectionName_data()
{
    QTest::addColumn<QString>("base");
    QTest::addColumn<QString>("suggestion");
    QTest::newRow("free") << "New"
                          << "New";
    QTest::newRow("taken") << "Work"
                           << "Work 3";
    QTest::newRow("a number gets a number") << "Work 2"
                                            << "Work 2 2";
    QTest::newRow("case counts") << "work"
                                 << "work";
    QTest::newRow("empty") << ""
                           << "";
    QTest::newRow("an unlisted section takes no name") << "Unlisted"
                                                       << "Unlisted";
}

void LauncherModelTest::suggestSectionName()
{
    QFETCH(QString, base);
    m_model->saveReorderedCategories({"Work", "Home", "Work 2"});
    QTEST(m_model->suggestSectionName(base), "suggestion");
}

void LauncherModelTest::aThousandthCopyBearsTheNameOfTheFirst()
{
    QVector<LauncherElement> items = {item("Mail")};
    QStringList categories = {"Mail"};
    for (int n = 2; n <= 998; ++n) {
        items.append(item(QString("Mail %1").arg(n)));
        categories.append(QString("Mail %1").arg(n));
    }
    m_model->saveReorderedItems("Bare", items);
    m_model->saveReorderedCategories(categories);
    QCOMPARE(m_model->suggestItemName("Bare", "Mail"), "Mail 999");
    QCOMPARE(m_model->suggestSectionName("Mail"), "Mail 999");

    m_model->saveItem("Bare", item("Mail 999"), -1);
    QVERIFY(m_model->addCategory("Mail 999", 1));
    QCOMPARE(m_model->suggestItemName("Bare", "Mail"), "Mail");
    QCOMPARE(m_model->suggestSectionName("Mail"), "Mail");

    QString copyId;
    QVERIFY(m_model->duplicateItem("Bare", "id-Mail", &copyId));
    QCOMPARE(m_model->getItems("Bare").at(1).id, copyId);
    QCOMPARE(m_model->getItems("Bare").at(1).name, "Mail");
}

void LauncherModelTest::addCategory()
{
    QVERIFY(m_model->addCategory("New", 99));
    QCOMPARE(m_model->data().categories, (QStringList{"Work", "Home", "Bare", "New"}));
    QCOMPARE(m_model->getCategoryIcon("New"), 99U);
    QCOMPARE(m_model->currentCategory(), "New");
    QCOMPARE(m_model->data().defaultCategory, "Home");
    QVERIFY(!m_model->data().sectionElements.contains("New"));

    QVERIFY(m_model->addCategory("work", 1));
    QVERIFY(m_model->addCategory(" Work", 1));
    QVERIFY(m_model->addCategory("two\nlines \u202E", 1));
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::addCategoryRefusals_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("empty") << "";
    QTest::newRow("taken") << "Bare";
}

void LauncherModelTest::addCategoryRefusals()
{
    QFETCH(QString, name);
    QVERIFY(!m_model->addCategory(name, 1));
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::addCategoryOverwritesAStaleIcon()
{
    m_model->deleteCategory("Work");
    QCOMPARE(m_model->getCategoryIcon("Work"), 10U);
    QVERIFY(m_model->addCategory("Work", 11));
    QCOMPARE(m_model->getCategoryIcon("Work"), 11U);
    QVERIFY(m_model->getItems("Work").isEmpty());
}

void LauncherModelTest::addCategoryRepairsTheDefault()
{
    for (const QString& category : document().categories)
        m_model->deleteCategory(category);
    QCOMPARE(m_model->data().defaultCategory, QString());
    QVERIFY(m_model->addCategory("New", 1));
    QCOMPARE(m_model->data().defaultCategory, "New");
    QVERIFY(m_model->addCategory("Default", 1));
    QCOMPARE(m_model->data().defaultCategory, "New");
}

void LauncherModelTest::editCategoryRenames()
{
    m_model->setCurrentCategory("Bare");
    QVERIFY(m_model->editCategory("Work", "Office", 99));
    LauncherData expected = document();
    expected.categories = {"Office", "Home", "Bare"};
    expected.categoryIcons = {{"Office", 99}, {"Home", 20}};
    expected.sectionElements.insert("Office", expected.sectionElements.take("Work"));
    QCOMPARE(m_model->data(), expected);
    // Whichever was current before.
    QCOMPARE(m_model->currentCategory(), "Office");
}

void LauncherModelTest::editCategoryOfTheDefault()
{
    QVERIFY(m_model->editCategory("Home", "home", 1));
    QCOMPARE(m_model->data().defaultCategory, "home");
    QCOMPARE(m_model->data().categories, (QStringList{"Work", "home", "Bare"}));
}

void LauncherModelTest::editCategoryWithoutItems()
{
    QVERIFY(m_model->editCategory("Bare", "Clothed", 1));
    QVERIFY(!m_model->data().sectionElements.contains("Bare"));
    QVERIFY(!m_model->data().sectionElements.contains("Clothed"));
    QVERIFY(m_model->editCategory("Work", "Unlisted", 1));
    QCOMPARE(namesOf(m_model->getItems("Unlisted")), (QStringList{"Mail", "Wiki", "Chat"}));
}

void LauncherModelTest::editCategoryIconAlone()
{
    m_model->setCurrentCategory("Bare");
    QVERIFY(m_model->editCategory("Work", "Work", 99));
    LauncherData expected = document();
    expected.categoryIcons["Work"] = 99;
    QCOMPARE(m_model->data(), expected);
    QCOMPARE(m_model->currentCategory(), "Bare");
}

void LauncherModelTest::editCategoryIconOfAnUnknownName()
{
    QVERIFY(m_model->editCategory("Nothing", "Nothing", 99));
    LauncherData expected = document();
    expected.categoryIcons["Nothing"] = 99;
    QCOMPARE(m_model->data(), expected);
}

void LauncherModelTest::editCategoryRefusals_data()
{
    QTest::addColumn<QString>("oldName");
    QTest::addColumn<QString>("newName");
    QTest::addColumn<bool>("result");
    QTest::newRow("empty") << "Work"
                           << "" << false;
    QTest::newRow("both empty") << ""
                                << "" << false;
    QTest::newRow("taken") << "Work"
                           << "Home" << false;
    QTest::newRow("unknown, and the new name taken") << "Nothing"
                                                     << "Home" << false;
    QTest::newRow("unknown succeeds and does nothing") << "Nothing"
                                                       << "New" << true;
}

void LauncherModelTest::editCategoryRefusals()
{
    QFETCH(QString, oldName);
    QFETCH(QString, newName);
    QTEST(m_model->editCategory(oldName, newName, 99), "result");
    QCOMPARE(m_model->data(), document());
    QCOMPARE(m_model->currentCategory(), QString());
}

void LauncherModelTest::editCategoryByAReferenceIntoTheDocument()
{
    QVERIFY(m_model->editCategory(m_model->data().categories.first(), "Office", 99));
    QCOMPARE(namesOf(m_model->getItems("Office")), (QStringList{"Mail", "Wiki", "Chat"}));
    QVERIFY(!m_model->data().sectionElements.contains("Work"));
    QVERIFY(!m_model->data().categoryIcons.contains("Work"));
}

void LauncherModelTest::deleteCategory_data()
{
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("target");
    QTest::addColumn<QStringList>("categories");
    QTest::addColumn<QString>("defaultCategory");
    QTest::addColumn<QString>("newCurrent");
    QTest::newRow("current one") << "Work"
                                 << "Work" << QStringList{"Home", "Bare"} << "Home"
                                 << "Home";
    QTest::newRow("other") << "Work"
                           << "Bare" << QStringList{"Work", "Home"} << "Home"
                           << "Work";
    QTest::newRow("default") << "Bare"
                             << "Home" << QStringList{"Work", "Bare"} << "Work"
                             << "Bare";
    QTest::newRow("unknown") << "Work"
                             << "Nothing" << QStringList{"Work", "Home", "Bare"} << "Home"
                             << "Work";
    QTest::newRow("unlisted") << "Work"
                              << "Unlisted" << QStringList{"Work", "Home", "Bare"} << "Home"
                              << "Work";
    QTest::newRow("current one is unknown")
        << "Nothing"
        << "Nothing" << QStringList{"Work", "Home", "Bare"} << "Home"
        << "Work";
}

void LauncherModelTest::deleteCategory()
{
    QFETCH(QString, current);
    QFETCH(QString, target);
    m_model->setCurrentCategory(current);
    m_model->deleteCategory(target);
    QTEST(m_model->data().categories, "categories");
    QTEST(m_model->data().defaultCategory, "defaultCategory");
    QTEST(m_model->currentCategory(), "newCurrent");
    QVERIFY(!m_model->data().sectionElements.contains(target));
    // The icons stay behind.
    QCOMPARE(m_model->data().categoryIcons, document().categoryIcons);
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::deleteCategoryListedTwice()
{
    m_model->saveReorderedCategories({"Work", "Home", "Work"});
    m_model->deleteCategory("Work");
    QCOMPARE(m_model->data().categories, QStringList{"Home"});
}

void LauncherModelTest::deleteCategoryByAReferenceIntoTheDocument()
{
    m_model->setCurrentCategory("Work");
    m_model->deleteCategory(m_model->data().categories.first());
    QCOMPARE(m_model->data().categories, (QStringList{"Home", "Bare"}));
    QVERIFY(!m_model->data().sectionElements.contains("Work"));
    QVERIFY(m_model->data().sectionElements.contains("Home"));
    QCOMPARE(m_model->currentCategory(), "Home");
}

void LauncherModelTest::deleteEveryCategory()
{
    m_model->setCurrentCategory("Bare");
    m_model->deleteCategory("Work");
    m_model->deleteCategory("Home");
    QCOMPARE(recordSignals(*m_model, [](LauncherModel& m) { m.deleteCategory("Bare"); }),
             (QStringList{"current:", "categories"}));
    QVERIFY(m_model->data().categories.isEmpty());
    QCOMPARE(m_model->data().defaultCategory, QString());
    QCOMPARE(m_model->currentCategory(), QString());
    QVERIFY(contentOf(path()).startsWith("{\n    \"categories\": [\n    ],\n"));

    // Only the next start turns that into a category.
    const LauncherModel next(path(), nullptr);
    QCOMPARE(next.data().categories, QStringList{"Default"});
}

void LauncherModelTest::setCurrentCategoryIsUncheckedAndUnsaved()
{
    const QByteArray before = contentOf(path());
    m_model->setCurrentCategory("Nothing of that name");
    QCOMPARE(m_model->currentCategory(), "Nothing of that name");
    m_model->setCurrentCategory("");
    QCOMPARE(m_model->currentCategory(), QString());
    QCOMPARE(contentOf(path()), before);
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::saveReorderedCategoriesTakesTheListAsItIs()
{
    const QStringList names = {"Bare", "Home", "Home", "", "Nothing"};
    m_model->saveReorderedCategories(names);
    LauncherData expected = document();
    expected.categories = names;
    QCOMPARE(m_model->data(), expected);

    // The default is one of the categories after every operation.
    m_model->saveReorderedCategories({"Bare", "Work"});
    QCOMPARE(m_model->data().defaultCategory, "Bare");
    m_model->saveReorderedCategories({});
    QCOMPARE(m_model->data().defaultCategory, QString());
}

void LauncherModelTest::saveItem_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("names");
    const QStringList appended = {"Mail", "Wiki", "Chat", "New"};
    QTest::newRow("-1 appends") << -1 << appended;
    QTest::newRow("below appends") << -100 << appended;
    QTest::newRow("first") << 0 << QStringList{"New", "Wiki", "Chat"};
    QTest::newRow("last") << 2 << QStringList{"Mail", "Wiki", "New"};
    QTest::newRow("behind the last appends") << 3 << appended;
    QTest::newRow("far beyond appends") << 2147483647 << appended;
}

void LauncherModelTest::saveItem()
{
    QFETCH(int, index);
    m_model->saveItem("Work", item("New"), index);
    QTEST(namesOf(m_model->getItems("Work")), "names");
    QVERIFY(m_model->getItems("Work").contains(item("New")));
}

void LauncherModelTest::saveItemInAnUnknownCategory()
{
    m_model->saveItem("Nothing", item("New"), 0);
    QCOMPARE(namesOf(m_model->getItems("Nothing")), QStringList{"New"});
    QCOMPARE(m_model->data().categories, document().categories);
}

void LauncherModelTest::saveItemByAReferenceIntoTheDocument()
{
    // The list grows while the argument is one of its entries.
    for (int i = 0; i < 50; ++i)
        m_model->saveItem("Home", m_model->getItems("Home").first(), -1);
    QCOMPARE(m_model->getItems("Home").size(), 51);
    QCOMPARE(m_model->getItems("Home").last(), item("Music"));
}

void LauncherModelTest::deleteItem()
{
    m_model->deleteItem("Work", "id-Wiki");
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Mail", "Chat"}));
    m_model->deleteItem("Home", m_model->getItems("Home").first().id);
    QVERIFY(m_model->getItems("Home").isEmpty());
    QVERIFY(m_model->data().sectionElements.contains("Home"));
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::deleteItemThatIsNotThere_data()
{
    QTest::addColumn<QString>("category");
    QTest::addColumn<QString>("id");
    QTest::newRow("unknown id") << "Work"
                                << "id-Nothing";
    QTest::newRow("empty id") << "Work"
                              << "";
    QTest::newRow("id of another category") << "Work"
                                            << "id-Music";
    QTest::newRow("category without a list") << "Bare"
                                             << "id-Mail";
    QTest::newRow("unknown category") << "Nothing"
                                      << "id-Mail";
}

void LauncherModelTest::deleteItemThatIsNotThere()
{
    QFETCH(QString, category);
    QFETCH(QString, id);
    const QByteArray before = contentOf(path());
    m_model->deleteItem(category, id);
    // An empty entry comes into being, in memory alone.
    LauncherData expected = document();
    expected.sectionElements[category];
    QCOMPARE(m_model->data(), expected);
    QCOMPARE(contentOf(path()), before);
}

void LauncherModelTest::deleteItemOfADoubledId()
{
    m_model->saveReorderedItems("Work", {item("Mail"), item("Wiki"), item("Mail")});
    m_model->deleteItem("Work", "id-Mail");
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Wiki", "Mail"}));
}

void LauncherModelTest::duplicateItem()
{
    QString newId;
    QVERIFY(m_model->duplicateItem("Work", "id-Mail", &newId));
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Mail", "Mail 2", "Wiki", "Chat"}));
    const LauncherElement copy = m_model->getItems("Work").at(1);
    QVERIFY(!QUuid::fromString(newId).isNull());
    QCOMPARE(copy, (LauncherElement{newId, "Mail 2", "URL", "https://Mail", "glyph:e2c7"}));
    QCOMPARE(m_model->getItems("Work").first(), item("Mail"));

    QVERIFY(m_model->duplicateItem("Work", newId, nullptr));
    QCOMPARE(namesOf(m_model->getItems("Work")),
             (QStringList{"Mail", "Mail 2", "Mail 2 2", "Wiki", "Chat"}));
    QVERIFY(m_model->duplicateItem("Work", "id-Chat", nullptr));
    QCOMPARE(m_model->getItems("Work").last().name, "Chat 2");
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::duplicateItemRefusals_data()
{
    deleteItemThatIsNotThere_data();
}

void LauncherModelTest::duplicateItemRefusals()
{
    QFETCH(QString, category);
    QFETCH(QString, id);
    QString newId = "before";
    QVERIFY(!m_model->duplicateItem(category, id, &newId));
    QCOMPARE(newId, "before");
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::moveItem()
{
    QVERIFY(m_model->moveItemToCategory("Work", "id-Wiki", "Home"));
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Mail", "Chat"}));
    QCOMPARE(m_model->getItems("Home"), (QVector<LauncherElement>{item("Music"), item("Wiki")}));
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::moveItemToACategoryWithoutAList()
{
    QVERIFY(m_model->moveItemToCategory("Work", "id-Wiki", "Bare"));
    QCOMPARE(m_model->getItems("Bare"), QVector<LauncherElement>{item("Wiki")});
    // The source need not be listed.
    QVERIFY(m_model->moveItemToCategory("Unlisted", "id-Hidden", "Bare"));
    QCOMPARE(namesOf(m_model->getItems("Bare")), (QStringList{"Wiki", "Hidden"}));
}

void LauncherModelTest::moveItemRefusals_data()
{
    QTest::addColumn<QString>("fromCat");
    QTest::addColumn<QString>("id");
    QTest::addColumn<QString>("toCat");
    QTest::newRow("same category") << "Work"
                                   << "id-Mail"
                                   << "Work";
    QTest::newRow("unknown target") << "Work"
                                    << "id-Mail"
                                    << "Nothing";
    QTest::newRow("unlisted target") << "Work"
                                     << "id-Mail"
                                     << "Unlisted";
    QTest::newRow("unknown source") << "Nothing"
                                    << "id-Mail"
                                    << "Home";
    QTest::newRow("source without a list") << "Bare"
                                           << "id-Mail"
                                           << "Home";
    QTest::newRow("unknown item") << "Work"
                                  << "id-Nothing"
                                  << "Home";
    QTest::newRow("item of another category") << "Work"
                                              << "id-Music"
                                              << "Home";
}

void LauncherModelTest::moveItemRefusals()
{
    QFETCH(QString, fromCat);
    QFETCH(QString, id);
    QFETCH(QString, toCat);
    QVERIFY(!m_model->moveItemToCategory(fromCat, id, toCat));
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::saveReorderedItems()
{
    m_model->saveReorderedItems("Work", {item("Chat"), item("Mail")});
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Chat", "Mail"}));
    m_model->saveReorderedItems("Work", m_model->getItems("Work"));
    QCOMPARE(namesOf(m_model->getItems("Work")), (QStringList{"Chat", "Mail"}));
    m_model->saveReorderedItems("Nothing", {});
    QVERIFY(m_model->data().sectionElements.contains("Nothing"));
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::saveTemplate()
{
    const SectionTemplate changed = {"Other", 1, {{"", "n", "URL", "v", ""}}};
    m_model->saveTemplate(changed);
    QCOMPARE(m_model->templates(), (QVector<SectionTemplate>{document().templates.at(0), changed}));
    const SectionTemplate added = {"other", 2, {}};
    m_model->saveTemplate(added);
    QCOMPARE(m_model->templates().size(), 3);
    QCOMPARE(m_model->templates().last(), added);
    m_model->saveTemplate({"", 3, {}});
    QCOMPARE(m_model->templates().size(), 3);
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::renameTemplate()
{
    QVERIFY(m_model->renameTemplate("Set", "New", 99));
    QVector<SectionTemplate> expected = document().templates;
    expected[0].name = "New";
    expected[0].icon = 99;
    QCOMPARE(m_model->templates(), expected);

    QVERIFY(m_model->renameTemplate("New", "New", 100));
    expected[0].icon = 100;
    QCOMPARE(m_model->templates(), expected);
    QVERIFY(m_model->renameTemplate("New", "new", 100));
    QVERIFY(m_model->renameTemplate(m_model->templates().first().name, "Set", 30));
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::renameTemplateRefusals_data()
{
    QTest::addColumn<QString>("oldName");
    QTest::addColumn<QString>("newName");
    QTest::newRow("unknown") << "Nothing"
                             << "New";
    QTest::newRow("unknown, the same name") << "Nothing"
                                            << "Nothing";
    QTest::newRow("empty") << "Set"
                           << "";
    QTest::newRow("taken") << "Set"
                           << "Other";
}

void LauncherModelTest::renameTemplateRefusals()
{
    QFETCH(QString, oldName);
    QFETCH(QString, newName);
    QVERIFY(!m_model->renameTemplate(oldName, newName, 99));
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::deleteTemplate()
{
    m_model->deleteTemplate("Nothing");
    QCOMPARE(m_model->data(), document());
    m_model->deleteTemplate(m_model->templates().first().name);
    QCOMPARE(m_model->templates(), QVector<SectionTemplate>{document().templates.at(1)});
}

void LauncherModelTest::createCategoryFromTemplate()
{
    QVERIFY(m_model->createCategoryFromTemplate("Set", "New", 99));
    QCOMPARE(m_model->data().categories, (QStringList{"Work", "Home", "Bare", "New"}));
    QCOMPARE(m_model->getCategoryIcon("New"), 99U);
    QCOMPARE(m_model->currentCategory(), "New");
    QVERIFY(m_model->createCategoryFromTemplate("Set", "New again", 98));

    QSet<QString> ids;
    const QVector<LauncherElement> copies =
        m_model->getItems("New") + m_model->getItems("New again");
    for (LauncherElement copy : copies) {
        QVERIFY(!QUuid::fromString(copy.id).isNull());
        ids.insert(copy.id);
        copy.id.clear();
        QCOMPARE(copy, document().templates.first().items.first());
    }
    QCOMPARE(ids.size(), 4);
    // The template itself stays as it was.
    QCOMPARE(m_model->templates(), document().templates);

    QVERIFY(m_model->createCategoryFromTemplate("Other", "Unlisted", 1));
    QVERIFY(m_model->getItems("Unlisted").isEmpty());
    QCOMPARE(onDisk(), m_model->data());
}

void LauncherModelTest::createCategoryFromTemplateRefusals_data()
{
    QTest::addColumn<QString>("templateName");
    QTest::addColumn<QString>("newCat");
    QTest::newRow("unknown template") << "Nothing"
                                      << "New";
    QTest::newRow("empty name") << "Set"
                                << "";
    QTest::newRow("taken name") << "Set"
                                << "Work";
}

void LauncherModelTest::createCategoryFromTemplateRefusals()
{
    QFETCH(QString, templateName);
    QFETCH(QString, newCat);
    QVERIFY(!m_model->createCategoryFromTemplate(templateName, newCat, 99));
    QCOMPARE(m_model->data(), document());
}

void LauncherModelTest::migrateLegacyIcons_data()
{
    QTest::addColumn<uint>("legacy");
    QTest::addColumn<uint>("icon");
    const auto row = [](uint legacy, uint icon) { QTest::addRow("%x", legacy) << legacy << icon; };
    row(0xF428, 0xE2C7);
    row(0xF2F6, 0xE40A);
    row(0xE713, 0xE429);
    row(0xF30B, 0xF20E);
    row(0xF4A5, 0xE943);
    row(0xF446, 0xEA28);
    row(0xF411, 0xE86F);
    row(0xF376, 0xE684);
    row(0xF2C7, 0xE66B);
    row(0xF2D1, 0xF09A);
}

void LauncherModelTest::migrateLegacyIcons()
{
    QFETCH(uint, legacy);
    QFETCH(uint, icon);
    LauncherData data = document();
    data.categoryIcons = {{"Work", legacy}, {"Home", 20}, {"Unlisted", legacy}};
    data.templates[0].icon = legacy;
    data.sectionElements["Work"][0].iconPath = "glyph:" + QString::number(legacy, 16);
    open(data);
    data.categoryIcons = {{"Work", icon}, {"Home", 20}, {"Unlisted", icon}};
    QCOMPARE(m_model->data(), data);
    QCOMPARE(onDisk(), data);
}

void LauncherModelTest::migrationLeavesOtherIconsAlone()
{
    // A document in no canonical layout shows that it wasn't written.
    const QByteArray json = R"({"categories": ["Work"], "categoryIcons": {"Work": 58055},
        "sectionElements": {}, "templates": [{"name": "Set", "icon": 62504}]})";
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(json);
    file.close();
    const LauncherModel model(path(), nullptr);
    QCOMPARE(model.getCategoryIcon("Work"), 58055U);
    QCOMPARE(contentOf(path()), json);
}

void LauncherModelTest::withoutAWritableFileAllWorksInMemory()
{
    // A directory of that name can't be replaced, whoever runs the test.
    QVERIFY(QDir().mkpath(path("occupied/inside")));
    LauncherModel model(path("occupied"), nullptr);
    QCOMPARE(recordSignals(model,
                           [](LauncherModel& m) {
                               QVERIFY(m.addCategory("New", 1));
                               m.saveItem("New", item("Mail"), -1);
                           }),
             (QStringList{"current:New", "categories", "items:New"}));
    QCOMPARE(model.data().categories, (QStringList{"Default", "New"}));
    QCOMPARE(namesOf(model.getItems("New")), QStringList{"Mail"});
    QVERIFY(QFileInfo(path("occupied/inside")).isDir());
    const LauncherModel next(path("occupied"), nullptr);
    QCOMPARE(next.data().categories, QStringList{"Default"});
}

void LauncherModelTest::slotsMayChangeTheDocumentAgain()
{
    QSignalSpy categories(m_model.get(), &LauncherModel::categoriesChanged);
    connect(m_model.get(), &LauncherModel::currentCategoryChanged, this,
            [this](const QString& category) {
                if (category == "New")
                    m_model->saveItem("New", item("Added by a slot"), -1);
            });
    QVERIFY(m_model->addCategory("New", 1));
    QCOMPARE(categories.count(), 1);
    QCOMPARE(namesOf(m_model->getItems("New")), QStringList{"Added by a slot"});
    QCOMPARE(onDisk(), m_model->data());
}

QTEST_MAIN(LauncherModelTest)
#include "tst_launchermodel.moc"
