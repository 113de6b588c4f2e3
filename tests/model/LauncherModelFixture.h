// SPDX-FileCopyrightText: 2026 The Orlimo authors
// SPDX-License-Identifier: MIT

#pragma once

#include "LauncherModel.h"
#include "StorageManager.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <functional>
#include <memory>

/// A model over a document in a directory of its own, for tests to be derived from.
class LauncherModelFixture
{
public:
    using Operation = std::function<void(LauncherModel&)>;

    static LauncherElement item(const QString& name)
    {
        return {"id-" + name, name, "URL", "https://" + name, "glyph:e2c7"};
    }

    static LauncherData document()
    {
        LauncherElement templateItem = item("Editor");
        templateItem.id.clear();
        LauncherData data;
        data.categories = {"Work", "Home", "Bare"};
        data.defaultCategory = "Home";
        data.categoryIcons = {{"Work", 10}, {"Home", 20}};
        data.sectionElements = {{"Work", {item("Mail"), item("Wiki"), item("Chat")}},
                                {"Home", {item("Music")}},
                                {"Unlisted", {item("Hidden")}}};
        data.templates = {{"Set", 30, {templateItem, templateItem}}, {"Other", 40, {}}};
        return data;
    }

    /// Tells what the model signals, in order, as "name" or "name:argument".
    static QStringList recordSignals(LauncherModel& model, const Operation& operation)
    {
        QStringList log;
        QObject context;
        QObject::connect(&model, &LauncherModel::dataLoaded, &context,
                         [&log] { log.append("dataLoaded"); });
        QObject::connect(&model, &LauncherModel::categoriesChanged, &context,
                         [&log] { log.append("categories"); });
        QObject::connect(&model, &LauncherModel::itemsChanged, &context,
                         [&log](const QString& category) { log.append("items:" + category); });
        QObject::connect(&model, &LauncherModel::currentCategoryChanged, &context,
                         [&log](const QString& category) { log.append("current:" + category); });
        QObject::connect(&model, &LauncherModel::templatesChanged, &context,
                         [&log] { log.append("templates"); });
        operation(model);
        return log;
    }

protected:
    void makeModel()
    {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        open(document());
    }

    void removeModel()
    {
        m_model.reset();
        m_dir.reset();
    }

    void open(const LauncherData& data)
    {
        StorageManager::saveData(path(), data);
        m_model = std::make_unique<LauncherModel>(path(), nullptr);
    }

    QString path(const QString& name = "data.json") const { return m_dir->filePath(name); }
    LauncherData onDisk() const { return StorageManager::loadData(path()); }

    static QByteArray contentOf(const QString& fileName)
    {
        QFile file(fileName);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(not readable)");
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<LauncherModel> m_model;
};
